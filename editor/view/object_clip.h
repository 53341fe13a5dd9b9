// The object clipboard: one free node with its subtree, outside the world.
#pragma once

#include "engine/dobject.h"

#include <memory>

/// Its surfaces stay in the font of the time of the copy: the font's changes reach the world
/// alone. To be shown or pasted it is asked for by FreshObjectClip.
extern std::unique_ptr<Dobject> vObjectClip;

/// The clipboard, drawn in the present font; null when there is none.
Dobject* FreshObjectClip();

/// The clipboard's first content: one tile that shows a face.
void MakeObjectClip();
