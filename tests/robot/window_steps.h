// Steps in the main window; those that name no part of it fit dialogs as well.
#pragma once

#include "tests/robot/robot.h"

/// A key, often with modifiers, or some text, for whatever has the keyboard.
void KeyStep(Robot& robot, const Scene& scene);
void TextStep(Robot& robot, const Scene& scene);
/// Puts text of another program on the clipboard.
void ClipboardStep(Robot& robot, const Scene& scene);
void TabStep(Robot& robot, const Scene& scene);
void EnterStep(Robot& robot, const Scene& scene);
void EscapeStep(Robot& robot, const Scene& scene);

void EditClickStep(Robot& robot, const Scene& scene);
void EditDragStep(Robot& robot, const Scene& scene);
void EditHoverStep(Robot& robot, const Scene& scene);
/// Presses a button of the mouse in a picture and leaves it down, or lets it go.
void HoldStep(Robot& robot, const Scene& scene);
void ListClickStep(Robot& robot, const Scene& scene);
void ListDragStep(Robot& robot, const Scene& scene);
void SwapPanelStep(Robot& robot, const Scene& scene);
void SplitterStep(Robot& robot, const Scene& scene);
void ResizeStep(Robot& robot, const Scene& scene);
/// The window or dialog, at times off the screen.
void MoveStep(Robot& robot, const Scene& scene);
/// The wheel over any picture or text control.
void WheelStep(Robot& robot, const Scene& scene);
/// The close box.
void CloseStep(Robot& robot, const Scene& scene);

// --- for steps elsewhere ---

/// A point of a widget, at times a little outside.
QPoint PointOf(Robot& robot, const QWidget& widget);
std::string Shown(QPoint at);
Qt::KeyboardModifiers RandomModifiers(Robot& robot);
std::string Shown(Qt::KeyboardModifiers with);
/// Words, numbers, script commands, characters of many alphabets.
QString RandomText(Robot& robot);
void ClickIn(Robot& robot, QWidget& widget);
void DragIn(Robot& robot, QWidget& widget);
