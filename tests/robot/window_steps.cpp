#include "tests/robot/window_steps.h"

#include "platform/qt/code_widget.h"
#include "platform/qt/picture_widget.h"
#include "platform/qt/qt_text.h"
#include "tests/robot/hands.h"

#include <QAbstractScrollArea>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeySequence>
#include <QScreen>
#include <QSplitterHandle>

namespace {

constexpr Qt::Key kKeys[] = {
    Qt::Key_Left,   Qt::Key_Right,     Qt::Key_Up,    Qt::Key_Down,     Qt::Key_Left,
    Qt::Key_Right,  Qt::Key_Up,        Qt::Key_Down,  Qt::Key_Space,    Qt::Key_Space,
    Qt::Key_Return, Qt::Key_Enter,     Qt::Key_Tab,   Qt::Key_Backtab,  Qt::Key_Backspace,
    Qt::Key_Home,   Qt::Key_End,       Qt::Key_Menu,  Qt::Key_PageUp,   Qt::Key_PageDown,
    Qt::Key_Insert, Qt::Key_Delete,    Qt::Key_Shift, Qt::Key_Control,  Qt::Key_Escape,
    Qt::Key_F1,     Qt::Key_F2,        Qt::Key_F3,    Qt::Key_F10,      Qt::Key_CapsLock,
    Qt::Key_Plus,   Qt::Key_Semicolon, Qt::Key_Minus, Qt::Key_Asterisk, Qt::Key_ScrollLock,
};
constexpr Qt::Key kLetterKeys[] = {
    Qt::Key_A, Qt::Key_B, Qt::Key_C, Qt::Key_D, Qt::Key_E, Qt::Key_F, Qt::Key_G, Qt::Key_H,
    Qt::Key_L, Qt::Key_N, Qt::Key_O, Qt::Key_R, Qt::Key_S, Qt::Key_T, Qt::Key_U, Qt::Key_V,
    Qt::Key_W, Qt::Key_X, Qt::Key_Y, Qt::Key_Z, Qt::Key_0, Qt::Key_1, Qt::Key_9,
};

// "\u00e9" and the like are of code page 437, the Chinese and the emoji are not. No tilde: a
// line that begins with "~pe" ends a script in the file.
constexpr const char* kTexts[] = {
    "a",
    "door",
    "two words",
    "0",
    "1",
    "7",
    "40",
    "120",
    "300",
    "32767",
    "32768",
    "2147483647",
    "-5",
    "99999999999999",
    "3.5",
    "12abc",
    "\u00e9",
    "\u00df\u00fc",
    "\u2588\u2591",
    "\u4e2d",
    "\U0001f600",
    "#set a 1\n",
    "#if .self.x > 3 goto b\n",
    ":touch\n",
    "#",
    "#p",
    ".",
    "\"--CC\"",
    "\n",
    "\t",
    "\n\n",
    "'comment\n",
    "#bind wall",
    " ",
    "&&%s%n",
};

// Of what a window shows, what is more than a button to the mouse.
std::vector<QWidget*> Surfaces(const QWidget& top) {
    std::vector<QWidget*> targets = Controls(top);
    std::erase_if(targets, [](QWidget* widget) {
        return !dynamic_cast<PictureWidget*>(widget) && !dynamic_cast<CodeWidget*>(widget);
    });
    return targets;
}

// The part of a control that hears the mouse.
QWidget& Inside(QWidget& control) {
    auto* area = qobject_cast<QAbstractScrollArea*>(&control);
    return area ? *area->viewport() : control;
}

const char* Shown(Qt::MouseButton button) { return button == Qt::LeftButton ? "left" : "right"; }

Qt::MouseButton RandomButton(Robot& robot) {
    return robot.chance.OneIn(3) ? Qt::RightButton : Qt::LeftButton;
}

}  // namespace

QPoint PointOf(Robot& robot, const QWidget& widget) {
    const int outside = robot.chance.OneIn(12) ? 40 : 0;
    // Scroll bars come and go: the whole of a scrolled control counts.
    const auto* area = qobject_cast<const QAbstractScrollArea*>(widget.parentWidget());
    const QSize size = area && area->viewport() == &widget ? area->size() : widget.size();
    return {robot.chance.Roll(-outside, size.width() - 1 + outside),
            robot.chance.Roll(-outside, size.height() - 1 + outside)};
}

std::string Shown(QPoint at) { return std::to_string(at.x()) + "," + std::to_string(at.y()); }

Qt::KeyboardModifiers RandomModifiers(Robot& robot) {
    switch (robot.chance.Below(10)) {
        case 0:
            return Qt::ControlModifier;
        case 1:
            return Qt::ShiftModifier;
        case 2:
            return robot.chance.OneIn(2) ? Qt::AltModifier
                                         : Qt::ControlModifier | Qt::ShiftModifier;
        default:
            return Qt::NoModifier;
    }
}

