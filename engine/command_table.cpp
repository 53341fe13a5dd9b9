#include "engine/command_table.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <vector>

namespace {

constexpr ScriptCommand kCommands[] = {
    {"#patch", "<midi instrument> ie: 1"},
    {"#fadein", "<no params>"},
    {"#fadeout", "<no params>"},
    {"#play", "<zzt play>\n Must be surrounded by quotes ie: \"--CC\""},
    {"#song", "<filename> <repeat: 0 = once, 1 = repeat"},
    {"#stopsong", "<no params>"},
    {"#sound", "<filename> <channel: 0-7>\n <playmode: once, loop, bidi>"},
    {"#stopsound", "<channel: 0-7>"},
    {"#loadsound", "<filename>"},
    {"#light", "<radius> <ray density>\n <start angle:0-255> <angle width:0-255>"},
    {"#notify", "<var name>"},
    {"#denotify", "<var name>"},
    {"#collide", "<mode: none, normal, water, fly>"},
    {"#enterable", "<mode: yes, no>"},
    {"#walk",
     "<dir: n, e, w, s, seek, seekv, seekh, i,\n flow, rndns, rndne, rndp, rnd, cw, ccw, opp>"},
    {"#board", "<board name>"},
    {"#switch", "<board name>"},
    {"#mod",
     "<prop: posx, posy, posz,\n viewx, viewy, vieww, viewh, evieww, eviewh, name> <value>"},
    {"#get", "<prop: posx, posy, posz,\n viewx, viewy, vieww, viewh, name> <var name>"},
    {"#become", "<chr> <fg> <bg> <attrib>"},
    {"#char", "<chr> <fg> <bg> <attrib>"},
    {"#charex", "<x> <y> <chr> <fg> <bg> <attrib>"},
    {"#cycle", "<value: 0-255>"},
    {"#cyclef", "<value: 0-255>"},
    {"#bind", "<obj name>\n Note: the obj name references to an obj that is on the spawn board"},
    {"#change", "<chr> <fg> <bg> <attrib>\n <chr> <fg> <bg> <attrib>"},
    {"#put",
     "<dir> [color] <obj name>\n Note: the obj name references to an obj that is on the spawn "
     "board"},
    {"#shoot", "<dir>"},
    {"#throw",
     "<dir> [color] <obj name>\n Note: the obj name references to an obj that is on the spawn "
     "board"},
    {"#focus", "<obj name>"},
    {"#attach", "<obj name> <x> <y>"},
    {"#zap", "<label name>"},
    {"#restore", "<label name>"},
    {"#take", "<var name> <amount>"},
    {"#give", "<var name> <amount>"},
    {"#mul", "<var name> <var name> <var name>\n ie: #mul a b c -> a = b * c"},
    {"#div", "<var name> <var name> <var name>\n ie: #div a b c -> a = b / c"},
    {"#set", "<var name> [amount]"},
    {"#clear", "<var name>"},
    {"#rand", "<var name> <range>"},
    {"#try", "<dir>"},
    {"#if", "<zzt if>"},
    {"#ifex", "<value> <comparison: < <= > >= == !=> <value>"},
    {"#lock", "<no params>"},
    {"#unlock", "<no params>"},
    {"#restart", "<no params>"},
    {"#die", "<no params>"},
    {"#end", "<no params>"},
    {"#endgame", "<no params>"},
    {"#load", "<filename>"},
    {"#save", "<filename> <list of vars>"},
    {"#write", "<x> <y> <words: Either a \"Word\" or VarName>"},
};

constexpr std::size_t KeywordsLength() {
    std::size_t length = std::size(kCommands) - 1;
    for (const ScriptCommand& command : kCommands) length += command.word.size();
    return length;
}

constexpr std::size_t TipsLength() {
    std::size_t length = std::size(kCommands);
    for (const ScriptCommand& command : kCommands)
        length += command.word.size() + command.tip.size();
    return length;
}

constexpr auto kKeywords = [] {
    std::array<char, KeywordsLength()> text{};
    auto to = text.begin();
    for (const ScriptCommand& command : kCommands) {
        if (to != text.begin()) *to++ = ' ';
        to = std::copy(command.word.begin(), command.word.end(), to);
    }
    return text;
}();

constexpr auto kTips = [] {
    std::array<char, TipsLength()> text{};
    auto to = text.begin();
    for (const ScriptCommand& command : kCommands) {
        to = std::copy(command.word.begin(), command.word.end(), to);
        *to++ = ' ';
        to = std::copy(command.tip.begin(), command.tip.end(), to);
    }
    return text;
}();

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

std::span<const ScriptCommand> ScriptCommands() { return kCommands; }

const ScriptCommand* FindCommand(std::string_view word) {
    const auto same = [word](const ScriptCommand& command) {
        return std::equal(word.begin(), word.end(), command.word.begin(), command.word.end(),
                          [](char typed, char own) { return LowerAscii(typed) == own; });
    };
    const auto* found = std::find_if(std::begin(kCommands), std::end(kCommands), same);
    return found == std::end(kCommands) ? nullptr : found;
}

constinit const std::string_view vKeywordList{kKeywords.data(), kKeywords.size()};
constinit const std::string_view vCallTipList{kTips.data(), kTips.size()};

std::string SortWordList(std::string_view text) {
    std::vector<std::string_view> words;
    for (std::size_t at = 0; (at = text.find_first_not_of(' ', at)) != text.npos;) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        words.push_back(text.substr(at, end - at));
        at = end;
    }
    // string_view compares its bytes as unsigned values.
    std::stable_sort(words.begin(), words.end());
    std::string sorted;
    for (const std::string_view word : words) {
        if (!sorted.empty()) sorted += ' ';
        sorted += word;
    }
    return sorted;
}

std::string LookUpCallTip(std::string_view word) {
    if (word.empty()) return {};
    std::string wanted(word);
    std::transform(wanted.begin(), wanted.end(), wanted.begin(), LowerAscii);
    const std::size_t found = vCallTipList.find(wanted);
    if (found == vCallTipList.npos) return {};
    const std::string_view tip = vCallTipList.substr(found + wanted.size());
    return std::string(tip.substr(0, tip.find('#')));
}
