#include "tests/library-src/sample/script_faults.h"

#include "editor/script/command_table.h"

#include <algorithm>
#include <map>
#include <sstream>

namespace {

using Words = std::vector<std::string>;

// What an argument must be; the words behind "one of" are the choices.
const std::map<std::string, Words> kChoices{
    {"move",
     {"n", "e", "w", "s", "seek", "seekv", "seekh", "i", "flow", "rndns", "rndne", "rndp", "rnd",
      "cw", "ccw", "opp"}},
    {"collision", {"none", "normal", "water", "fly"}},
    {"yes or no", {"yes", "no"}},
    {"property", {"posx", "posy", "posz", "viewx", "viewy", "vieww", "viewh", "name"}},
    {"comparison", {"<", "<=", ">", ">=", "==", "!="}},
};

// The arguments of the commands, by the tips of the command table. A command that is not here
// has none to check.
const std::map<std::string, Words> kArguments{
    {"#fadein", {}},
    {"#fadeout", {}},
    {"#restart", {}},
    {"#end", {}},
    {"#endgame", {}},
    {"#cycle", {"byte"}},
    {"#play", {"quoted"}},
    {"#board", {"board"}},
    {"#focus", {"object"}},
    {"#walk", {"move"}},
    {"#collide", {"collision"}},
    {"#enterable", {"yes or no"}},
    {"#mod", {"property", "number"}},
    {"#light", {"number", "number", "byte", "byte"}},
    {"#charex", {"number", "number", "byte", "byte", "byte", "number"}},
    {"#zap", {"label"}},
    {"#restore", {"label"}},
    {"#set", {"word", "number"}},
    {"#give", {"word", "number"}},
    {"#take", {"word", "number"}},
    {"#rand", {"word", "number"}},
    {"#ifex", {"word", "comparison", "number", "command"}},
};

bool IsNumber(const std::string& word, long last) {
    return !word.empty() && word.size() < 6 &&
           std::all_of(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '9'; }) &&
           std::stol(word) <= last;
}

class Reader {
public:
    Reader(const std::string& script, const GameNames& of) : names(of) {
        std::istringstream text(script);
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line);
            if (line.starts_with(":")) labels.insert(line.substr(1));
        }
        for (const std::string& line : lines) {
            ++number;
            Look(line);
        }
    }
    std::vector<std::string> faults;

private:
    void Fault(const std::string& what) {
        faults.push_back("line " + std::to_string(number) + ": " + what);
    }

    void Look(const std::string& line) {
        if (line.starts_with("#")) Command(Split(line));
        if (line.starts_with("@") && number > 1) Fault("the name is not in the first line");
        if (line.starts_with("/") || line.starts_with("?")) Moves(line);
    }

    // Words between blanks; a text in quotes is one.
    static Words Split(const std::string& line) {
        Words words;
        std::istringstream in(line);
        for (std::string word; in >> word;) {
            if (word.starts_with("\"") && !word.ends_with("\"")) {
                std::string rest;
                std::getline(in, rest, '"');
                word += rest + '"';
            }
            words.push_back(word);
        }
        return words;
    }

    void Moves(const std::string& line) {
        const std::string steps = "neswi";
        for (std::size_t i = 0; i < line.size(); i += 2)
            if ((line[i] != '/' && line[i] != '?') || i + 1 == line.size() ||
                steps.find(line[i + 1]) == steps.npos)
                return Fault("no move: " + line.substr(i));
    }

    void Command(const Words& words) {
        const std::string known = " " + std::string(vKeywordList) + " ";
        const auto rule = kArguments.find(words[0]);
        if (known.find(" " + words[0] + " ") == known.npos || rule == kArguments.end())
            return Fault("no command: " + words[0]);
        std::size_t i = 1;
        for (const std::string& kind : rule->second) {
            if (i == words.size()) return Fault(words[0] + " wants a " + kind);
            if (kind == "command")
                return Command({words.begin() + static_cast<std::ptrdiff_t>(i), words.end()});
            if (!Is(words[i], kind)) Fault("no " + kind + ": " + words[i]);
            ++i;
        }
        if (i < words.size()) Fault("too much behind " + words[0]);
    }

    bool Is(const std::string& word, const std::string& kind) const {
        if (const auto choices = kChoices.find(kind); choices != kChoices.end())
            return std::count(choices->second.begin(), choices->second.end(), word) == 1;
        if (kind == "number") return IsNumber(word, 32767);
        if (kind == "byte") return IsNumber(word, 255);
        if (kind == "quoted")
            return word.size() > 2 && word.starts_with("\"") && word.ends_with("\"");
        if (kind == "board") return names.boards.contains(word);
        if (kind == "object") return names.objects.contains(word);
        if (kind == "label") return labels.contains(word);
        return !word.starts_with("#") && !IsNumber(word, 99999);
    }

    const GameNames& names;
    std::vector<std::string> lines;
    std::set<std::string> labels;
    int number = 0;
};

}  // namespace

std::vector<std::string> ScriptFaults(const std::string& script, const GameNames& names) {
    return Reader(script, names).faults;
}
