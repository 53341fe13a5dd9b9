#include "tests/robot/dialog_steps.h"

#include "platform/qt/code_widget.h"
#include "platform/qt/picture_widget.h"
#include "platform/qt/qt_text.h"
#include "tests/robot/hands.h"
#include "tests/robot/window_steps.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QMenuBar>
#include <QSlider>

namespace {

constexpr const char* kNumbers[] = {
    "",   "0",  "1",  "2",      "3",     "8",           "12", "30",
    "60", "80", "-1", "100000", "32767", "99999999999", "x",
};
// A side of this many cells is as long as a grid can be; with the other side its surface has
// hundreds of megabytes, so it comes seldom.
constexpr const char* kLongSide = "32767";
constexpr int kSeldom = 40;

std::vector<QAction*> EnabledEntries(const QWidget& menu) {
    std::vector<QAction*> entries;
    for (QAction* action : menu.actions())
        if (action->isEnabled() && action->isVisible() && !action->isSeparator())
            entries.push_back(action);
    return entries;
}

}  // namespace

// --- menus -------------------------------------------------------------------------------------

void MenuBarStep(Robot& robot, const Scene& scene) {
    auto* bar = scene.Top()->findChild<QMenuBar*>();
    const std::vector<QAction*> menus = bar ? EnabledEntries(*bar) : std::vector<QAction*>();
    if (menus.empty()) return ControlStep(robot, scene);
    QAction* menu = robot.chance.Pick(menus);
    robot.Say("open menu " + ToUtf8(menu->text()));
    bar->setActiveAction(menu);
}

void MenuChooseStep(Robot& robot, const Scene& scene) {
    const std::vector<QAction*> entries = EnabledEntries(*scene.menu);
    if (entries.empty()) return EscapeStep(robot, scene);
    QAction* entry = robot.chance.Pick(entries);
    robot.Say("choose " + ToUtf8(entry->text()));
    scene.menu->setActiveAction(entry);
    // An entry with a menu behind it has opened it by becoming active.
    if (!entry->menu()) PressKey(*scene.menu, Qt::Key_Return);
}

void MenuKeyStep(Robot& robot, const Scene& scene) {
    constexpr Qt::Key kKeys[] = {Qt::Key_Down, Qt::Key_Up,     Qt::Key_Left, Qt::Key_Right,
                                 Qt::Key_F,    Qt::Key_Return, Qt::Key_S};
    const Qt::Key chosen = robot.chance.Pick(kKeys);
    robot.Say("menu key " + std::to_string(chosen));
    PressKey(*scene.menu, chosen);
}

void MenuClickStep(Robot& robot, const Scene& scene) {
    // Of a menu's width, which goes by the names of recent files, only parts are spoken of; now
    // and then a point beside the menu.
    const int part = robot.chance.Roll(-5, 104);
    const int y = robot.chance.Roll(-10, scene.menu->height() + 9);
    const QPoint at(scene.menu->width() * part / 100, y);
    robot.Say("menu click " + std::to_string(part) + " % across, at row " + std::to_string(y));
    MouseMove(*scene.menu, at, Qt::NoButton, {});
    Drag(*scene.menu, {at}, Qt::LeftButton, {});
}

void AcceleratorStep(Robot& robot, const Scene& scene) {
    constexpr Qt::Key kKeys[] = {Qt::Key_O, Qt::Key_S, Qt::Key_S, Qt::Key_R, Qt::Key_F,
                                 Qt::Key_T, Qt::Key_C, Qt::Key_F, Qt::Key_T, Qt::Key_C};
    const Qt::Key chosen = robot.chance.OneIn(30) ? Qt::Key_N : robot.chance.Pick(kKeys);
    robot.Say("accelerator Ctrl+" + std::string(1, static_cast<char>(chosen)));
    PressKey(*scene.Edit(), chosen, Qt::ControlModifier);
}

// --- boxes and file dialogs --------------------------------------------------------------------

void BoxButtonStep(Robot& robot, const Scene& scene) {
    const QList<QAbstractButton*> buttons = scene.box->buttons();
    QAbstractButton* button = robot.chance.Pick(buttons);
    // Most worlds would be left before they have come to anything.
    const bool leaves = scene.box->windowTitle() == QLatin1String("Confirm Quit");
    if (leaves && robot.chance.OneIn(2)) button = scene.box->button(QMessageBox::Cancel);
    robot.Say("press " + ToUtf8(button->text()) + " of " + ToUtf8(scene.box->windowTitle()) + ": " +
              ToUtf8(scene.box->text()));
    button->click();
}

