// The steps: what can be done with the widgets of any program.

#include "tests/robot/run.h"
#include "tests/support/hands/hands.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSlider>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
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

// --- menus and file dialogs --------------------------------------------------------------------

void MenuStep(Run& run, QMenu& menu) {
    constexpr Qt::Key kMenuKeys[] = {Qt::Key_Down, Qt::Key_Up,     Qt::Key_Left,  Qt::Key_Right,
                                     Qt::Key_F,    Qt::Key_Return, Qt::Key_Escape};
    const std::vector<QAction*> entries = EnabledEntries(menu);
    if (entries.empty() || run.chance.OneIn(3)) {
        const Qt::Key key = entries.empty() ? Qt::Key_Escape : run.chance.Pick(kMenuKeys);
        run.Say("menu key", key);
        return Press(menu, key);
    }
    QAction* entry = run.chance.Pick(entries);
    const bool click = run.chance.OneIn(4);
    run.Say(click ? "click" : "choose", entry->text());
    if (click) return Click(menu, menu.actionGeometry(entry).center());
    menu.setActiveAction(entry);
    // An entry with a menu behind it has opened it by becoming active.
    if (!entry->menu()) Press(menu, Qt::Key_Return);
}

void FileStep(Run& run, QFileDialog& dialog) {
    constexpr const char* kBad[] = {"bad-half", "bad-other", "bad-text", "bad-empty", "bad saved",
                                    "folder",   "missing",   "locked/a", "missing/a", ""};
    const QString filters = dialog.nameFilters().join(QLatin1Char(' '));
    std::vector<std::string> kinds{""};
    for (const char* kind : {".zqlt", ".zobj", ".qcf", ".chr", ".bmp", ".att", ".txt"})
        if (filters.contains(QLatin1String(kind))) kinds.emplace_back(kind);
    // A sheet's picture and a clipboard's are of the same form but not of the same use: what a
    // clipboard has saved may be too large for a font.
    bool isFont = false;
    for (const QWidget* window : QApplication::topLevelWidgets())
        isFont |= window->isVisible() && window->windowTitle() == QLatin1String("Font Edit");
    const bool bad = run.chance.OneIn(3);
    std::string name = bad ? run.chance.Pick(kBad) : isFont ? "font-" : "";
    if (bad) run.Excuse();
    // The program puts the ending behind a name that it saves under.
    const bool saves = dialog.acceptMode() == QFileDialog::AcceptSave;
    if (!bad)
        name +=
            saves || run.chance.OneIn(2) ? "saved" + std::to_string(run.chance.Below(3)) : "good";
    if (bad || !saves)
        name += kinds[static_cast<std::size_t>(
            run.chance.Roll(kinds.size() > 1, static_cast<int>(kinds.size()) - 1))];
    run.Say("file name", name.c_str());
    auto* field = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    field->setText(QString::fromStdString(run.folder / name));
    Press(*field, run.chance.OneIn(4) ? Qt::Key_Escape : Qt::Key_Return);
}

// --- the keyboard ------------------------------------------------------------------------------

Qt::KeyboardModifiers Modifiers(Chance& chance) {
    constexpr Qt::KeyboardModifier kAny[] = {Qt::ControlModifier, Qt::ControlModifier,
                                             Qt::ShiftModifier, Qt::AltModifier};
    if (!chance.OneIn(4)) return {};
    const Qt::KeyboardModifiers one = chance.Pick(kAny);
    return chance.OneIn(4) ? one | chance.Pick(kAny) : one;
}

QString Text(Chance& chance) {
    QString text;
    for (int words = chance.Roll(1, 3); words > 0; --words)
        text += QString::fromUtf8(chance.Pick(kTexts));
    return text;
}

void KeyStep(Run& run, QWidget& target) {
    const auto letter = static_cast<Qt::Key>(Qt::Key_A + run.chance.Below(26));
    const Qt::Key key = run.chance.OneIn(4) ? letter : run.chance.Pick(kKeys);
    const Qt::KeyboardModifiers with = Modifiers(run.chance);
    run.Say("key", key, with, "to", NameOf(target));
    Press(target, key, with);
}

void TextStep(Run& run, QWidget& target) {
    const QString text = Text(run.chance);
    const int way = run.chance.Below(8);
    run.Say("type", text, "to", NameOf(target), way);
    if (way == 0) return QGuiApplication::clipboard()->setText(text);
    way == 1 ? Compose(target, text) : Type(target, text);
}

// --- the mouse ---------------------------------------------------------------------------------

