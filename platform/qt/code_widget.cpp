#include "platform/qt/code_widget.h"

#include <QKeyEvent>
#include <QWheelEvent>

namespace {

constexpr int kNotch = 120;  // eighths of a degree

}  // namespace

CodeWidget::CodeWidget(QWidget* parent)
    : QsciScintillaBase(parent),
      direct(reinterpret_cast<DirectFunction>(SendScintillaPtrResult(SCI_GETDIRECTFUNCTION))),
      pointer(reinterpret_cast<std::intptr_t>(SendScintillaPtrResult(SCI_GETDIRECTPOINTER))) {
    Send(SCI_SETCODEPAGE, SC_CP_UTF8, 0);
}

// Ctrl with the wheel zooms, a step a notch.
void CodeWidget::wheelEvent(QWheelEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier)) return QsciScintillaBase::wheelEvent(event);
    wheelTurn += event->angleDelta().y();
    for (; wheelTurn >= kNotch; wheelTurn -= kNotch) Send(SCI_ZOOMIN, 0, 0);
    for (; wheelTurn <= -kNotch; wheelTurn += kNotch) Send(SCI_ZOOMOUT, 0, 0);
    event->accept();
}

// Tab is a character here: Ctrl+Tab and Ctrl+Shift+Tab go to the other controls.
void CodeWidget::keyPressEvent(QKeyEvent* event) {
    const bool forward = event->key() == Qt::Key_Tab;
    const bool tab = forward || event->key() == Qt::Key_Backtab;
    if (tab && event->modifiers() & Qt::ControlModifier)
        QAbstractScrollArea::focusNextPrevChild(forward &&
                                                !(event->modifiers() & Qt::ShiftModifier));
    else
        QsciScintillaBase::keyPressEvent(event);
}
