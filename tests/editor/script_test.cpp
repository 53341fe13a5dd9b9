// The script commands, the styles of a script's text, and its colors.

#include "editor/script/script_colors.h"
#include "editor/script/script_hints.h"
#include "engine/command_table.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

TEST(Script, WordsAreSortedAndHaveTips) {
    const std::string longWord(100'000, 'x');
    EXPECT_EQ(SortWordList("  .top   .Top b \xc3\xa9 #Z b "), "#Z .Top .top b b \xc3\xa9");
    EXPECT_EQ(SortWordList(longWord + " a"), "a " + longWord);
    for (const auto& [word, tip] :
         {std::pair<std::string, std::string>("#patch ", "<midi instrument> ie: 1"),
          {"#CyCle ", "<value: 0-255>"},
          {"#nothing ", ""}})
        EXPECT_EQ(LookUpCallTip(word), tip) << word;
}

TEST(Script, LinesHaveTheStylesOfTheLanguage) {
    // Below each line its styles; A is 10.
    for (const auto& [line, wanted] :
         {std::pair<std::string, std::string>("#walk n\n", "11111070"),
          {"  #char 2 15 0", "00111110404404"},
          {"#put n .self.Ro", "111107055555555"},
          {"#put n Guard.Ro", "111107055555555"},
          {"/n/n?e #die", "11111101111"},
          {"#try n #end", "11110701111"},
          {"#if x>=-5#die", "1110799441111"},
          {"#set a/b 3rd", "111107970777"},
          {"#write 1 2 \"a #b .c\" d", "1111110404066666666607"},
          {"#play \"open", "11111066666"},
          {"#WALK2_x ", "111111110"},
          {"# / ?", "A0A0A"},
          {"' #no .list", "22222222222"},
          {":label 1", "33333333"},
          {"@Guard.x", "33333333"},
          {"Hello there. It is #1", "888880888888088088088"},
          {"Say #walk n", "88801111107"},
          {".self.Ro. x", "55555555508"},
          {"... and ...", "88808880888"},
          {"C# is", "88088"},
          {"\"hi\" there", "6666088888"},
          {"\xc3\xa9t\xc3\xa9 #\xc3\xa9 ", "8888801110"},
          {"\r\n", "00"},
          {std::string(1'000'000, '#'), std::string(1'000'000, 'A')}}) {
        std::string styles;
        for (const char style : StyleLine(line))
            styles += style == kStyleFault ? 'A' : static_cast<char>('0' + style);
        EXPECT_EQ(styles, wanted) << line;
    }
}

TEST(Script, ColorsFallBackOneByOne) {
    const ScriptColors absent{0, 0xFFAA00, 0x555555, 0x33AA11, 0x22AAFF, 0xAA22FF, 0xFF00FF};
    ScriptColors two = absent;
    two[0] = 0x563412;
    two[2] = 0xFEDCBA;
    const TempFolder temp;
    EXPECT_EQ(LoadScriptColors("no/such/file"), absent);
    EXPECT_NE(LoadScriptColors(kColorsFile), absent);
    for (const auto& [text, colors] :
         {std::pair<std::string, ScriptColors>("", absent),
          {"a 12345g b #00000 c 12345 d -11111 e + f 0x1234", absent},
          {"Text\n123456 one\rbad\tx baDCfexyz y", two},
          {std::string(5000, 'w') + " 123456 b no c BADCFE" + std::string(5000, 'z'), two}})
        EXPECT_EQ(LoadScriptColors(PutFile(temp / "colors", text).c_str()), colors);
}
