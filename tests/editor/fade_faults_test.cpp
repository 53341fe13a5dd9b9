// Faults in the files of the fade library are told with file and line.

#include "editor/tools/fade_library.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

#include <filesystem>

TEST_F(WorldTest, AFaultInAFadeFileIsToldWithItsLine) {
    const std::filesystem::path home = std::filesystem::current_path();
    const TempFolder temp;
    std::filesystem::current_path(temp.Path());
    std::filesystem::create_directory("Library");
    std::string blend = "a\n";
    for (int i = 0; i < 100; ++i) blend += i % 10 == 9 ? "1\n" : "1 ";
    const struct {
        bool sets;
        std::string text;
        const char* told;
    } cases[] = {
        {false, blend + "\n" + blend, "FadeBlends.txt, line 12: this line is blank"},
        {false, blend + "b\n1 1\n1 x", "FadeBlends.txt, line 14: a number belongs"},
        {false, blend + std::string(99, 'n') + "\n1", "FadeBlends.txt, line 12: a name is too"},
        {false, blend + "\n\n", nullptr},
        {false, blend + "b\n1 1", nullptr},
        {true, "A 1 2 3 4 5\nB 1\n2 99999999999", "FadeSets.txt, line 3: a number is too large"},
        {true, "A 1 2 3 4 5\nB 1\n2", nullptr},
    };
    for (const auto& c : cases) {
        PutFile(c.sets ? "Library/FadeSets.txt" : "Library/FadeBlends.txt", c.text);
        EXPECT_EQ(c.sets ? LoadFadeSets("test").size() : LoadFadeBlends("test").size(), 1u);
        EXPECT_THAT(reports.Texts(), testing::HasSubstr(c.told ? c.told : "")) << c.text;
        EXPECT_EQ(reports.Messages().size(), c.told ? 1u : 0u) << c.text;
        reports.Clear();
    }
    std::filesystem::current_path(home);
}
