// What a person's hands do to a widget, as the events that a window system sends.
//
// Each call may open and close menus and dialogs; the widget may be gone when it returns.
#pragma once

#include <QPoint>
#include <QString>
#include <QWidget>
#include <vector>

/// A key down and up, accelerators and mnemonics included.
void Press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers with = {});
/// Each character as one key press, whatever keyboard could have typed it; line ends, tabs and
/// escapes by their keys.
void Type(QWidget& widget, const QString& text);
/// A text that an input method has composed.
void Compose(QWidget& widget, const QString& text);

// The points are the widget's own.
void MouseMove(QWidget& widget, QPoint at, Qt::MouseButtons held, Qt::KeyboardModifiers with = {});
/// Press at the first point, move over the others, release at the last.
void Drag(QWidget& widget, const std::vector<QPoint>& path, Qt::MouseButton button,
          Qt::KeyboardModifiers with = {});
void Click(QWidget& widget, QPoint at, Qt::MouseButton button = Qt::LeftButton,
           Qt::KeyboardModifiers with = {});
void DoubleClick(QWidget& widget, QPoint at, Qt::MouseButton button,
                 Qt::KeyboardModifiers with = {});
/// `delta` in eighths of a degree; 120 is a notch away from the person.
void TurnWheel(QWidget& widget, QPoint at, int delta, Qt::KeyboardModifiers with = {});
