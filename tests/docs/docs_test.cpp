// What the documents say, against the program and the tree.

#include "editor/shell/key_table.h"
#include "editor/view/quilt_view.h"
#include "engine/command_table.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

#include <regex>

namespace fs = std::filesystem;

static const fs::path kSource = SOURCE_FOLDER;

TEST(Docs, LinksLeadSomewhere) {
    const std::regex link(R"(\]\((?!http)([^)#]+))");
    for (const fs::path& folder : {kSource, kSource / "docs"}) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (entry.path().extension() != ".md") continue;
            const std::string text = FileBytes(entry.path());
            for (std::sregex_iterator at(text.begin(), text.end(), link), end; at != end; ++at) {
                const fs::path file = folder / (*at)[1].str();
                EXPECT_TRUE(fs::exists(file)) << entry.path() << ": " << file;
            }
        }
    }
}

TEST(Docs, EveryCommandStandsInTheTable) {
    const std::string text = FileBytes(kSource / "docs/scripts.md");
    for (const ScriptCommand& command : ScriptCommands()) {
        const bool bare = !command.NeedsWord();
        std::string row = "\n| `" + std::string(command.word) + "` | " + (bare ? "nothing" : "`");
        if (!bare)
            row += std::regex_replace(std::string(command.tip), std::regex("\n "), " ") + "`";
        EXPECT_NE(text.find(row + " |\n"), text.npos) << row;
    }
}

TEST(Docs, TheTableOfKeysIsThatOfTheProgram) {
    const std::string readme = FileBytes(kSource / "README.md");
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
