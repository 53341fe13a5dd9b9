// The object clipboard: one free node with its subtree, outside the world.
#pragma once

#include "engine/dobject.h"

#include <memory>

extern std::unique_ptr<Dobject> vObjectClip;

/// The clipboard's first content: one tile that shows a face.
void MakeObjectClip();
