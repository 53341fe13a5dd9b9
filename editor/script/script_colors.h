// The colours of the script editor's text, which the user can change in a file.
#pragma once

#include "engine/script_styler.h"

#include <cstdint>

inline constexpr const char* kColorsFile = "Library/SyntaxColors.txt";

/// As the control takes them: 0xBBGGRR, by ScriptColor. The last is fixed.
using ScriptColors = std::array<std::uint32_t, kScriptColors + 1>;

/// Six pairs of blank-separated words, a label of no account and RRGGBB. What is missing or no
/// colour keeps its default, one by one; so does everything when the file cannot be opened.
ScriptColors LoadScriptColors(const char* path);
