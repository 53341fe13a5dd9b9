#include "tests/robot/hands.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QWheelEvent>
#include <QWindow>
#include <QtTest>

namespace {

void SendMouse(QWidget& widget, QEvent::Type type, QPoint at, Qt::MouseButton changed,
               Qt::MouseButtons held, Qt::KeyboardModifiers with) {
    QMouseEvent event(type, at, widget.mapToGlobal(at), changed, held, with);
    QApplication::sendEvent(&widget, &event);
}

}  // namespace

void PressKey(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers with) {
    QTest::keyClick(&widget, key, with);
}

void PressWindowKey(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers with) {
    const QPointer<QWindow> window(widget.window()->windowHandle());
    const bool letter = key >= Qt::Key_A && key <= Qt::Key_Z;
    const QString text = letter && !with ? QString(QChar(key)) : QString();
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (!window) return;
        QKeyEvent event(type, key, with, text);
        QApplication::sendEvent(window, &event);
    }
}

void ComposeText(QWidget& widget, const QString& text) {
    QInputMethodEvent event;
    event.setCommitString(text);
    QApplication::sendEvent(&widget, &event);
}

void TypeText(QWidget& widget, const QString& text) {
    const QPointer<QWidget> alive(&widget);
    for (const char32_t c : text.toUcs4()) {
        const QString one = QString::fromUcs4(&c, 1);
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            if (!alive) return;
            QKeyEvent event(type, 0, Qt::NoModifier, one);
            QApplication::sendEvent(&widget, &event);
        }
    }
}

void MouseDown(QWidget& widget, QPoint at, Qt::MouseButton button, Qt::KeyboardModifiers with) {
    SendMouse(widget, QEvent::MouseButtonPress, at, button, button, with);
}

void MouseUp(QWidget& widget, QPoint at, Qt::MouseButton button, Qt::KeyboardModifiers with) {
    SendMouse(widget, QEvent::MouseButtonRelease, at, button, Qt::NoButton, with);
}

void MouseMove(QWidget& widget, QPoint at, Qt::MouseButtons held, Qt::KeyboardModifiers with) {
    SendMouse(widget, QEvent::MouseMove, at, Qt::NoButton, held, with);
}

void DoubleClick(QWidget& widget, QPoint at, Qt::MouseButton button, Qt::KeyboardModifiers with) {
    const QPointer<QWidget> alive(&widget);
    MouseDown(widget, at, button, with);
    if (alive) MouseUp(widget, at, button, with);
    if (alive) SendMouse(widget, QEvent::MouseButtonDblClick, at, button, button, with);
    if (alive) MouseUp(widget, at, button, with);
}

void Drag(QWidget& widget, const std::vector<QPoint>& path, Qt::MouseButton button,
          Qt::KeyboardModifiers with) {
    const QPointer<QWidget> alive(&widget);
    MouseDown(widget, path.front(), button, with);
    for (std::size_t i = 1; i < path.size(); ++i)
        if (alive) MouseMove(widget, path[i], button, with);
    if (alive) MouseUp(widget, path.back(), button, with);
}

void TurnWheel(QWidget& widget, QPoint at, int delta, Qt::KeyboardModifiers with) {
    QWheelEvent event(at, widget.mapToGlobal(at), {}, QPoint(0, delta), Qt::NoButton, with,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}
