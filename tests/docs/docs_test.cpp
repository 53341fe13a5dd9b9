// What the documents say, against the program and the tree.

#include "editor/shell/key_table.h"
#include "editor/view/quilt_view.h"
#include "engine/command_table.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

#include <regex>

TEST(Docs, EveryCommandStandsInTheTable) {
    const std::string text = FileBytes(SOURCE_FOLDER "/docs/scripts.md");
    for (const ScriptCommand& each : ScriptCommands()) {
        const bool bare = !each.NeedsWord();
        std::string row = "\n| `" + std::string(each.word) + "` | " + (bare ? "nothing" : "`");
        if (!bare) row += std::regex_replace(std::string(each.tip), std::regex("\n "), " ") + "`";
        EXPECT_NE(text.find(row + " |\n"), text.npos) << row;
    }
}

TEST(Docs, TheTableOfKeysIsThatOfTheProgram) {
    const std::string readme = FileBytes(SOURCE_FOLDER "/README.md");
    for (const KeyTable& table : KeyTables())
        EXPECT_NE(readme.find(KeyTableAsMarkdown(table)), readme.npos) << KeyTableAsMarkdown(table);
    // Each key that the view takes in one of the panels is told there.
    const KeyTable& view = KeyTables().front();
    for (const std::size_t panel : {0, 1}) {
        std::size_t told = 0;
        for (auto row = view.begin() + 1; row != view.end(); ++row)
            if (!(*row)[panel + 1].empty())
                told += 1u + std::count((*row)[0].begin(), (*row)[0].end(), ',');
        EXPECT_EQ(told, CQuiltView::KeysOf(panel ? kPanelProperties : kPanelPaint).size());
    }
}
