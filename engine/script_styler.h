// The styles of a script's text, line by line.
//
// No state crosses a line end: comments, labels and names take the rest of their line, and a
// quote that is left open ends with it. So a line's styles depend on its own text alone, and a
// stray quote never recolours the script behind it.
#pragma once

#include <array>
#include <string>
#include <string_view>

/// Where the styles' colours come from: the six of the colours file, or fixed.
enum ScriptColor {
    kTextColor,
    kCommandColor,
    kQuietColor,
    kLabelColor,
    kNumberColor,
    kNameColor,
    kScriptColors,  ///< how many the file has
    kFaultColor = kScriptColors,
};

/// Style numbers as the control keeps them, one a byte of text.
enum ScriptStyle : char {
    kStyleBlank,
    kStyleCommand,
    kStyleComment,
    kStyleLabel,
    kStyleNumber,
    kStyleName,
    kStyleQuoted,
    kStyleWord,
    kStyleText,
    kStyleSign,
    kStyleFault,
    kScriptStyles,
};

struct StyleRow {
    ScriptStyle style;
    ScriptColor color;
    bool opensKeywords;  ///< a "#" typed behind it opens the list of commands
    bool opensPaths;     ///< a "." typed behind it opens the list of object paths
    const char* meaning;
};
/// In the order of the style numbers.
inline constexpr std::array<StyleRow, kScriptStyles> kStyleTable{{
    {kStyleBlank, kTextColor, true, true, "blanks and line ends"},
    {kStyleCommand, kCommandColor, true, false, "a mark (# / ?) with its letters"},
    {kStyleComment, kQuietColor, false, false, "a line that begins with '"},
    {kStyleLabel, kLabelColor, true, false,
     "a line that begins with : (a label) or @ (the object's name)"},
    {kStyleNumber, kNumberColor, true, false, "a number behind a command"},
    {kStyleName, kNameColor, true, true, "objects: a path such as .self.all"},
    {kStyleQuoted, kTextColor, false, false, "text in quotes"},
    {kStyleWord, kTextColor, true, true, "a name behind a command"},
    {kStyleText, kTextColor, false, false, "text to show: the words of a line without command"},
    {kStyleSign, kQuietColor, true, true, "signs and brackets behind a command"},
    {kStyleFault, kFaultColor, true, false, "a mark that no letter follows"},
}};

/// One style a byte of `line`, which may have its line end. Bytes may be anything.
std::string StyleLine(std::string_view line);
