// What is known of the script language: its commands, each with a usage tip.
#pragma once

#include <span>
#include <string>
#include <string_view>

struct ScriptCommand {
    std::string_view word;  ///< with its "#"
    std::string_view tip;   ///< what stands behind it

    bool NeedsWord() const { return tip.starts_with('<') && tip != "<no params>"; }
    bool NamesLabel() const { return tip == "<label name>"; }
};
std::span<const ScriptCommand> ScriptCommands();
/// Null for a word that is none; any case.
const ScriptCommand* FindCommand(std::string_view word);

/// The command words, each with its "#", separated by one blank.
extern const std::string_view vKeywordList;
/// For each command, in the same order: word, blank, tip, with nothing between the entries.
extern const std::string_view vCallTipList;

/// The blank-separated words of `text` in ascending order of their bytes, duplicates kept,
/// joined by one blank: what the completion list needs for its matching.
std::string SortWordList(std::string_view text);

/// The tip of a command as it was typed, in any case, with the blank behind it; empty when there
/// is none. A tip ends at a "#", even inside its own text.
std::string LookUpCallTip(std::string_view word);