std::string Shown(Qt::KeyboardModifiers with) {
    std::string text;
    if (with & Qt::ControlModifier) text += "Ctrl+";
    if (with & Qt::ShiftModifier) text += "Shift+";
    if (with & Qt::AltModifier) text += "Alt+";
    return text;
}

QString RandomText(Robot& robot) {
    QString text;
    for (int words = robot.chance.Roll(1, 3); words > 0; --words)
        text += QString::fromUtf8(robot.chance.Pick(kTexts));
    return text;
}

// --- the keyboard ------------------------------------------------------------------------------

void KeyStep(Robot& robot, const Scene& scene) {
    const bool letter = robot.chance.OneIn(6);
    const Qt::Key chosen = letter ? robot.chance.Pick(kLetterKeys) : robot.chance.Pick(kKeys);
    const Qt::KeyboardModifiers with = RandomModifiers(robot);
    QWidget& target = KeyTarget(scene);
    robot.Say("key " + Shown(with) + ToUtf8(QKeySequence(chosen).toString()) + " to " +
              NameOf(target));
    if (robot.chance.OneIn(8))
        PressWindowKey(target, chosen, with);
    else
        PressKey(target, chosen, with);
}

void TextStep(Robot& robot, const Scene& scene) {
    const QString text = RandomText(robot);
    QWidget& target = KeyTarget(scene);
    robot.Say("type \"" + ToUtf8(text) + "\" to " + NameOf(target));
    if (robot.chance.OneIn(6))
        ComposeText(target, text);
    else
        TypeText(target, text);
}

void ClipboardStep(Robot& robot, const Scene&) {
    const QString text = RandomText(robot) + QStringLiteral("\r\n") + RandomText(robot);
    robot.Say("clipboard \"" + ToUtf8(text) + "\"");
    QGuiApplication::clipboard()->setText(text);
}

void TabStep(Robot& robot, const Scene& scene) {
    QWidget& target = KeyTarget(scene);
    robot.Say("tab from " + NameOf(target));
    const bool code = dynamic_cast<CodeWidget*>(&target);
    PressKey(target, Qt::Key_Tab, code ? Qt::ControlModifier : Qt::NoModifier);
}

void EnterStep(Robot& robot, const Scene& scene) {
    QWidget& target = KeyTarget(scene);
    robot.Say("enter to " + NameOf(target));
    PressKey(target, Qt::Key_Return);
}

void EscapeStep(Robot& robot, const Scene& scene) {
    QWidget& target = KeyTarget(scene);
    robot.Say("escape to " + NameOf(target));
    PressKey(target, Qt::Key_Escape);
}

// --- the mouse ---------------------------------------------------------------------------------

void ClickIn(Robot& robot, QWidget& widget) {
    const QPoint at = PointOf(robot, widget);
    const Qt::MouseButton button = RandomButton(robot);
    const Qt::KeyboardModifiers with = RandomModifiers(robot);
    const bool twice = robot.chance.OneIn(8);
    robot.Say(std::string(twice ? "double " : "") + "click " + Shown(with) + Shown(button) +
              " at " + Shown(at) + " in " + NameOf(widget));
    if (twice)
        DoubleClick(widget, at, button, with);
    else
        Drag(widget, {at}, button, with);
}

void DragIn(Robot& robot, QWidget& widget) {
    std::vector<QPoint> path;
    std::string points;
    for (int i = robot.chance.Roll(2, 5); i > 0; --i) {
        path.push_back(PointOf(robot, widget));
        points += " " + Shown(path.back());
    }
    const Qt::MouseButton button = RandomButton(robot);
    const Qt::KeyboardModifiers with = RandomModifiers(robot);
    robot.Say("drag " + Shown(with) + Shown(button) + " over" + points + " in " + NameOf(widget));
    Drag(widget, path, button, with);
}

void EditClickStep(Robot& robot, const Scene& scene) { ClickIn(robot, *scene.Edit()); }

void EditDragStep(Robot& robot, const Scene& scene) { DragIn(robot, *scene.Edit()); }

void EditHoverStep(Robot& robot, const Scene& scene) {
    QWidget& edit = *scene.Edit();
    const QPoint at = PointOf(robot, edit);
    robot.Say("move to " + Shown(at) + " in " + NameOf(edit));
    MouseMove(edit, at, robot.held == &edit ? robot.heldButton : Qt::NoButton, {});
}

