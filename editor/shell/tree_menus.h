// The two pop-up menus of the list of boards and objects.
#pragma once

#include "engine/dobject.h"
#include "platform/menu.h"

platform::Menu MakeBoardMenu();
platform::Menu MakeObjectMenu();

/// Puts the object menu in step with the node that it opens for: the tick of "&Hide", and
/// "Move" with every node of the world, whose own branch cannot be chosen.
void ShowNode(platform::Menu& objectMenu, const Dobject& node);
/// Takes "Move" out again: it is as large as the world.
void DropMoveMenu(platform::Menu& objectMenu);
