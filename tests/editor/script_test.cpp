// The styles of a script's text, and its colors.

#include "editor/script/container_styling.h"
#include "editor/script/script_colors.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

TEST(Script, LinesHaveTheStylesOfTheLanguage) {
    // Below each line its styles; A is 10.
    for (const auto& [line, wanted] :
         {std::pair<std::string, std::string>("#walk n\n", "11111070"),
          {"  #char 2 15 0", "00111110404404"},
          {"#put n .self.Ro", "111107055555555"},
          {"#write 1 2 \"a #b .c\" d", "1111110404066666666607"},
          {"#WALK2_x -x -1+1", "1111111109704494"},
          {"' #no .list", "22222222222"},
          {":label 1", "33333333"},
          {"Hello there. It is #1", "888880888888088088088"},
          {"Say #walk n", "88801111107"},
          {".self.Ro. x", "55555555508"},
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
    const std::string path = PutFile(temp / "colors", "Text\n123456 one\rbad\tx baDCfexyz y");
    EXPECT_EQ(LoadScriptColors(path.c_str()), two);
}
