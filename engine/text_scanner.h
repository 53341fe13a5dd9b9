// Words, numbers and lines from a stream's buffer, with a count of the lines passed.
//
// The same rules as the formatted operators of the standard streams, at the cost of one inline
// look at the buffer per character. White space is 9 to 13 and 32. Nothing is read beyond what
// a call takes, so scanners and other readers may take turns on one buffer.
#pragma once

#include <cstdint>
#include <streambuf>
#include <string>

class TextScanner {
public:
    explicit TextScanner(std::streambuf& from) : text(from) {}

    enum class Status { kGood, kNoNumber, kTooLarge, kTooLong, kEnd };

    /// The line, from 1, that the next character stands on.
    int LineNumber() const { return lineNumber; }

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
        int c = text.sgetc();
        for (; IsSpace(c); c = text.snextc()) lineNumber += c == '\n';
        return c;
    }

    std::streambuf& text;
    int lineNumber = 1;
};

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
    int c = SkipSpace();
    if (c == kEof) return Status::kEnd;
    const bool negative = c == '-';
    if (negative || c == '+') c = text.snextc();
    if (c < '0' || c > '9') return Status::kNoNumber;
    constexpr std::int64_t kEnough = std::int64_t{1} << 32;
    std::int64_t value = 0;
    for (; c >= '0' && c <= '9'; c = text.snextc())
        if (value < kEnough) value = value * 10 + (c - '0');
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
    while (c != kEof && c != '\n') c = text.snextc();
    if (c == '\n') {
        text.sbumpc();
        ++lineNumber;
    }
}
