// The steps: what can be done with the widgets of any program.

#include "tests/robot/robot.h"
#include "tests/support/hands/hands.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSlider>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMenuBar>
#include <QScreen>
#include <QSplitter>
#include <algorithm>

namespace {

constexpr Qt::Key kKeys[] = {
    Qt::Key_Left,   Qt::Key_Right,  Qt::Key_Up,        Qt::Key_Down,     Qt::Key_Left,
    Qt::Key_Right,  Qt::Key_Up,     Qt::Key_Down,      Qt::Key_Space,    Qt::Key_Space,
    Qt::Key_Return, Qt::Key_Enter,  Qt::Key_Tab,       Qt::Key_Backtab,  Qt::Key_Backspace,
    Qt::Key_Home,   Qt::Key_End,    Qt::Key_Menu,      Qt::Key_PageUp,   Qt::Key_PageDown,
    Qt::Key_Insert, Qt::Key_Delete, Qt::Key_Shift,     Qt::Key_Control,  Qt::Key_Escape,
    Qt::Key_F1,     Qt::Key_F2,     Qt::Key_F3,        Qt::Key_CapsLock, Qt::Key_ScrollLock,
    Qt::Key_Plus,   Qt::Key_Minus,  Qt::Key_Semicolon, Qt::Key_Asterisk, Qt::Key_NumLock,
};

// Of some characters no code page has any. No tilde: a line that begins with "~pe" ends a script
// in the file.
constexpr const char* kTexts[] = {
    "a",
    "two words",
    "7",
    "#set a 1\n",
    "#if .self.x > 3 goto b\n",
    ":touch\n",
    "#",
    "#p",
    ".",
    "\u00e9",
    "\u2588\u2591\u4e2d",
    "\U0001f600",
    "\n\n",
    "\t",
    "&&%s%n",
    "\"--CC\"",
    "'comment\n",
    "#bind wall ",
};
constexpr const char* kNumbers[] = {"",   "0",  "1",      "3",     "8",           "12",
                                    "60", "-1", "100000", "32767", "99999999999", "x"};
// A side of this many cells is as long as a grid can be; with the other side its surface has
// hundreds of megabytes, so it comes seldom.
constexpr const char* kLongSide = "32767";
constexpr int kSeldom = 40;

QString NameOf(const QWidget& widget) {
    const QString own =
        widget.accessibleName().isEmpty() ? widget.objectName() : widget.accessibleName();
    return QLatin1String(widget.metaObject()->className()) + QLatin1Char(' ') + own;
}

// What paints itself: a plain widget that holds no others.
bool IsPicture(const QWidget& widget) {
    return widget.metaObject() == &QWidget::staticMetaObject && !widget.findChild<QWidget*>();
}

// How often a control is used; 0 for what cannot be used.
int WeightOf(const QWidget& control) {
    if (const auto* field = qobject_cast<const QLineEdit*>(&control))
        return field->isReadOnly() ? 0 : 2;
    if (qobject_cast<const QMenuBar*>(&control)) return 6;
    if (IsPicture(control)) return 2 + control.width() * control.height() / 30'000;
    return qobject_cast<const QAbstractButton*>(&control) ||
           qobject_cast<const QAbstractSlider*>(&control) ||
           qobject_cast<const QSplitterHandle*>(&control);
}

std::vector<QAction*> EnabledEntries(const QWidget& menu) {
    std::vector<QAction*> entries;
    for (QAction* action : menu.actions())
        if (action->isEnabled() && action->isVisible() && !action->isSeparator())
            entries.push_back(action);
    return entries;
}

}  // namespace

void Robot::Step() {
    if (auto* menu = qobject_cast<QMenu*>(top)) return MenuStep(*menu);
    if (auto* dialog = qobject_cast<QFileDialog*>(top)) return FileStep(*dialog);
    if (qobject_cast<QMessageBox*>(top)) return chance.OneIn(5) ? KeyStep() : ControlStep();
    const int kind = chance.Below(40);
    if (kind < 14) return KeyStep();
    if (kind < 18) return TextStep();
    if (kind < 19) return FrameStep();
    ControlStep();
}

