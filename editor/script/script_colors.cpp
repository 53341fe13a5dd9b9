#include "editor/script/script_colors.h"

#include <charconv>
#include <fstream>

namespace {

constexpr std::size_t kDigits = 6;

// Leaves the color alone when the first six characters are not all hexadecimal digits.
void ReadColor(const std::string& word, std::uint32_t& color) {
    if (word.size() < kDigits) return;
    std::uint32_t rgb = 0;
    const char* const end = word.data() + kDigits;
    if (std::from_chars(word.data(), end, rgb, 16).ptr != end) return;
    color = (rgb & 0xff) << 16 | (rgb & 0xff00) | rgb >> 16;
}

}  // namespace

ScriptColors LoadScriptColors(const char* path) {
    ScriptColors colors{0x000000, 0xFFAA00, 0x555555, 0x33AA11, 0x22AAFF, 0xAA22FF, 0xFF00FF};
    std::ifstream file(path);
    std::string label, word;
    for (std::size_t i = 0; i < kScriptColors && file >> label >> word; ++i)
        ReadColor(word, colors[i]);
    return colors;
}
