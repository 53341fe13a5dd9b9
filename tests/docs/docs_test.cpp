// What the documents say, against the program and the tree.

#include "editor/shell/key_table.h"
#include "editor/view/quilt_view.h"
#include "engine/command_table.h"
#include "platform/keys.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace {

const fs::path kSource = SOURCE_FOLDER;

std::vector<fs::path> Documents() {
    std::vector<fs::path> found;
    for (const fs::path& folder : {kSource, kSource / "docs"})
        for (const auto& entry : fs::directory_iterator(folder))
            if (entry.path().extension() == ".md") found.push_back(entry.path());
    return found;
}

// The targets of links and pictures: the file, empty for the document itself, and the heading,
// empty for none.
std::vector<std::pair<std::string, std::string>> Links(const std::string& text) {
    const std::regex link(R"(\]\(([^)#]*)#?([^)]*)\))");
    std::vector<std::pair<std::string, std::string>> links;
    for (std::sregex_iterator at(text.begin(), text.end(), link), end; at != end; ++at)
        links.emplace_back((*at)[1], (*at)[2]);
    return links;
}

// The headings of a document as links call them: small letters, digits and hyphens for blanks.
std::set<std::string> Headings(const fs::path& document) {
    std::istringstream text(FileBytes(document));
    std::set<std::string> headings;
    for (std::string line; std::getline(text, line);) {
        if (!line.starts_with("#")) continue;
        std::string name = line.substr(line.find_first_not_of("# "));
        std::erase_if(name,
                      [](unsigned char c) { return !std::isalnum(c) && c != '-' && c != ' '; });
        for (char& c : name)
            c = c == ' ' ? '-' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        headings.insert(name);
    }
    return headings;
}

using Row = std::vector<std::string>;

Row Split(const std::string& text, const std::string& by) {
    const std::regex separator(by);
    return {std::sregex_token_iterator(text.begin(), text.end(), separator, -1), {}};
}

const std::map<std::string, int> kKeyNames{
    {"Up", platform::kKeyUp},
    {"Down", platform::kKeyDown},
    {"Left", platform::kKeyLeft},
    {"Right", platform::kKeyRight},
    {"Space", platform::kKeySpace},
    {"Shift", platform::kKeyShift},
    {"Tab", platform::kKeyTab},
    {"Enter", platform::kKeyEnter},
    {"Menu", platform::kKeyApps},
    {"Home", platform::kKeyHome},
    {"End", platform::kKeyEnd},
    {"Page Up", platform::kKeyPageUp},
    {"Page Down", platform::kKeyPageDown},
    {"Insert", platform::kKeyInsert},
    {"Delete", platform::kKeyDelete},
    {"F1", platform::kKeyF1},
    {"F2", platform::kKeyF2},
    {"F4", platform::kKeyF4},
    {"Escape", platform::kKeyEscape},
};

// The code of a key with what is held beside it.
int CodeOf(std::string name) {
    int flags = 0;
    if (name.starts_with("Ctrl+")) flags |= platform::kWithCtrl, name.erase(0, 5);
    if (name.starts_with("Shift+")) flags |= platform::kWithShift, name.erase(0, 6);
    return kKeyNames.at(name) | flags;
}

}  // namespace

TEST(Docs, LinksLeadSomewhereAndEveryPictureIsUsed) {
    std::set<std::string> used;
    int links = 0, headings = 0;
    for (const fs::path& document : Documents()) {
        for (const auto& [target, heading] : Links(FileBytes(document))) {
            if (target.starts_with("http")) continue;
            const fs::path file = target.empty() ? document : document.parent_path() / target;
            EXPECT_TRUE(fs::exists(file)) << document.filename() << ": " << target;
            EXPECT_TRUE(heading.empty() || Headings(file).contains(heading))
                << document.filename() << ": " << target << "#" << heading;
            used.insert(file.filename());
            ++links;
            headings += !heading.empty();
        }
    }
    EXPECT_GT(links, 60);
    EXPECT_GT(headings, 15);
    std::uintmax_t bytes = 0;
    for (const auto& picture : fs::directory_iterator(kSource / "docs/pictures")) {
        EXPECT_TRUE(used.contains(picture.path().filename())) << picture.path();
        bytes += picture.file_size();
    }
    EXPECT_LT(bytes, 1500u * 1024) << "the pictures are to stay small";
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
    std::set<int> paint, properties;
    const KeyTable& view = KeyTables().front();
    for (auto row = view.begin() + 1; row != view.end(); ++row) {
        for (const std::string& name : Split((*row)[0], ", ")) {
            if (!(*row)[1].empty()) paint.insert(CodeOf(name));
            if (!(*row)[2].empty()) properties.insert(CodeOf(name));
        }
    }
    EXPECT_EQ(paint, CQuiltView::KeysOf(kPanelPaint));
    EXPECT_EQ(properties, CQuiltView::KeysOf(kPanelProperties));
}
