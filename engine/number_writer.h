// Many numbers into a stream, each with a character behind it.
#pragma once

#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <ostream>

/// Hands them on in large pieces, and what is left by Flush.
class NumberWriter {
public:
    explicit NumberWriter(std::ostream& to) : out(to) {}

    void Put(std::int64_t number, char behind) {
        if (end > text + kPiece) Flush();
        if (number >= 0 && number < kSmall) {
            const Small& small = kSmallOnes[static_cast<std::size_t>(number)];
            std::memcpy(end, small.text, sizeof small.text);
            end += small.length;
        } else {
            end = std::to_chars(end, text + sizeof text, number).ptr;
        }
        *end++ = behind;
    }

    void Put(char alone) {
        if (end > text + kPiece) Flush();
        *end++ = alone;
    }

    /// A stream that takes less is bad from then on.
    void Flush() {
        if (out.rdbuf()->sputn(text, end - text) != end - text) out.setstate(std::ios::badbit);
        end = text;
    }

private:
    /// Those that pixels and cells have, worked out by the compiler.
    struct Small {
        char text[3];
        std::uint8_t length;
    };
    static constexpr int kSmall = 256;
    static constexpr int kPiece = 4000;
    static constexpr auto kSmallOnes = [] {
        std::array<Small, kSmall> all = {};
        for (int n = 0; n < kSmall; ++n) {
            Small& small = all[static_cast<std::size_t>(n)];
            for (int unit = n < 10 ? 1 : n < 100 ? 10 : 100; unit > 0; unit /= 10)
                small.text[small.length++] = static_cast<char>('0' + n / unit % 10);
        }
        return all;
    }();

    std::ostream& out;
    char text[kPiece + 96];
    char* end = text;
};