// --- menus and file dialogs --------------------------------------------------------------------

void Robot::MenuStep(QMenu& menu) {
    const std::vector<QAction*> entries = EnabledEntries(menu);
    if (entries.empty() || chance.OneIn(3)) {
        constexpr Qt::Key kMenuKeys[] = {Qt::Key_Down, Qt::Key_Up,     Qt::Key_Left,  Qt::Key_Right,
                                         Qt::Key_F,    Qt::Key_Return, Qt::Key_Escape};
        const Qt::Key key = entries.empty() ? Qt::Key_Escape : chance.Pick(kMenuKeys);
        Say("menu key", key);
        return Press(menu, key);
    }
    QAction* entry = chance.Pick(entries);
    const bool click = chance.OneIn(4);
    Say(click ? "click" : "choose", entry->text());
    if (click) return Click(menu, menu.actionGeometry(entry).center());
    menu.setActiveAction(entry);
    // An entry with a menu behind it has opened it by becoming active.
    if (!entry->menu()) Press(menu, Qt::Key_Return);
}

void Robot::FileStep(QFileDialog& dialog) {
    if (chance.OneIn(4)) {
        Say("no file");
        return Press(dialog, Qt::Key_Escape);
    }
    const FileName file = NameFor(dialog, chance);
    if (file.mayFail) excusedUntil = step + kExcused;
    Say("file name", file.name.c_str());
    auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    name->setText(QString::fromStdString(folder / file.name));
    Press(*name, Qt::Key_Return);
}

// --- the keyboard ------------------------------------------------------------------------------

Qt::KeyboardModifiers Robot::Modifiers() {
    constexpr Qt::KeyboardModifier kAny[] = {Qt::ControlModifier, Qt::ControlModifier,
                                             Qt::ShiftModifier, Qt::AltModifier};
    if (!chance.OneIn(4)) return {};
    const Qt::KeyboardModifiers one = chance.Pick(kAny);
    return chance.OneIn(4) ? one | chance.Pick(kAny) : one;
}

QString Robot::Text() {
    QString text;
    for (int words = chance.Roll(1, 3); words > 0; --words)
        text += QString::fromUtf8(chance.Pick(kTexts));
    return text;
}

void Robot::KeyStep() {
    const auto letter = static_cast<Qt::Key>(Qt::Key_A + chance.Below(26));
    const Qt::Key key = chance.OneIn(4) ? letter : chance.Pick(kKeys);
    const Qt::KeyboardModifiers with = Modifiers();
    QWidget& target = top->focusWidget() ? *top->focusWidget() : *top;
    Say("key", key, with, "to", NameOf(target));
    Press(target, key, with);
}

void Robot::TextStep() {
    QWidget& target = top->focusWidget() ? *top->focusWidget() : *top;
    const QString text = Text();
    const int way = chance.Below(8);
    Say("type", text, "to", NameOf(target), way);
    if (way == 0) return QGuiApplication::clipboard()->setText(text);
    way == 1 ? Compose(target, text) : Type(target, text);
}

// --- controls ----------------------------------------------------------------------------------

std::vector<QWidget*> Robot::Controls() const {
    std::vector<QWidget*> usable;
    for (QWidget* widget : top->findChildren<QWidget*>())
        if (widget->window() == top && widget->isVisible() && widget->isEnabled())
            usable.insert(usable.end(), static_cast<std::size_t>(WeightOf(*widget)), widget);
    return usable;
}