void FileNameStep(Robot& robot, const Scene& scene) {
    const Files::Answer answer = robot.files.AnswerFor(*scene.files, robot.chance);
    if (answer.mayFail) robot.Excuse();
    robot.Say("file name " + answer.name);
    auto* name = scene.files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    name->setText(FromUtf8(answer.name));
    PressKey(*name, Qt::Key_Return);
}

// --- controls ----------------------------------------------------------------------------------

namespace {

void UseButton(Robot& robot, QAbstractButton& button) {
    robot.Say("press " + NameOf(button));
    if (robot.chance.OneIn(4)) {
        button.setFocus();
        PressKey(button, Qt::Key_Space);
    } else {
        button.click();
    }
}

void UseField(Robot& robot, QLineEdit& field) {
    QString text = RandomText(robot);
    if (field.validator()) {
        text = QString::fromLatin1(robot.chance.Pick(kNumbers));
        if (text == QLatin1String(kLongSide) && !robot.chance.OneIn(kSeldom))
            text = QStringLiteral("5");
    }
    robot.Say("fill " + NameOf(field) + " with \"" + ToUtf8(text) + "\"");
    field.setFocus();
    PressKey(field, Qt::Key_A, Qt::ControlModifier);
    PressKey(field, Qt::Key_Delete);
    TypeText(field, text);
}

void UseSlider(Robot& robot, QSlider& slider) {
    constexpr Qt::Key kKeys[] = {Qt::Key_Left, Qt::Key_Right,    Qt::Key_Home,
                                 Qt::Key_End,  Qt::Key_PageDown, Qt::Key_PageUp};
    if (robot.chance.OneIn(2)) return DragIn(robot, slider);
    const Qt::Key chosen = robot.chance.Pick(kKeys);
    robot.Say("slider key " + std::to_string(chosen) + " to " + NameOf(slider));
    PressKey(slider, chosen);
}

void UseCode(Robot& robot, CodeWidget& code) {
    struct CodeKey {
        Qt::Key key;
        Qt::KeyboardModifiers with;
    };
    static const CodeKey kKeys[] = {
        {Qt::Key_Z, Qt::ControlModifier},
        {Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier},
        {Qt::Key_Y, Qt::ControlModifier},
        {Qt::Key_V, Qt::ControlModifier},
        {Qt::Key_C, Qt::ControlModifier},
        {Qt::Key_X, Qt::ControlModifier},
        {Qt::Key_A, Qt::ControlModifier},
        {Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier},
        {Qt::Key_Up, Qt::ShiftModifier},
        {Qt::Key_Home, Qt::ControlModifier},
        {Qt::Key_End, Qt::ControlModifier},
        {Qt::Key_Delete, Qt::NoModifier},
        {Qt::Key_Backspace, Qt::NoModifier},
        {Qt::Key_Return, Qt::NoModifier},
        {Qt::Key_Tab, Qt::NoModifier},
    };
    switch (robot.chance.Below(4)) {
        case 0:
            return DragIn(robot, *code.viewport());
        case 1: {
            const CodeKey& chosen = robot.chance.Pick(kKeys);
            robot.Say("code key " + Shown(chosen.with) + std::to_string(chosen.key));
            return PressKey(code, chosen.key, chosen.with);
        }
        default: {
            const QString text = RandomText(robot);
            robot.Say("type \"" + ToUtf8(text) + "\" to " + NameOf(code));
            code.setFocus();
            return TypeText(code, text);
        }
    }
}

// How often a control is used, by its kind.
int WeightOf(const QWidget& control) {
    if (dynamic_cast<const CodeWidget*>(&control)) return 12;
    if (dynamic_cast<const PictureWidget*>(&control)) return 3;
    return qobject_cast<const QLineEdit*>(&control) ? 2 : 1;
}

QWidget* PickControl(Robot& robot, const std::vector<QWidget*>& controls) {
    int total = 0;
    for (const QWidget* control : controls) total += WeightOf(*control);
    int rest = robot.chance.Below(total);
    for (QWidget* control : controls) {
        rest -= WeightOf(*control);
        if (rest < 0) return control;
    }
    return controls.front();
}

}  // namespace

void ControlStep(Robot& robot, const Scene& scene) {
    const std::vector<QWidget*> controls = Controls(*scene.Top());
    if (controls.empty()) return EscapeStep(robot, scene);
    QWidget* control = PickControl(robot, controls);
    if (auto* button = qobject_cast<QAbstractButton*>(control)) return UseButton(robot, *button);
    if (auto* field = qobject_cast<QLineEdit*>(control)) return UseField(robot, *field);
    if (auto* slider = qobject_cast<QSlider*>(control)) return UseSlider(robot, *slider);
    if (auto* code = dynamic_cast<CodeWidget*>(control)) return UseCode(robot, *code);
    if (robot.chance.OneIn(2)) return ClickIn(robot, *control);
    DragIn(robot, *control);
}
