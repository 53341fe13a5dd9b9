// The steps: what can be done with the widgets of any program.

#include "tests/robot/run.h"
#include "tests/support/hands/hands.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QRegularExpression>

using namespace Qt;

namespace {

constexpr Key kKeys[] = {
    Key_Left,   Key_Right,   Key_Up,       Key_Down,      Key_Space,   Key_Enter,
    Key_Tab,    Key_Backtab, Key_Menu,     Key_Backspace, Key_Home,    Key_End,
    Key_PageUp, Key_Control, Key_PageDown, Key_Shift,     Key_Escape,  Key_Insert,
    Key_Delete, Key_Return,  Key_F1,       Key_F2,        Key_F3,      Key_F4,
    Key_F6,     Key_Plus,    Key_CapsLock, Key_Asterisk,  Key_NumLock, Key_F10,
};
constexpr Key kMenuKeys[] = {Key_Down, Key_Up, Key_Left, Key_Right, Key_F, Key_Return, Key_Escape};
constexpr KeyboardModifiers kModifiers[] = {ControlModifier, ShiftModifier, AltModifier,
                                            ControlModifier | ShiftModifier};
// Of some characters no code page has any. No tilde: a line that begins with "~pe" ends a script
// in the file.
constexpr const char* kTexts[] = {
    "0", "1",         "3",    "8",      "12",     "60",          "-1",
    "",  "two words", ".",    "#",      ":a\n#p", "#if .self.x", "99999999999",
    "é", "\u2588中",  "\t\n", "&&%s%n", "\"--CC", "'comment\n",  "\U0001f600",
};
constexpr const char* kFiles[] = {"good", "good", "good", "saved0", "saved1", "bad"};

KeyboardModifiers Held(Run& run) { return run.OneIn(3) ? run.Pick(kModifiers) : NoModifier; }

QString NameOf(const QWidget& widget) {
    return QLatin1String(widget.metaObject()->className()) + QLatin1Char(' ') +
           (widget.accessibleName().isEmpty() ? widget.objectName() : widget.accessibleName());
}

// How often a control is used; 0 for what cannot be used. What paints itself is a plain widget
// that holds no others, and is used by its size.
int WeightOf(const QWidget& control) {
    if (!control.isVisible() || !control.isEnabled()) return 0;
    if (qobject_cast<const QMenuBar*>(&control)) return 6;
    if (control.metaObject() == &QWidget::staticMetaObject && !control.findChild<QWidget*>())
        return 2 + control.width() * control.height() / 30'000;
    return 3 * control.inherits("QLineEdit") + control.inherits("QAbstractButton") +
           control.inherits("QAbstractSlider") + control.inherits("QSplitterHandle");
}

QList<QAction*> Entries(const QWidget& menu) {
    QList<QAction*> entries = menu.actions();
    entries.removeIf([](const QAction* entry) {
        return !entry->isEnabled() || !entry->isVisible() || entry->isSeparator();
    });
    return entries;
}

void MenuStep(Run& run, QMenu& menu) {
    const QList<QAction*> entries = Entries(menu);
    if (entries.empty() || run.OneIn(3)) {
        const Key key = entries.empty() ? Key_Escape : run.Pick(kMenuKeys);
        run.Say("menu key", key);
        return Press(menu, key);
    }
    QAction* entry = run.Pick(entries);
    const bool click = run.OneIn(4);
    run.Say(click ? "click" : "choose", entry->text());
    if (click) return Click(menu, menu.actionGeometry(entry).center());
    menu.setActiveAction(entry);
    // An entry with a menu behind it has opened it by becoming active.
    if (!entry->menu()) Press(menu, Key_Return);
}

void FileStep(Run& run, QFileDialog& dialog) {
    QString name = QLatin1String(run.Pick(kFiles));
    const QRegularExpression others(QStringLiteral("[^.a-z]+"));
    const QStringList kinds =
        dialog.nameFilters().join(QString()).split(others).filter(QLatin1String("."));
    // A sheet's picture and a clipboard's are of the same form but not of the same use.
    const bool bad = name == QLatin1String("bad");
    if (bad || kinds.size() > 1 || kinds.contains(QLatin1String(".bmp"))) run.Excuse();
    // The program puts the ending behind a name that it saves under.
    if (bad || dialog.acceptMode() == QFileDialog::AcceptOpen) name += run.Pick(kinds);
    auto* field = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    run.Say("file name", name, dialog.nameFilters(), dialog.defaultSuffix(),
            dialog.directory().path(), dialog.sidebarUrls(), field->text());
    field->setText(QString::fromStdString(run.folder / name.toStdString()));
    Press(*field, run.OneIn(4) ? Key_Escape : Key_Return);
}

void KeyStep(Run& run, QWidget& target) {
    const auto letter = static_cast<Key>(Key_A + run.Below(26));
    // The first, and the most used, move and paint.
    const Key key = run.OneIn(4) ? letter : kKeys[run.Below(run.OneIn(5) ? 5 : 30)];
    const KeyboardModifiers with = Held(run);
    run.Say("key", key, with, "to", NameOf(target));
    Press(target, key, with);
}

void TextStep(Run& run, QWidget& target) {
    QString text = QString::fromUtf8(run.Pick(kTexts));
    text += QString::fromUtf8(run.Pick(kTexts));
    // A field for a number refuses most texts.
    bool number = false;
    const int near = target.property("text").toInt(&number) + run.Below(20) - 8;
    if (number && !run.OneIn(3)) text = QString::number(near);
    const int way = run.Below(8);
    run.Say("type", text, "to", NameOf(target), way);
    if (way == 0) return QGuiApplication::clipboard()->setText(text);
    way == 1 ? Compose(target, text) : Type(target, text);
}

void MouseStep(Run& run, QWidget& widget) {
    std::vector<QPoint> path(static_cast<std::size_t>(1 + run.Below(5)));
    for (QPoint& point : path) {
        const int outside = run.OneIn(12) ? 40 : 0;
        // Most of a long list is empty: its rows are at the top.
        const int tall = run.OneIn(2) ? std::min(widget.height(), 160) : widget.height();
        point = {run.Below(widget.width() + 2 * outside) - outside,
                 run.Below(tall + 2 * outside) - outside};
    }
    const MouseButton button = run.OneIn(3) ? RightButton : LeftButton;
    const KeyboardModifiers with = Held(run);
    const int way = run.Below(14);
    run.Say("mouse", way, button, with, path, "in", NameOf(widget));
    if (way < 2) return MouseMove(widget, path[0], NoButton);
    if (way < 3) return TurnWheel(widget, path[0], run.Below(7) * 60 - 180, with);
    if (way < 5) return DoubleClick(widget, path[0], button, with);
    if (way < 10) path.resize(1);
    Drag(widget, path, button, with);
}

void ControlStep(Run& run, QWidget& top) {
    QWidgetList controls;
    for (QWidget* widget : top.findChildren<QWidget*>())
        if (widget->window() == &top) controls += QWidgetList(WeightOf(*widget), widget);
    if (controls.empty()) return KeyStep(run, top);
    QWidget& control = *run.Pick(controls);
    run.Say("use", NameOf(control));
    if (auto* bar = qobject_cast<QMenuBar*>(&control))
        return bar->setActiveAction(run.Pick(Entries(*bar)));
    // Most worlds would be left before they have come to anything.
    if (top.windowTitle() == QLatin1String("Confirm Quit") && run.OneIn(2))
        return Press(top, Key_Escape);
    if (control.inherits("QAbstractButton")) return Click(control, control.rect().center());
    if (!control.inherits("QLineEdit")) return MouseStep(run, control);
    control.setFocus();
    Press(control, Key_A, ControlModifier);
    TextStep(run, control);
}

}  // namespace

void RandomStep(Run& run, QWidget& top) {
    if (auto* menu = qobject_cast<QMenu*>(&top)) return MenuStep(run, *menu);
    if (auto* dialog = qobject_cast<QFileDialog*>(&top)) return FileStep(run, *dialog);
    QWidget& focus = top.focusWidget() ? *top.focusWidget() : top;
    const int kind = run.Below(40);
    if (kind < 14) return KeyStep(run, focus);
    if (kind < 18) return TextStep(run, focus);
    if (kind > 18) return ControlStep(run, top);
    const QPoint to{run.Below(1999) - 999, run.Below(1999) - 999};
    const int way = run.Below(3);
    run.Say("frame", way, to);
    if (way == 0) return void(top.close());
    way == 1 ? top.move(to) : top.resize(1400 + to.x() / 2, 900 + to.y() / 3);
}