void Robot::ControlStep() {
    std::vector<QWidget*> controls = Controls();
    if (controls.empty()) return KeyStep();
    QWidget& control = *chance.Pick(controls);
    if (auto* bar = qobject_cast<QMenuBar*>(&control)) {
        QAction* menu = chance.Pick(EnabledEntries(*bar));
        Say("open menu", menu->text());
        return bar->setActiveAction(menu);
    }
    if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
        // Most worlds would be left before they have come to anything.
        if (top->windowTitle() == QLatin1String("Confirm Quit") && chance.OneIn(2))
            return Press(*top, Qt::Key_Escape);
        Say("press", NameOf(*button), button->text());
        if (!chance.OneIn(4)) return Click(*button, button->rect().center());
        button->setFocus();
        return Press(*button, Qt::Key_Space);
    }
    if (qobject_cast<QLineEdit*>(&control)) {
        QString text = chance.OneIn(3) ? Text() : QString::fromLatin1(chance.Pick(kNumbers));
        if (text == QLatin1String(kLongSide) && !chance.OneIn(kSeldom)) text = QStringLiteral("5");
        Say("fill", NameOf(control), "with", text);
        control.setFocus();
        Press(control, Qt::Key_A, Qt::ControlModifier);
        Press(control, Qt::Key_Delete);
        return Type(control, text);
    }
    MouseStep(control);
}

// --- the mouse ---------------------------------------------------------------------------------

QPoint Robot::PointOf(const QWidget& widget) {
    const int outside = chance.OneIn(12) ? 40 : 0;
    // Most of a long list is empty: its rows are at the top.
    const int tall = chance.OneIn(2) ? std::min(widget.height(), 160) : widget.height();
    return {chance.Roll(-outside, widget.width() - 1 + outside),
            chance.Roll(-outside, tall - 1 + outside)};
}

void Robot::MouseStep(QWidget& widget) {
    std::vector<QPoint> path;
    for (int points = chance.Roll(1, 5); points > 0; --points) path.push_back(PointOf(widget));
    const Qt::MouseButton button = chance.OneIn(3) ? Qt::RightButton : Qt::LeftButton;
    const Qt::KeyboardModifiers with = Modifiers();
    const int way = chance.Below(14);
    // A text control would go on scrolling by the clock.
    if (way == 0 && !qobject_cast<QAbstractScrollArea*>(widget.parentWidget()))
        return HoldStep(widget);
    Say("mouse", way, button, with, path, "in", NameOf(widget));
    if (way < 2) return MouseMove(widget, path[0], held == &widget ? heldButton : Qt::NoButton);
    if (way < 3) return TurnWheel(widget, path[0], chance.Roll(-3, 3) * 60, with);
    if (way < 5) return DoubleClick(widget, path[0], button, with);
    if (way < 10) return Click(widget, path[0], button, with);
    Drag(widget, path, button, with);
}

// Presses a button of the mouse and leaves it down, or lets it go.
void Robot::HoldStep(QWidget& widget) {
    // What has been opened since then has taken the release.
    if (held && held->window() != top) held = nullptr;
    QWidget& target = held ? *held : widget;
    const QPoint at = PointOf(target);
    Say(held ? "let go at" : "hold at", at, "in", NameOf(target));
    if (held) {
        held = nullptr;
        return MouseUp(target, at, heldButton);
    }
    held = &target;
    heldButton = chance.OneIn(3) ? Qt::RightButton : Qt::LeftButton;
    MouseDown(target, at, heldButton, Modifiers());
}

// Moves, resizes, maximises or closes a window, at times off the screen.
void Robot::FrameStep() {
    const QSize screen = top->screen()->size();
    const QPoint to(chance.Roll(-top->width(), screen.width()),
                    chance.Roll(-top->height(), screen.height()));
    const QSize size(chance.Roll(800, 1900), chance.Roll(600, 1200));
    const int way = chance.Below(top == window ? 5 : 2);
    Say("frame", way, to, size);
    if (way == 0) return void(top->close());
    if (way == 1) return top->move(to);
    if (way == 2) return window->setWindowState(window->windowState() ^ Qt::WindowMaximized);
    window->resize(size);
}
