// The script commands, the styles of a script's text, and its colours.

#include "editor/script/command_table.h"
#include "editor/script/script_colors.h"
#include "editor/script/script_hints.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

#include <cmath>
#include <random>

TEST(CommandTable, HasItsLetters) {
    const auto digest = [](std::string_view text) {
        unsigned sum = 2166136261u;
        for (const char c : text) sum = (sum ^ static_cast<unsigned char>(c)) * 16777619u;
        return sum;
    };
    EXPECT_EQ(digest(vKeywordList), 3310021159u);
    EXPECT_EQ(digest(vCallTipList), 1538187627u);
}

TEST(CommandTable, SortsWords) {
    const struct {
        const char* words;
        const char* sorted;
    } cases[] = {
        {"  b   a ", "a b"},
        {"#char #charex #Z a", "#Z #char #charex a"},
        {"\xc3\xa9 .top .Top b z b", ".Top .top b b z \xc3\xa9"},
        {"    ", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(SortWordList(c.words), c.sorted) << c.words;
    const std::string all = SortWordList(vKeywordList);
    EXPECT_TRUE(all.starts_with("#attach #become #bind #board #change #char #charex "));
    EXPECT_TRUE(all.ends_with(" #unlock #walk #write #zap"));
    EXPECT_EQ(all.size(), vKeywordList.size());
    const std::string longWord(100'000, 'x');
    EXPECT_EQ(SortWordList(longWord + " a"), "a " + longWord);
}

TEST(CommandTable, FindsTips) {
    const struct {
        std::string word;
        const char* tip;
    } cases[] = {
        {"#patch ", "<midi instrument> ie: 1"},
        {"#mul ", "<var name> <var name> <var name>\n ie: "},
        {"#song ", "<filename> <repeat: 0 = once, 1 = repeat"},
        {"#play ", "<zzt play>\n Must be surrounded by quotes ie: \"--CC\""},
        {"#charex ", "<x> <y> <chr> <fg> <bg> <attrib>"},
        {"#end ", "<no params>"},
        {"#CyCle ", "<value: 0-255>"},
        {"#write ", "<x> <y> <words: Either a \"Word\" or VarName>"},
        {"#nothing ", ""},
        {std::string(5000, '#'), ""},
    };
    for (const auto& c : cases) EXPECT_EQ(LookUpCallTip(c.word), c.tip) << c.word;
}

TEST(ScriptStyler, StylesWhatTheLanguageHas) {
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
        {"#set a/b 3rd", "111107970777"},
        {"#write 1 2 \"a #b .c\" d", "1111110404066666666607"},
        {"#play \"open", "11111066666"},
        {"#WALK2_x ", "111111110"},
        {"# / ?", "A0A0A"},
        {"#", "A"},
        {"' #no .list", "22222222222"},
        {":label 1", "33333333"},
        {"@Guard.x", "33333333"},
        {"Hello there. It is #1", "888880888888088088088"},
        {"Say #walk n", "88801111107"},
        {".self.Ro. x", "55555555508"},
        {"... and ...", "88808880888"},
        {"a#die", "81111"},
        {"C# is", "88088"},
        {"\"hi\" there", "6666088888"},
        {"\xc3\xa9t\xc3\xa9 #\xc3\xa9 ", "88888011100"},
        {"", ""},
        {"\r\n", "00"},
    };
    for (const auto& c : cases) {
        std::string styles;
        for (const char style : StyleLine(c.line))
            styles += style == kStyleFault ? 'A' : static_cast<char>('0' + style);
        // Where the bytes of a test's own line are more than the eye counts, the end is enough.
        EXPECT_EQ(styles, std::string(c.styles).substr(0, std::string(c.line).size())) << c.line;
    }
}

TEST(ScriptStyler, OpensListsInTheRightStylesOnly) {
    using testing::ElementsAre;
    std::vector<int> noKeywords, paths;
    for (const StyleRow& row : kStyleTable) {
        EXPECT_EQ(&row - kStyleTable.data(), row.style);
        if (!row.opensKeywords) noKeywords.push_back(row.style);
        if (row.opensPaths) paths.push_back(row.style);
    }
    EXPECT_THAT(noKeywords, ElementsAre(2, 6, 8));
    EXPECT_THAT(paths, ElementsAre(0, 5, 7, 9));
}

TEST(ScriptStyler, TakesAnyBytes) {
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

TEST(ScriptColors, FallBackOneByOne) {
    const ScriptColors absent = LoadScriptColors("no/such/file");
    EXPECT_THAT(absent, testing::ElementsAre(0, 0xFFAA00, 0x555555, 0x33AA11, 0x22AAFF, 0xAA22FF,
                                             0xFF00FF));
    const TempFolder temp;
    const auto load = [&](const std::string& text) {
        return LoadScriptColors(PutFile(temp / "colors", text).c_str());
    };
    EXPECT_EQ(load(""), absent);
    EXPECT_EQ(load("a 12345g b #00000 c 12345 d -11111 e + f 0x1234"), absent);
    ScriptColors two = absent;
    two[0] = 0x563412;
    two[2] = 0xFEDCBA;
    EXPECT_EQ(load("Text\n123456 one\rbad\tx baDCfexyz y"), two);
    EXPECT_EQ(load(std::string(5000, 'w') + " 123456 b no c BADCFE" + std::string(5000, 'z')), two);
}

// Lightness by the usual formula of contrast; 4.5 is the least for text of this size.
TEST(ScriptColors, OnesThatComeWithTheProgramCanBeReadOnWhite) {
    const ScriptColors colors = LoadScriptColors(kColorsFile);
    EXPECT_NE(colors, LoadScriptColors("no/such/file"));
    for (std::size_t i = 0; i < kScriptColors; ++i) {
        double light = 0.05;
        constexpr double kWeights[] = {0.2126, 0.7152, 0.0722};
        for (int part = 0; part < 3; ++part) {
            const double c = (colors[i] >> part * 8 & 0xff) / 255.0;
            light +=
                kWeights[part] * (c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4));
        }
        EXPECT_GE(1.05 / light, 4.5) << i;
    }
}
