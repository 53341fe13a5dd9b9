#include "platform/qt/code_widget.h"

#include "platform/scintilla_messages.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QWheelEvent>

namespace {

constexpr int kNotch = 120;  // eighths of a degree

#define SAME(name, number) \
    static_assert(unsigned{QsciScintillaBase::name} == number, #name " has another number");
SCINTILLA_NUMBERS(SAME)
#undef SAME

}  // namespace

CodeWidget::CodeWidget(QWidget* parent)
    : QsciScintillaBase(parent),
      direct(reinterpret_cast<DirectFunction>(SendScintillaPtrResult(SCI_GETDIRECTFUNCTION))),
      pointer(reinterpret_cast<std::intptr_t>(SendScintillaPtrResult(SCI_GETDIRECTPOINTER))) {
    Send(SCI_SETCODEPAGE, SC_CP_UTF8, 0);
}

bool CodeWidget::IsOnScreen(std::intptr_t position) {
    const auto x = static_cast<int>(direct(pointer, SCI_POINTXFROMPOSITION, 0, position));
    const auto y = static_cast<int>(direct(pointer, SCI_POINTYFROMPOSITION, 0, position));
    return QGuiApplication::screenAt(viewport()->mapToGlobal(QPoint(x, y))) != nullptr;
}

std::intptr_t CodeWidget::Send(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) {
    // The list is fitted into the screen on which its entry begins, and the library does not
    // expect that there is none: the dialog may hang over the screen's edge.
    if (message == SCI_AUTOCSHOW) {
        const std::intptr_t caret = direct(pointer, SCI_GETCURRENTPOS, 0, 0);
        if (!IsOnScreen(caret - static_cast<std::intptr_t>(wParam))) return 0;
    }
    return direct(pointer, message, wParam, lParam);
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
    const bool shift = event->modifiers() & Qt::ShiftModifier;
    if (tab && event->modifiers() & Qt::ControlModifier)
        // Not the parent's own: that keeps Tab to itself.
        // NOLINTNEXTLINE(bugprone-parent-virtual-call)
        QAbstractScrollArea::focusNextPrevChild(forward && !shift);
    else
        QsciScintillaBase::keyPressEvent(event);
}
