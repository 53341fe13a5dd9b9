#include "platform/qt/qt_keys.h"

#include "platform/keys.h"
#include "platform/qt/code_page.h"

namespace {

struct KeyPair {
    int qt;
    int code;
};
constexpr KeyPair kKeys[] = {
    {Qt::Key_Backspace, platform::kKeyBackspace},
    {Qt::Key_Tab, platform::kKeyTab},
    {Qt::Key_Backtab, platform::kKeyTab},
    {Qt::Key_Return, platform::kKeyEnter},
    {Qt::Key_Enter, platform::kKeyEnter},
    {Qt::Key_Shift, platform::kKeyShift},
    {Qt::Key_Escape, platform::kKeyEscape},
    {Qt::Key_Space, platform::kKeySpace},
    {Qt::Key_PageUp, platform::kKeyPageUp},
    {Qt::Key_PageDown, platform::kKeyPageDown},
    {Qt::Key_End, platform::kKeyEnd},
    {Qt::Key_Home, platform::kKeyHome},
    {Qt::Key_Left, platform::kKeyLeft},
    {Qt::Key_Up, platform::kKeyUp},
    {Qt::Key_Right, platform::kKeyRight},
    {Qt::Key_Down, platform::kKeyDown},
    {Qt::Key_Insert, platform::kKeyInsert},
    {Qt::Key_Delete, platform::kKeyDelete},
    {Qt::Key_Menu, platform::kKeyApps},
    {Qt::Key_F1, platform::kKeyF1},
    {Qt::Key_F2, platform::kKeyF2},
    {Qt::Key_F4, platform::kKeyF4},
};

bool IsControl(char32_t c) {
    return c == platform::kKeyEnter || c == platform::kKeyBackspace || c == platform::kKeyTab ||
           c == platform::kKeyEscape;
}

}  // namespace

int KeyCode(const QKeyEvent& event) {
    const int qt = event.key();
    if (qt == Qt::Key_F10 && event.modifiers() & Qt::ShiftModifier) return platform::kKeyApps;
    for (const KeyPair& pair : kKeys)
        if (pair.qt == qt) return pair.code;
    const bool plain = (qt >= Qt::Key_0 && qt <= Qt::Key_9) || (qt >= Qt::Key_A && qt <= Qt::Key_Z);
    return plain ? qt : 0;
}

std::vector<int> TypedCodes(const QString& text) {
    std::vector<int> codes;
    for (const char32_t c : text.toUcs4()) {
        const int code = IsControl(c) ? static_cast<int>(c) : CodePage437(c);
        if (code) codes.push_back(code);
    }
    return codes;
}
