// Menu values as Qt menus.
#pragma once

#include "platform/menu.h"

#include <QMenu>
#include <functional>

/// When sub-menus get their entries: a pop-up may hold as many as the world has nodes, and
/// building widgets for all of them would keep the user waiting.
enum class Filling {
    AtOnce,
    WhenOpened,  ///< `items` must outlive the menu
};

/// Fills `to`; `use` hears the command of a chosen entry, also of one whose command is 0.
/// Accelerators and prompts are set as the value has them.
void FillMenu(QMenu& to, const platform::Menu& items, const std::function<void(int)>& use,
              Filling filling = Filling::AtOnce);

/// Runs a pop-up menu modally at a screen point and gives the chosen command, or 0.
int RunMenu(QWidget* over, const platform::Menu& items, QPoint screen);
