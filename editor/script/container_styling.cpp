#include "editor/script/container_styling.h"

#include "engine/script_styler.h"
#include "platform/scintilla_messages.h"

#include <algorithm>

namespace {

constexpr std::intptr_t kToStyle = 0;
constexpr std::intptr_t kStyled = 1;

std::uintptr_t LineOf(platform::CodeControl& code, std::intptr_t position) {
    return static_cast<std::uintptr_t>(
        code.Send(SCI_LINEFROMPOSITION, static_cast<std::uintptr_t>(position)));
}

void StyleOneLine(platform::CodeControl& code, std::uintptr_t line) {
    std::string text(static_cast<std::size_t>(code.Send(SCI_LINELENGTH, line)), '\0');
    code.Send(SCI_GETLINE, line, reinterpret_cast<std::intptr_t>(text.data()));
    const std::string styles = StyleLine(text);
    code.Send(SCI_STARTSTYLING, static_cast<std::uintptr_t>(code.Send(SCI_POSITIONFROMLINE, line)));
    code.Send(SCI_SETSTYLINGEX, styles.size(), reinterpret_cast<std::intptr_t>(styles.data()));
    code.Send(SCI_SETLINESTATE, line, kStyled);
}

}  // namespace

void MarkChanged(platform::CodeControl& code, std::intptr_t position, std::intptr_t linesAdded) {
    const std::uintptr_t line = LineOf(code, position);
    const auto added = static_cast<std::uintptr_t>(std::max<std::intptr_t>(linesAdded, 0));
    for (std::uintptr_t i = line; i <= line + added; ++i) code.Send(SCI_SETLINESTATE, i, kToStyle);
}

void StyleTo(platform::CodeControl& code, std::intptr_t position) {
    const std::uintptr_t last = LineOf(code, position);
    const std::intptr_t end =
        code.Send(SCI_POSITIONFROMLINE, last) + code.Send(SCI_LINELENGTH, last);
    // An edit behind the position, in its line, may have changed the styles in front of it.
    const std::intptr_t from = code.Send(SCI_GETENDSTYLED);
    if (from >= end) return;
    for (std::uintptr_t line = LineOf(code, from); line <= last; ++line)
        if (code.Send(SCI_GETLINESTATE, line) != kStyled) StyleOneLine(code, line);
    // Tells the control how far it has its styles, past the lines that had them already.
    code.Send(SCI_STARTSTYLING, static_cast<std::uintptr_t>(end));
}
