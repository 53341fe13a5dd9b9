// What the documents say, against the program and the tree.

#include "editor/shell/key_table.h"
#include "editor/view/quilt_view.h"
#include "engine/command_table.h"
#include "platform/keys.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

#include <array>
#include <regex>
#include <set>

using namespace platform;
namespace fs = std::filesystem;

namespace {

const fs::path kSource = SOURCE_FOLDER;

constexpr std::array kNames = {"Up",     "Down", "Left", "Right", "Space",   "Shift",     "Tab",
                               "Enter",  "Menu", "Home", "End",   "Page Up", "Page Down", "Insert",
                               "Delete", "F1",   "F2",   "F4",    "Escape"};
constexpr std::array kCodes = {kKeyUp,    kKeyDown,   kKeyLeft,     kKeyRight,  kKeySpace,
                               kKeyShift, kKeyTab,    kKeyEnter,    kKeyApps,   kKeyHome,
                               kKeyEnd,   kKeyPageUp, kKeyPageDown, kKeyInsert, kKeyDelete,
                               kKeyF1,    kKeyF2,     kKeyF4,       kKeyEscape};
static_assert(kNames.size() == kCodes.size());

// The code of a key with what is held beside it.
int CodeOf(std::string name) {
    int flags = 0;
    if (name.starts_with("Ctrl+")) flags |= kWithCtrl, name.erase(0, 5);
    if (name.starts_with("Shift+")) flags |= kWithShift, name.erase(0, 6);
    const auto found = std::find(kNames.begin(), kNames.end(), name) - kNames.begin();
    return kCodes.at(static_cast<std::size_t>(found)) | flags;
}

}  // namespace

TEST(Docs, LinksLeadSomewhereAndEveryPictureIsUsed) {
    const std::regex link(R"(\]\((?!http)([^)#]+))");
    std::set<std::string> used;
    for (const fs::path& folder : {kSource, kSource / "docs"}) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (entry.path().extension() != ".md") continue;
            const std::string text = FileBytes(entry.path());
            for (std::sregex_iterator at(text.begin(), text.end(), link), end; at != end; ++at) {
                const fs::path file = folder / (*at)[1].str();
                EXPECT_TRUE(fs::exists(file)) << entry.path() << ": " << file;
                used.insert(file.filename());
            }
        }
    }
    EXPECT_GT(used.size(), 15u);
    for (const auto& picture : fs::directory_iterator(kSource / "docs/pictures"))
        EXPECT_TRUE(used.contains(picture.path().filename())) << picture.path();
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
    const std::regex comma(", ");
    std::set<int> held[2];
    const KeyTable& view = KeyTables().front();
    for (auto row = view.begin() + 1; row != view.end(); ++row) {
        const std::sregex_token_iterator names((*row)[0].begin(), (*row)[0].end(), comma, -1);
        for (auto name = names; name != std::sregex_token_iterator(); ++name)
            for (const std::size_t panel : {0, 1})
                if (!(*row)[panel + 1].empty()) held[panel].insert(CodeOf(*name));
    }
    EXPECT_EQ(held[0], CQuiltView::KeysOf(kPanelPaint));
    EXPECT_EQ(held[1], CQuiltView::KeysOf(kPanelProperties));
}