QPoint PointOf(Chance& chance, const QWidget& widget) {
    const int outside = chance.OneIn(12) ? 40 : 0;
    // Most of a long list is empty: its rows are at the top.
    const int tall = chance.OneIn(2) ? std::min(widget.height(), 160) : widget.height();
    return {chance.Roll(-outside, widget.width() - 1 + outside),
            chance.Roll(-outside, tall - 1 + outside)};
}

void MouseStep(Run& run, QWidget& widget) {
    std::vector<QPoint> path;
    for (int points = run.chance.Roll(1, 5); points > 0; --points)
        path.push_back(PointOf(run.chance, widget));
    const Qt::MouseButton button = run.chance.OneIn(3) ? Qt::RightButton : Qt::LeftButton;
    const Qt::KeyboardModifiers with = Modifiers(run.chance);
    const int way = run.chance.Below(14);
    run.Say("mouse", way, button, with, path, "in", NameOf(widget));
    if (way == 0 && run.held == &widget) {
        run.held = nullptr;
        return MouseUp(widget, path[0], run.heldButton, with);
    }
    // A text control would go on scrolling by the clock.
    if (way == 0 && !run.held && !qobject_cast<QAbstractScrollArea*>(widget.parentWidget())) {
        run.held = &widget;
        run.heldButton = button;
        return MouseDown(widget, path[0], button, with);
    }
    if (way < 2)
        return MouseMove(widget, path[0], run.held == &widget ? run.heldButton : Qt::NoButton);
    // What else is pressed takes the release of what was held.
    run.held = nullptr;
    if (way < 3) return TurnWheel(widget, path[0], run.chance.Roll(-3, 3) * 60, with);
    if (way < 5) return DoubleClick(widget, path[0], button, with);
    if (way < 10) return Click(widget, path[0], button, with);
    Drag(widget, path, button, with);
}

// --- controls ----------------------------------------------------------------------------------

void ControlStep(Run& run, QWidget& top) {
    std::vector<QWidget*> controls;
    for (QWidget* widget : top.findChildren<QWidget*>())
        if (widget->window() == &top && widget->isVisible() && widget->isEnabled())
            controls.insert(controls.end(), static_cast<std::size_t>(WeightOf(*widget)), widget);
    if (controls.empty()) return KeyStep(run, top);
    QWidget& control = *run.chance.Pick(controls);
    if (auto* bar = qobject_cast<QMenuBar*>(&control)) {
        QAction* menu = run.chance.Pick(EnabledEntries(*bar));
        run.Say("open menu", menu->text());
        return bar->setActiveAction(menu);
    }
    if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
        // Most worlds would be left before they have come to anything.
        if (top.windowTitle() == QLatin1String("Confirm Quit") && run.chance.OneIn(2))
            return Press(top, Qt::Key_Escape);
        run.Say("press", NameOf(*button), button->text());
        if (!run.chance.OneIn(4)) return Click(*button, button->rect().center());
        button->setFocus();
        return Press(*button, Qt::Key_Space);
    }
    if (!qobject_cast<QLineEdit*>(&control)) return MouseStep(run, control);
    QString text =
        run.chance.OneIn(3) ? Text(run.chance) : QString::fromLatin1(run.chance.Pick(kNumbers));
    if (text == QLatin1String(kLongSide) && !run.chance.OneIn(kSeldom)) text.chop(4);
    run.Say("fill", NameOf(control), "with", text);
    control.setFocus();
    Press(control, Qt::Key_A, Qt::ControlModifier);
    Press(control, Qt::Key_Delete);
    Type(control, text);
}

// Moves, resizes, maximizes or closes a window, at times off the screen.
void FrameStep(Run& run, QWidget& top) {
    const QPoint to(run.chance.Roll(-999, 999), run.chance.Roll(-999, 999));
    const int way = run.chance.Below(qobject_cast<QDialog*>(&top) ? 2 : 5);
    run.Say("frame", way, to);
    if (way == 0) return void(top.close());
    if (way == 1) return top.move(to);
    if (way == 2) return top.setWindowState(top.windowState() ^ Qt::WindowMaximized);
    top.resize(1400 + to.x() / 2, 900 + to.y() / 3);
}

}  // namespace

void RandomStep(Run& run, QWidget& top) {
    if (auto* menu = qobject_cast<QMenu*>(&top)) return MenuStep(run, *menu);
    if (auto* dialog = qobject_cast<QFileDialog*>(&top)) return FileStep(run, *dialog);
    QWidget& focus = top.focusWidget() ? *top.focusWidget() : top;
    const int kind = run.chance.Below(40);
    if (kind < 14) return KeyStep(run, focus);
    if (kind < 18) return TextStep(run, focus);
    if (kind < 19) return FrameStep(run, top);
    ControlStep(run, top);
}
