#include "engine/script_styler.h"

#include <algorithm>

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsMark(char c) { return c == '#' || c == '/' || c == '?'; }
// Letters beyond ASCII count as letters.
bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 128;
}
bool IsNamePart(char c) { return IsLetter(c) || IsDigit(c) || c == '_'; }
bool IsPathPart(char c) { return IsNamePart(c) || c == '.'; }

ScriptStyle PathPartStyle(std::string_view word) {
    if (word.find_first_not_of('.') == word.npos) return kStyleSign;
    if (IsDigit(word.front()) && word.find_first_not_of("0123456789.") == word.npos)
        return kStyleNumber;
    return word.find('.') == word.npos ? kStyleWord : kStyleName;
}

class LineScanner {
public:
    explicit LineScanner(std::string_view text)
        : line(text.substr(0, text.find_first_of("\r\n"))), styles(text.size(), kStyleBlank) {}

    std::string Run() {
        SkipBlanks();
        if (at == line.size() || TakeWholeLine()) return styles;
        for (; at < line.size(); SkipBlanks(), first = false) {
            if (AtMark())
                TakeMark();
            else if (line[at] == '"')
                TakeQuoted();
            else if (inCommand)
                TakeArgument();
            else
                TakeText();
        }
        return styles;
    }

private:
    bool Letter(std::size_t i) const { return i < line.size() && IsLetter(line[i]); }
    bool Digit(std::size_t i) const { return i < line.size() && IsDigit(line[i]); }

    void SkipBlanks() {
        while (at < line.size() && IsBlank(line[at])) ++at;
    }

    void Paint(std::size_t to, ScriptStyle style) {
        for (; at < std::min(to, line.size()); ++at) styles[at] = style;
    }

    // In a command's arguments "#" always starts another; "/" and "?" do not inside a name.
    bool AtMark() const {
        if (!IsMark(line[at]) || first) return IsMark(line[at]);
        if (!inCommand) return Letter(at + 1);
        return line[at] == '#' || styles[at - 1] == kStyleCommand || !IsPathPart(line[at - 1]);
    }

    template <typename Holds>
    std::size_t RunEnd(std::size_t from, Holds holds) const {
        while (from < line.size() && holds(line[from])) ++from;
        return from;
    }

    bool TakeWholeLine() {
        switch (line[at]) {
            case '\'':
                Paint(line.size(), kStyleComment);
                return true;
            case ':':
            case '@':
                Paint(line.size(), kStyleLabel);
                return true;
            default:
                return false;
        }
    }

    void TakeMark() {
        inCommand = true;
        if (Letter(at + 1))
            Paint(RunEnd(at + 1, IsNamePart), kStyleCommand);
        else
            Paint(at + 1, kStyleFault);
    }

    void TakeQuoted() { Paint(std::min(line.find('"', at + 1), line.size()) + 1, kStyleQuoted); }

    void TakeArgument() {
        const bool behindName = at > 0 && IsPathPart(line[at - 1]);
        const bool sign = (line[at] == '-' || line[at] == '+') && !behindName && Digit(at + 1);
        const std::size_t from = at + (sign ? 1 : 0);
        const std::size_t end = RunEnd(from, IsPathPart);
        if (end == at)
            Paint(at + 1, kStyleSign);
        else
            Paint(end, PathPartStyle(line.substr(from, end - from)));
    }

    void TakeText() {
        const std::size_t end =
            RunEnd(at + 1, [this](char c) { return !IsBlank(c) && !(first && c == '#'); });
        const std::string_view word = line.substr(at, end - at);
        const bool path = word.front() == '.' && word.find_first_not_of('.') != word.npos;
        Paint(end, path ? kStyleName : kStyleText);
    }

    std::string_view line;
    std::string styles;
    std::size_t at = 0;
    bool first = true;       ///< nothing has been taken yet
    bool inCommand = false;  ///< behind a mark
};

}  // namespace

std::string StyleLine(std::string_view line) { return LineScanner(line).Run(); }
