// Steps on menus, boxes, file dialogs and the controls of dialogs and panels.
#pragma once

#include "tests/robot/robot.h"

/// Opens a menu of the main window's or the dialog's menu bar.
void MenuBarStep(Robot& robot, const Scene& scene);
/// An enabled entry of the open menu; one that leads to another menu opens it.
void MenuChooseStep(Robot& robot, const Scene& scene);
void MenuKeyStep(Robot& robot, const Scene& scene);
/// The mouse on the open menu, or beside it.
void MenuClickStep(Robot& robot, const Scene& scene);

/// The key of an entry of the main window's menu bar.
void AcceleratorStep(Robot& robot, const Scene& scene);

void BoxButtonStep(Robot& robot, const Scene& scene);
void FileNameStep(Robot& robot, const Scene& scene);

/// Any control of the panel or dialog, in a way that fits it.
void ControlStep(Robot& robot, const Scene& scene);
