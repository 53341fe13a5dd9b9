// The script commands, the styles of a script's text, and its colors.

#include "editor/script/script_colors.h"
#include "editor/script/script_hints.h"
#include "engine/command_table.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

TEST(Script, WordsAreSortedAndHaveTips) {
    const std::string longWord(100'000, 'x'), all = SortWordList(vKeywordList);
    for (const auto& [words, sorted] : {std::pair<std::string, std::string>("  b   a ", "a b"),
                                        {"#char #charex #Z a", "#Z #char #charex a"},
                                        {"\xc3\xa9 .top .Top b z b", ".Top .top b b z \xc3\xa9"},
                                        {"    ", ""},
                                        {longWord + " a", "a " + longWord}})
        EXPECT_EQ(SortWordList(words), sorted);
    EXPECT_TRUE(all.starts_with("#attach #become #bind ") && all.ends_with(" #write #zap"));
    EXPECT_EQ(all.size(), vKeywordList.size());
    for (const auto& [word, tip] :
         {std::pair<std::string, std::string>("#patch ", "<midi instrument> ie: 1"),
          {"#mul ", "<var name> <var name> <var name>\n ie: "},
          {"#play ", "<zzt play>\n Must be surrounded by quotes ie: \"--CC\""},
          {"#charex ", "<x> <y> <chr> <fg> <bg> <attrib>"},
          {"#end ", "<no params>"},
          {"#CyCle ", "<value: 0-255>"},
          {"#nothing ", ""},
          {std::string(5000, '#'), ""}})
        EXPECT_EQ(LookUpCallTip(word), tip) << word;
}

TEST(Script, LinesHaveTheStylesOfTheLanguage) {
    // Below each line its styles; A is 10.
    const struct {
        const char* line;
        const char* styles;
    } cases[] = {
        {"#walk n\n", "11111070"},
        {"  #char 2 15 0", "00111110404404"},
        {"#put n .self.Ro", "111107055555555"},
        {"#put n Guard.Ro", "111107055555555"},
        {"/n/n?e #die", "11111101111"},
        {"#try n #end", "11110701111"},
        {"#if x>=-5#die", "1110799441111"},
        {"#if a-3", "1110794"},
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
    };
    for (const auto& c : cases) {
        std::string styles;
        for (const char style : StyleLine(c.line))
            styles += style == kStyleFault ? 'A' : static_cast<char>('0' + style);
        EXPECT_EQ(styles, c.styles) << c.line;
    }
}

TEST(Script, AnyBytesHaveStyles) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::string bytes = "#/?.:@'\"-+09azAZ_ \t\xc3\xa9\xff\x01<=>,;\r";
    for (int round = 0; round < 20'000; ++round) {
        std::string line(random() % 30, ' ');
        for (char& c : line) c = bytes[random() % bytes.size()];
        const std::string styles = StyleLine(line);
        ASSERT_EQ(styles.size(), line.size()) << line;
        const std::size_t end = line.find('\r');
        ASSERT_EQ(StyleLine(line.substr(0, end)), styles.substr(0, end)) << line;
        for (std::size_t i = 0; i < line.size(); ++i) {
            ASSERT_TRUE(styles[i] >= 0 && styles[i] < kScriptStyles) << line;
            ASSERT_TRUE(i < end || styles[i] == kStyleBlank) << line;
        }
    }
    EXPECT_EQ(StyleLine(std::string(1'000'000, '#')), std::string(1'000'000, kStyleFault));
}

TEST(Script, ColorsFallBackOneByOneAndCanBeReadOnWhite) {
    const ScriptColors absent{0, 0xFFAA00, 0x555555, 0x33AA11, 0x22AAFF, 0xAA22FF, 0xFF00FF};
    ScriptColors two = absent;
    two[0] = 0x563412;
    two[2] = 0xFEDCBA;
    const TempFolder temp;
    EXPECT_EQ(LoadScriptColors("no/such/file"), absent);
    for (const auto& [text, colors] :
         {std::pair<std::string, ScriptColors>("", absent),
          {"a 12345g b #00000 c 12345 d -11111 e + f 0x1234", absent},
          {"Text\n123456 one\rbad\tx baDCfexyz y", two},
          {std::string(5000, 'w') + " 123456 b no c BADCFE" + std::string(5000, 'z'), two}})
        EXPECT_EQ(LoadScriptColors(PutFile(temp / "colors", text).c_str()), colors);

    // Lightness by the usual formula of contrast; 4.5 is the least for text of
    // this size.
    EXPECT_NE(LoadScriptColors(kColorsFile), absent);
    for (std::size_t i = 0; i < kScriptColors; ++i) {
        const auto color = LoadScriptColors(kColorsFile)[i];
        double light = 0.05;
        constexpr double kWeights[] = {0.2126, 0.7152, 0.0722};
        for (int part = 0; part < 3; ++part) {
            const double c = (color >> part * 8 & 0xff) / 255.0;
            light +=
                kWeights[part] * (c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4));
        }
        EXPECT_GE(1.05 / light, 4.5) << color;
    }
}
