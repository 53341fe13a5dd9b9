// What the documents say, against the program and the tree.

#include "editor/shell/menu_bar.h"
#include "editor/view/quilt_view.h"
#include "platform/keys.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

#include <map>
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

// The targets of links and pictures, as they are written but for the heading in a document.
std::vector<std::string> Targets(const std::string& text) {
    constexpr const char* kStart = "](";
    std::vector<std::string> targets;
    for (std::size_t at = 0; (at = text.find(kStart, at)) != text.npos;) {
        at += 2;
        const std::size_t end = text.find_first_of("#)", at);
        if (end != at) targets.push_back(text.substr(at, end - at));
    }
    return targets;
}

using Row = std::vector<std::string>;

// The rows of the README's table with that heading, cell by cell.
std::vector<Row> Table(const std::string& heading) {
    std::istringstream readme(FileBytes(kSource / "README.md"));
    std::vector<Row> rows;
    bool inside = false;
    for (std::string line; std::getline(readme, line);) {
        const bool row = line.starts_with("|");
        if (row && inside && line[1] != '-') {
            Row cells;
            std::istringstream text(line.substr(1));
            for (std::string cell; std::getline(text, cell, '|');) {
                const std::size_t from = cell.find_first_not_of(' ');
                const std::size_t to = cell.find_last_not_of(' ');
                cells.push_back(from == cell.npos ? "" : cell.substr(from, to - from + 1));
            }
            rows.push_back(cells);
        }
        inside = row && (inside || line == heading);
    }
    return rows;
}

std::vector<std::string> Split(const std::string& text, const std::string& by) {
    std::vector<std::string> parts;
    std::size_t from = 0;
    for (std::size_t at; (at = text.find(by, from)) != text.npos; from = at + by.size())
        parts.push_back(text.substr(from, at - from));
    parts.push_back(text.substr(from));
    return parts;
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
};

void CollectShortcuts(const platform::Menu& menu, std::map<std::string, std::string>& found) {
    for (const platform::MenuItem& item : menu) {
        std::string text = item.text;
        std::erase(text, '&');
        if (!item.key.empty()) found[item.key] = text;
        CollectShortcuts(item.items, found);
    }
}

}  // namespace

TEST(Docs, LinksLeadSomewhere) {
    int links = 0;
    for (const fs::path& document : Documents()) {
        for (const std::string& target : Targets(FileBytes(document))) {
            if (target.starts_with("http")) continue;
            EXPECT_TRUE(fs::exists(document.parent_path() / target))
                << document.filename() << ": " << target;
            ++links;
        }
    }
    EXPECT_GT(links, 30);
}

TEST(Docs, EveryPictureIsUsed) {
    std::set<std::string> used;
    for (const fs::path& document : Documents())
        for (const std::string& target : Targets(FileBytes(document)))
            used.insert(fs::path(target).filename());
    std::uintmax_t bytes = 0;
    for (const auto& picture : fs::directory_iterator(kSource / "docs/pictures")) {
        EXPECT_TRUE(used.contains(picture.path().filename())) << picture.path();
        bytes += picture.file_size();
    }
    EXPECT_LT(bytes, 1500u * 1024) << "the pictures are to stay small";
}

TEST(Docs, TheTableOfKeysIsThatOfTheProgram) {
    std::set<int> paint, properties;
    for (const Row& row : Table("| keys | paint panel | properties panel |")) {
        ASSERT_EQ(row.size(), 3u);
        for (const std::string& name : Split(row[0], ", ")) {
            ASSERT_TRUE(kKeyNames.contains(name)) << name;
            if (!row[1].empty()) paint.insert(kKeyNames.at(name));
            if (!row[2].empty()) properties.insert(kKeyNames.at(name));
        }
    }
    EXPECT_EQ(paint, CQuiltView::KeysOf(kPanelPaint));
    EXPECT_EQ(properties, CQuiltView::KeysOf(kPanelProperties));
}

TEST(Docs, TheShortcutsAreThoseOfTheMenus) {
    std::map<std::string, std::string> told, real;
    for (const Row& row : Table("| keys | menu |")) told[row.at(0)] = row.at(1);
    CollectShortcuts(MakeMenuBar({}), real);
    EXPECT_EQ(told, real);
}
