// What is suspect in a script, as far as the table of commands makes it sure.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// In words, each with its line of the script: words with "#" that are no commands, commands
/// with nothing behind them where something belongs, labels that are named and not there.
std::vector<std::string> LookAtScript(std::string_view script);
