#include "platform/qt/code_widget.h"

CodeWidget::CodeWidget(QWidget* parent)
    : QsciScintillaBase(parent),
      direct(reinterpret_cast<DirectFunction>(SendScintillaPtrResult(SCI_GETDIRECTFUNCTION))),
      pointer(reinterpret_cast<std::intptr_t>(SendScintillaPtrResult(SCI_GETDIRECTPOINTER))) {
    Send(SCI_SETCODEPAGE, SC_CP_UTF8, 0);
}
