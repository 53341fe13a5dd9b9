#include "tests/robot/scene.h"

#include "platform/qt/code_widget.h"
#include "platform/qt/picture_widget.h"
#include "platform/qt/qt_text.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QSlider>

namespace {

QtFrame* MainWindow() {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* frame = dynamic_cast<QtFrame*>(widget); frame && frame->isVisible()) return frame;
    return nullptr;
}

bool IsUsable(const QWidget& widget) {
    if (!widget.isVisible() || !widget.isEnabled()) return false;
    if (const auto* edit = qobject_cast<const QLineEdit*>(&widget)) return !edit->isReadOnly();
    return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QSlider*>(&widget) ||
           dynamic_cast<const PictureWidget*>(&widget) || dynamic_cast<const CodeWidget*>(&widget);
}

}  // namespace

QWidget* Scene::Top() const {
    switch (place) {
        case Place::Menu:
            return menu;
        case Place::Window:
            return window;
        case Place::Nothing:
            return nullptr;
        default:
            return dialog;
    }
}

Scene LookAround() {
    Scene scene;
    scene.window = MainWindow();
    if (scene.window) scene.place = Place::Window;
    QWidget* modal = QApplication::activeModalWidget();
    scene.dialog = qobject_cast<QDialog*>(modal);
    scene.box = qobject_cast<QMessageBox*>(modal);
    scene.files = qobject_cast<QFileDialog*>(modal);
    if (scene.dialog) scene.place = Place::Dialog;
    if (scene.files) scene.place = Place::FileDialog;
    if (scene.box) scene.place = Place::Box;
    scene.menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (scene.menu) scene.place = Place::Menu;
    return scene;
}

QWidget& KeyTarget(const Scene& scene) {
    QWidget& top = *scene.Top();
    if (scene.place == Place::Menu) return top;
    QWidget* focus = top.focusWidget();
    return focus && focus->isVisible() ? *focus : top;
}

std::vector<QWidget*> Controls(const QWidget& window) {
    std::vector<QWidget*> usable;
    for (QWidget* widget : window.findChildren<QWidget*>())
        if (widget->window() == &window && IsUsable(*widget)) usable.push_back(widget);
    return usable;
}

std::string NameOf(const QWidget& widget) {
    const QString own =
        widget.accessibleName().isEmpty() ? widget.objectName() : widget.accessibleName();
    const QString text = own.isEmpty() ? widget.windowTitle() : own;
    return std::string(widget.metaObject()->className()) + " \"" + ToUtf8(text) + "\"";
}
