#include "tool/script_findings.h"

#include "engine/command_table.h"
#include "engine/script_styler.h"
#include "tool/commands.h"

#include <algorithm>
#include <set>

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view WordAt(std::string_view line, std::size_t at) {
    return line.substr(at, std::min(line.find_first_of(kBlanks, at), line.size()) - at);
}

std::string Lower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

std::vector<std::string_view> LinesOf(std::string_view script) {
    std::vector<std::string_view> lines;
    for (std::size_t at = 0; at <= script.size();) {
        const std::size_t end = std::min(script.find('\n', at), script.size());
        lines.push_back(script.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

std::set<std::string> LabelsOf(const std::vector<std::string_view>& lines) {
    std::set<std::string> labels;
    for (const std::string_view line : lines) {
        const std::size_t at = line.find_first_not_of(kBlanks);
        if (at != line.npos && line[at] == ':') labels.insert(Lower(WordAt(line, at + 1)));
    }
    return labels;
}

// What is wrong with the command of that word, `rest` being the line behind it; empty when
// nothing is.
std::string Fault(std::string_view word, std::string_view rest,
                  const std::set<std::string>& labels) {
    const ScriptCommand* command = FindCommand(word);
    if (!command) return " is no command";
    const std::size_t at = std::min(rest.find_first_not_of(kBlanks), rest.size());
    const std::string_view next = WordAt(rest, at);
    if (command->NeedsWord() && (next.empty() || next.front() == '#'))
        return " has nothing behind it";
    // One with a point is a label of another object.
    const bool here = next.find('.') == next.npos;
    if (command->NamesLabel() && here && !labels.contains(Lower(next)))
        return " names the label " + Quoted(std::string(next)) + ", which the script does not have";
    return {};
}

}  // namespace

std::vector<std::string> LookAtScript(std::string_view script) {
    std::vector<std::string> findings;
    const std::vector<std::string_view> lines = LinesOf(script);
    const std::set<std::string> labels = LabelsOf(lines);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string_view line = lines[i];
        const std::string styles = StyleLine(line);
        for (std::size_t at = 0; (at = line.find('#', at)) != line.npos;) {
            std::size_t end = at + 1;
            while (end < line.size() && styles[end] == kStyleCommand && line[end] != '#') ++end;
            const std::string_view word = line.substr(at, end - at);
            const bool command = styles[at] == kStyleCommand;
            const std::string fault = command ? Fault(word, line.substr(end), labels) : "";
            if (!fault.empty())
                findings.push_back("line " + std::to_string(i + 1) + ": " + std::string(word) +
                                   fault);
            at = end;
        }
    }
    return findings;
}
