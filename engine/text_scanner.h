// Words, numbers and lines from a stream's buffer, with a count of the lines passed.
//
// The same rules as the formatted operators of the standard streams, at the cost of one inline
// look at the buffer per character. White space is 9 to 13 and 32. Nothing is read beyond what
// a call takes, so scanners and other readers may take turns on one buffer.
#pragma once

#include "engine/eight_bytes.h"
#include "engine/open_buffer.h"

#include <bit>
#include <cstdint>
#include <string>

/// A bit for each of so many characters that is no digit, that of the first one lowest.
inline constexpr int kDigitPiece = 64;
inline std::uint64_t OthersAt(const char* piece) {
    std::uint64_t others = 0;
    for (int i = 0; i < kDigitPiece; i += static_cast<int>(sizeof(Sixteen)))
        others |= BitsOf(BytesAt<Sixteen>(piece + i) - '0' > 9) << i;
    return others;
}

/// The number of up to so many digits that stands there, 0 for none. As many characters are read;
/// others than digits and other counts give any number.
inline constexpr int kMostDigits = 4;
inline std::int32_t DigitsAt(const char* first, std::ptrdiff_t digits) {
    std::uint32_t word;
    std::memcpy(&word, first, sizeof word);
    // With zeros in front; then pairs are put together, and two of them.
    const std::uint64_t behind = std::uint64_t{word ^ '0' * 0x01010101u}
                                 << ((32 - 8 * digits) & 63);
    word = static_cast<std::uint32_t>(behind);
    word = (word * 10 + (word >> 8)) & 0x00ff00ff;
    return static_cast<std::int32_t>((word * 100 + (word >> 16)) & 0xffff);
}

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

    /// Numbers that stand next, each of at most four digits and with a blank behind it: what
    /// grids consist of. As many as are at hand and alike; none says nothing about the text.
    struct Peeked {
        static constexpr std::size_t kMost = 256;
        std::size_t count = 0;
        std::int32_t numbers[kMost];
        std::ptrdiff_t ends[kMost];
    };
    void Peek(Peeked& next, std::size_t most = Peeked::kMost) const;
    /// Takes the first of them, all characters that they stand in.
    void Take(const Peeked& next, std::size_t count) {
        if (count > 0) ready->Take(next.ends[count - 1]);
    }

    /// The next characters, if as many are at hand, else null; and the taking of them, in which
    /// there is no line feed.
    const char* Ahead(std::ptrdiff_t count) const {
        return ready && ready->End() - ready->Here() >= count ? ready->Here() : nullptr;
    }
    void Take(std::ptrdiff_t count) { ready->Take(count); }

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

    std::streambuf& text;
    OpenBuffer* ready;  ///< the same buffer, or null when it cannot be looked into
    int lineNumber = 1;
    std::int64_t fill = 0;
};

// A mask of those characters that are no digits says where numbers end, so that no branch hangs on
// how many digits one has.
inline void TextScanner::Peek(Peeked& next, std::size_t most) const {
    std::size_t count = 0;
    const char* const here = ready ? ready->Here() : nullptr;
    // Where a piece and the digits behind it can begin.
    const std::ptrdiff_t last = ready ? ready->End() - here - kDigitPiece - kMostDigits : -1;
    const char* start = here;
    if (last >= 0 && *start == ' ') ++start;
    for (bool more = true; more && start - here <= last;) {
        const char* const piece = start;
        std::uint64_t others = OthersAt(piece);
        while (count < most) {
            const char* first = start;
            const bool negative = *first == '-';
            if (negative) [[unlikely]] {
                others &= others - 1;
                ++first;
            }
            const char* const end = piece + std::countr_zero(others);
            const std::ptrdiff_t digits = end - first;
            if (others == 0 || digits < 1 || digits > kMostDigits || *end != ' ') break;
            others &= others - 1;
            const std::int32_t value = DigitsAt(first, digits);
            next.numbers[count] = negative ? -value : value;
            next.ends[count++] = end - here;
            start = end + 1;
        }
        more = start != piece && count < most;
    }
    next.count = count;
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
