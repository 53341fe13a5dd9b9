// Words, numbers and lines from a stream's buffer, with a count of the lines passed.
//
// The same rules as the formatted operators of the standard streams, at the cost of one inline
// look at the buffer per character. White space is 9 to 13 and 32. Nothing is read beyond what
// a call takes, so scanners and other readers may take turns on one buffer.
#pragma once

#include "engine/open_buffer.h"

#include <cstdint>
#include <string>

class TextScanner {
public:
    explicit TextScanner(std::streambuf& from)
        : text(from), ready(dynamic_cast<OpenBuffer*>(&from)) {}

    enum class Status { kGood, kNoNumber, kTooLarge, kTooLong, kEnd };

    /// The line, from 1, that the next character stands on.
    int LineNumber() const { return lineNumber; }

    /// Whether the text had more than kMaxFill characters that say nothing: blanks beyond a few,
    /// digits beyond those of any number, skipped lines. For this scanner it ended there. A packed
    /// file can hold gigabytes of them.
    bool IsFilled() const { return fill > kMaxFill; }
    static constexpr std::int64_t kMaxFill = std::int64_t{1} << 24;

    /// The next word; kEnd when there is none. kTooLong, with the rest of it not taken, when it
    /// has more than kMaxWord characters.
    Status Word(std::string& word);
    static constexpr std::size_t kMaxWord = 65'535;

    /// A decimal number with an optional sign, up to the first character that does not belong
    /// to it. kTooLarge beyond 32 bits, with the digits taken.
    Status Number(std::int32_t& number);

    /// The rest of the line, without its line feed, which is taken. kTooLong, with the line
    /// feed not yet taken and `line` holding its start, when it has more than `limit`
    /// characters. kEnd when not even a line feed is left.
    Status Line(std::string& line, std::size_t limit);

    /// Takes everything up to and with the next line feed.
    void SkipLine();

    static bool IsSpace(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

private:
    static constexpr int kEof = std::streambuf::traits_type::eof();

    int SkipSpace() {
        constexpr int kUsual = 8;
        int c = text.sgetc();
        for (int count = 1; IsSpace(c); c = text.snextc(), ++count) {
            lineNumber += c == '\n';
            if (count > kUsual && IsFillOver()) return kEof;
        }
        return c;
    }
    bool IsFillOver() { return ++fill > kMaxFill; }

    bool ShortNumber(std::int32_t& number);

    std::streambuf& text;
    OpenBuffer* ready;  ///< the same buffer, or null when it cannot be looked into
    int lineNumber = 1;
    std::int64_t fill = 0;
};

// A number of few digits behind at most one blank, all of it and the character behind it at
// hand: what a grid consists of. Anything else is left for the general way.
inline bool TextScanner::ShortNumber(std::int32_t& number) {
    constexpr std::ptrdiff_t kLongest = 8;  // blank, sign, five digits, what ends them
    if (!ready || ready->End() - ready->Here() < kLongest) return false;
    const char* at = ready->Here();
    if (*at == ' ') ++at;
    const bool negative = *at == '-';
    if (negative) ++at;
    const char* first = at;
    std::int32_t value = 0;
    unsigned digit = static_cast<unsigned>(*at - '0');
    for (; digit <= 9 && at != first + 5; digit = static_cast<unsigned>(*at - '0')) {
        value = value * 10 + static_cast<std::int32_t>(digit);
        ++at;
    }
    if (at == first || digit <= 9) return false;
    number = negative ? -value : value;
    ready->Take(at - ready->Here());
    return true;
}

inline TextScanner::Status TextScanner::Word(std::string& word) {
    word.clear();
    int c = SkipSpace();
    if (c == kEof) return Status::kEnd;
    for (; c != kEof && !IsSpace(c); c = text.snextc()) {
        if (word.size() == kMaxWord) return Status::kTooLong;
        word += static_cast<char>(c);
    }
    return Status::kGood;
}

inline TextScanner::Status TextScanner::Number(std::int32_t& number) {
    if (ShortNumber(number)) [[likely]]
        return Status::kGood;
    int c = SkipSpace();
    if (c == kEof) return Status::kEnd;
    const bool negative = c == '-';
    if (negative || c == '+') c = text.snextc();
    if (c < '0' || c > '9') return Status::kNoNumber;
    constexpr std::int64_t kEnough = std::int64_t{1} << 32;
    std::int64_t value = 0;
    constexpr int kUsual = 10;
    for (int count = 1; c >= '0' && c <= '9'; c = text.snextc(), ++count) {
        if (value < kEnough) value = value * 10 + (c - '0');
        if (count > kUsual && IsFillOver()) return Status::kEnd;
    }
    if (negative) value = -value;
    if (value < INT32_MIN || value > INT32_MAX) return Status::kTooLarge;
    number = static_cast<std::int32_t>(value);
    return Status::kGood;
}

inline TextScanner::Status TextScanner::Line(std::string& line, std::size_t limit) {
    line.clear();
    int c = text.sgetc();
    if (c == kEof) return Status::kEnd;
    for (; c != kEof && c != '\n'; c = text.snextc()) {
        if (line.size() == limit) return Status::kTooLong;
        line += static_cast<char>(c);
    }
    if (c == '\n') {
        text.sbumpc();
        ++lineNumber;
    }
    return Status::kGood;
}

inline void TextScanner::SkipLine() {
    int c = text.sgetc();
    while (c != kEof && c != '\n' && !IsFillOver()) c = text.snextc();
    if (c == '\n') {
        text.sbumpc();
        ++lineNumber;
    }
}
