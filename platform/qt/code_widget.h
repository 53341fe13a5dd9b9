// The text control for scripts: Scintilla in a widget.
#pragma once

#include "platform/form.h"

#include <Qsci/qsciscintillabase.h>

class CodeWidget final : public QsciScintillaBase, public platform::CodeControl {
public:
    explicit CodeWidget(QWidget* parent);

    std::intptr_t Send(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) override;

protected:
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    using DirectFunction = std::intptr_t (*)(std::intptr_t pointer, unsigned message,
                                             std::uintptr_t wParam, std::intptr_t lParam);

    bool IsOnScreen(std::intptr_t position);

    DirectFunction direct;
    std::intptr_t pointer;
    int wheelTurn = 0;  ///< of the wheel with Ctrl held, not yet a whole notch
};
