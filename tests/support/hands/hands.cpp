#include "tests/support/hands/hands.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QWheelEvent>
#include <QtTest>

namespace {

void SendMouse(QWidget& widget, QEvent::Type type, QPoint at, Qt::MouseButton changed,
               Qt::MouseButtons held, Qt::KeyboardModifiers with) {
    QMouseEvent event(type, at, widget.mapToGlobal(at), changed, held, with);
    QApplication::sendEvent(&widget, &event);
}

void Release(QWidget& widget, QPoint at, Qt::MouseButton button, Qt::KeyboardModifiers with) {
    SendMouse(widget, QEvent::MouseButtonRelease, at, button, Qt::NoButton, with);
}

}  // namespace

void Press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers with) {
    QTest::keyClick(&widget, key, with);
}

void Type(QWidget& widget, const QString& text) {
    const QPointer<QWidget> alive(&widget);
    for (const char32_t c : text.toUcs4()) {
        const Qt::Key key = c == '\n'   ? Qt::Key_Return
                            : c == '\t' ? Qt::Key_Tab
                            : c == 27   ? Qt::Key_Escape
                                        : Qt::Key(0);
        if (key && alive) Press(widget, key);
        if (key) continue;
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            if (!alive) return;
            QKeyEvent event(type, 0, Qt::NoModifier, QString::fromUcs4(&c, 1));
            QApplication::sendEvent(&widget, &event);
        }
    }
}

void Compose(QWidget& widget, const QString& text) {
    QInputMethodEvent event;
    event.setCommitString(text);
    QApplication::sendEvent(&widget, &event);
}

void MouseMove(QWidget& widget, QPoint at, Qt::MouseButtons held, Qt::KeyboardModifiers with) {
    SendMouse(widget, QEvent::MouseMove, at, Qt::NoButton, held, with);
}

void Drag(QWidget& widget, const std::vector<QPoint>& path, Qt::MouseButton button,
          Qt::KeyboardModifiers with) {
    const QPointer<QWidget> alive(&widget);
    SendMouse(widget, QEvent::MouseButtonPress, path.front(), button, button, with);
    for (std::size_t i = 1; i < path.size() && alive; ++i) MouseMove(widget, path[i], button, with);
    if (alive) Release(widget, path.back(), button, with);
}

void Click(QWidget& widget, QPoint at, Qt::MouseButton button, Qt::KeyboardModifiers with) {
    Drag(widget, {at}, button, with);
}

void DoubleClick(QWidget& widget, QPoint at, Qt::MouseButton button, Qt::KeyboardModifiers with) {
    const QPointer<QWidget> alive(&widget);
    Click(widget, at, button, with);
    if (alive) SendMouse(widget, QEvent::MouseButtonDblClick, at, button, button, with);
    if (alive) Release(widget, at, button, with);
}

void TurnWheel(QWidget& widget, QPoint at, int delta, Qt::KeyboardModifiers with) {
    QWheelEvent event(at, widget.mapToGlobal(at), {}, QPoint(0, delta), Qt::NoButton, with,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}