void HoldStep(Robot& robot, const Scene& scene) {
    // What has been opened since then has taken the release.
    if (robot.held && robot.held->window() != scene.Top()) robot.held = nullptr;
    if (robot.held) {
        QWidget& widget = *robot.held;
        const QPoint at = PointOf(robot, widget);
        robot.Say("let the button go at " + Shown(at) + " in " + NameOf(widget));
        robot.held = nullptr;
        MouseUp(widget, at, robot.heldButton, RandomModifiers(robot));
        return;
    }
    std::vector<QWidget*> targets = Surfaces(*scene.Top());
    // The text control would go on scrolling by the clock.
    std::erase_if(targets, [](QWidget* widget) { return dynamic_cast<CodeWidget*>(widget); });
    if (targets.empty()) return KeyStep(robot, scene);
    robot.held = &Inside(*robot.chance.Pick(targets));
    robot.heldButton = RandomButton(robot);
    const QPoint at = PointOf(robot, *robot.held);
    const Qt::KeyboardModifiers with = RandomModifiers(robot);
    robot.Say("hold " + Shown(with) + Shown(robot.heldButton) + " at " + Shown(at) + " in " +
              NameOf(*robot.held));
    MouseDown(*robot.held, at, robot.heldButton, with);
}

void ListClickStep(Robot& robot, const Scene& scene) {
    QWidget& list = *scene.List();
    // Most of the list is empty: the rows are at its top.
    constexpr int kRows = 160;
    const QPoint at(robot.chance.Below(list.width()),
                    robot.chance.Below(std::min(kRows, list.height())));
    const Qt::MouseButton button = robot.chance.OneIn(2) ? Qt::RightButton : Qt::LeftButton;
    const bool twice = button == Qt::LeftButton && robot.chance.OneIn(5);
    robot.Say(std::string(twice ? "double " : "") + "click " + Shown(button) + " at " + Shown(at) +
              " in the list");
    if (twice)
        DoubleClick(list, at, button, {});
    else
        Drag(list, {at}, button, {});
}

void ListDragStep(Robot& robot, const Scene& scene) { DragIn(robot, *scene.List()); }

void SwapPanelStep(Robot& robot, const Scene& scene) {
    QWidget& list = *scene.List();
    const QPoint at = PointOf(robot, list);
    robot.Say("double click Ctrl+left at " + Shown(at) + " in the list");
    DoubleClick(list, at, Qt::LeftButton, Qt::ControlModifier);
}

void WheelStep(Robot& robot, const Scene& scene) {
    const std::vector<QWidget*> targets = Surfaces(*scene.Top());
    if (targets.empty()) return KeyStep(robot, scene);
    QWidget& target = *robot.chance.Pick(targets);
    constexpr int kTurns[] = {120, -120, 360, -240, 15};
    const int turn = robot.chance.Pick(kTurns);
    const Qt::KeyboardModifiers with = RandomModifiers(robot);
    QWidget& inside = Inside(target);
    const QPoint at = PointOf(robot, inside);
    robot.Say("wheel " + Shown(with) + std::to_string(turn) + " at " + Shown(at) + " in " +
              NameOf(target));
    TurnWheel(inside, at, turn, with);
}

// --- the window --------------------------------------------------------------------------------

void SplitterStep(Robot& robot, const Scene& scene) {
    std::vector<QSplitterHandle*> handles;
    for (auto* handle : scene.window->findChildren<QSplitterHandle*>())
        if (handle->isVisible()) handles.push_back(handle);
    QSplitterHandle& handle = *robot.chance.Pick(handles);
    const QPoint by(robot.chance.Roll(-300, 300), robot.chance.Roll(-300, 300));
    robot.Say("drag a splitter by " + Shown(by));
    Drag(handle, {QPoint(1, 1), QPoint(1, 1) + by}, Qt::LeftButton, {});
}

void ResizeStep(Robot& robot, const Scene& scene) {
    if (robot.chance.OneIn(6)) {
        robot.Say("maximise or restore");
        scene.window->setWindowState(scene.window->windowState() ^ Qt::WindowMaximized);
        return;
    }
    const QSize size(robot.chance.Roll(800, 1900), robot.chance.Roll(600, 1200));
    robot.Say("resize to " + Shown(QPoint(size.width(), size.height())));
    scene.window->resize(size);
}

void MoveStep(Robot& robot, const Scene& scene) {
    QWidget& top = *scene.Top();
    const QSize size = top.screen()->size();
    const QPoint to(robot.chance.Roll(-top.width(), size.width()),
                    robot.chance.Roll(-top.height(), size.height()));
    robot.Say("move to " + Shown(to) + " " + NameOf(top));
    top.move(to);
}

void CloseStep(Robot& robot, const Scene& scene) {
    QWidget& top = *scene.Top();
    robot.Say("close " + NameOf(top));
    top.close();
}
