// The two pop-up menus of the edit view, as values.
#pragma once

#include "platform/menu.h"

/// The area tools, zoom and ruler: the right button, or the menu key.
platform::Menu MakeToolMenu();

/// The primitives and the blend: Ctrl and the right button.
platform::Menu MakePrimMenu();
