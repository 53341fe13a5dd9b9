#include "platform/qt/code_page.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace {

constexpr std::u16string_view kLow = u"☺☻♥♦♣♠•◘○◙♂♀♪♫☼►◄↕‼¶§▬↨↑↓→←∟↔▲▼";
constexpr int kFirstLow = 1;
constexpr std::u16string_view kHigh =
    u"⌂ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒáíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█"
    u"▄▌▐▀"
    u"αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00a0";
constexpr int kFirstHigh = 127;
static_assert(kFirstLow + kLow.size() == 32 && kFirstHigh + kHigh.size() == 256);

// Characters that look like one of the code page and that some keyboards type instead.
struct Alias {
    char16_t character;
    int code;
};
constexpr Alias kAliases[] = {{u'β', 225}, {u'μ', 230}, {u'\u2126', 234}, {u'∅', 237}};

constexpr int kControls[] = {8, 9, 13, 27};

int Look(std::u16string_view table, int first, char32_t character) {
    const auto found = std::find(table.begin(), table.end(), character);
    return found == table.end() ? 0 : first + static_cast<int>(found - table.begin());
}

}  // namespace

int CodePage437(char32_t character) {
    if (character >= ' ' && character < kFirstHigh) return static_cast<int>(character);
    int code = Look(kHigh, kFirstHigh, character);
    if (!code) code = Look(kLow, kFirstLow, character);
    for (const Alias& alias : kAliases)
        if (alias.character == character) code = alias.code;
    const bool control =
        std::find(std::begin(kControls), std::end(kControls), code) != std::end(kControls);
    return control ? 0 : code;
}
