#include "editor/script/script_hints.h"

#include "editor/script/container_styling.h"
#include "engine/command_table.h"
#include "engine/dinterface.h"
#include "engine/script_styler.h"
#include "platform/scintilla_messages.h"

#include <algorithm>

using platform::CodeControl;

int vCallTipBlanks = 0;
std::string vSortedKeywords;

namespace {

constexpr int kMaxTipBlanks = 4;
constexpr const char* kSelectors = ".top .all .parent .inside .contained .n .e .w .s .mask .self";

std::uintptr_t At(std::intptr_t position) { return static_cast<std::uintptr_t>(position); }

char CharAt(CodeControl& code, std::intptr_t position) {
    return static_cast<char>(code.Send(SCI_GETCHARAT, At(position)));
}

std::string TextBetween(CodeControl& code, std::intptr_t from, std::intptr_t to) {
    std::string text;
    for (; from < to; ++from) text += CharAt(code, from);
    return text;
}

// Of the character in front of the one typed; in front of the text there is blank.
const StyleRow& StyleInFront(CodeControl& code, std::intptr_t position) {
    if (position < 2) return kStyleTable[kStyleBlank];
    const auto style = static_cast<std::size_t>(code.Send(SCI_GETSTYLEAT, At(position - 2)));
    return kStyleTable[std::min(style, kStyleTable.size() - 1)];
}

void ShowList(CodeControl& code, const std::string& words) {
    // The character typed counts as the first one of the entry.
    code.Send(SCI_AUTOCSHOW, 1, reinterpret_cast<std::intptr_t>(words.c_str()));
}

void OnBlank(CodeControl& code, std::intptr_t position) {
    if (code.Send(SCI_CALLTIPACTIVE) && ++vCallTipBlanks >= kMaxTipBlanks)
        code.Send(SCI_CALLTIPCANCEL);
    if (StyleInFront(code, position).style != kStyleCommand) return;
    std::intptr_t start = position - 2;
    constexpr std::string_view kMarks = "#/?";
    while (start >= 0 && kMarks.find(CharAt(code, start)) == kMarks.npos) --start;
    if (start < 0) return;
    const std::string tip = LookUpCallTip(TextBetween(code, start, position));
    const auto line = At(code.Send(SCI_LINEFROMPOSITION, At(position)));
    code.Send(SCI_CALLTIPSHOW, At(code.Send(SCI_POSITIONFROMLINE, line)),
              reinterpret_cast<std::intptr_t>(tip.c_str()));
    vCallTipBlanks = 0;
}

void OnMark(CodeControl& code, std::intptr_t position) {
    if (StyleInFront(code, position).opensKeywords) ShowList(code, vSortedKeywords);
}

// The text's very first character belongs to the token, whatever it is.
std::string TokenInFront(CodeControl& code, std::intptr_t position) {
    std::intptr_t start = position - 1;
    while (start > 0) {
        const char c = CharAt(code, start);
        if (c == ' ' || c == '\n') {
            ++start;
            break;
        }
        --start;
    }
    return TextBetween(code, start, position);
}

void OnDot(CodeControl& code, std::intptr_t position) {
    if (!StyleInFront(code, position).opensPaths) return;
    const std::string path = TokenInFront(code, position) + "all";
    std::string words;
    const HandleGuard current(vWorld->GetCurrentObject());
    const int list = vWorld->StartHandleList(current, path.c_str());
    for (Handle h; (h = vWorld->NextHandle(list)) != kNoHandle;)
        words.append(".").append(vWorld->GetName(h)).append(" ");
    vWorld->ReleaseHandleList(list);
    ShowList(code, SortWordList(words + kSelectors));
}

struct Hint {
    char typed;
    void (*show)(CodeControl& code, std::intptr_t position);
};
constexpr Hint kHints[] = {{' ', OnBlank}, {'#', OnMark}, {'.', OnDot}};

}  // namespace

void OnTakingKey(CodeControl& code) {
    if (!code.Send(SCI_AUTOCACTIVE)) return;
    const auto length = static_cast<std::size_t>(code.Send(SCI_AUTOCGETCURRENTTEXT));
    std::string offered(length + 1, '\0');
    code.Send(SCI_AUTOCGETCURRENTTEXT, 0, reinterpret_cast<std::intptr_t>(offered.data()));
    offered.pop_back();
    // The list began behind the first character of its entries.
    const std::string typed =
        TextBetween(code, code.Send(SCI_AUTOCPOSSTART) - 1, code.Send(SCI_GETCURRENTPOS));
    if (offered.empty() || offered == typed) code.Send(SCI_AUTOCCANCEL);
}

void OnScriptChar(CodeControl& code, int ch) {
    for (const Hint& hint : kHints) {
        if (hint.typed != ch) continue;
        const std::intptr_t position = code.Send(SCI_GETCURRENTPOS);
        StyleTo(code, position);
        hint.show(code, position);
    }
}
