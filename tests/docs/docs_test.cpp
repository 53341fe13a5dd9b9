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

struct Link {
    std::string file;     ///< as it is written; empty for the document itself
    std::string heading;  ///< empty for none
};

// The targets of links and pictures.
std::vector<Link> Links(const std::string& text) {
    constexpr const char* kStart = "](";
    std::vector<Link> links;
    for (std::size_t at = 0; (at = text.find(kStart, at)) != text.npos;) {
        at += 2;
        const std::string target = text.substr(at, text.find(')', at) - at);
        const std::size_t mark = std::min(target.find('#'), target.size());
        links.push_back({target.substr(0, mark), target.substr(std::min(mark + 1, target.size()))});
    }
    return links;
}

// The headings of a document as links call them: small letters, digits and hyphens for blanks.
std::set<std::string> Headings(const fs::path& document) {
    std::istringstream text(FileBytes(document));
    std::set<std::string> headings;
    for (std::string line; std::getline(text, line);) {
        if (!line.starts_with("#")) continue;
        std::string name;
        for (const char c : line.substr(line.find_first_not_of("# "))) {
            if (std::isalnum(static_cast<unsigned char>(c)) || c == '-')
                name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            else if (c == ' ')
                name += '-';
        }
        headings.insert(name);
    }
    return headings;
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
    int links = 0, headings = 0;
    for (const fs::path& document : Documents()) {
        for (const Link& link : Links(FileBytes(document))) {
            if (link.file.starts_with("http")) continue;
            const fs::path file = link.file.empty() ? document : document.parent_path() / link.file;
            EXPECT_TRUE(fs::exists(file)) << document.filename() << ": " << link.file;
            ++links;
            if (link.heading.empty()) continue;
            EXPECT_TRUE(Headings(file).contains(link.heading))
                << document.filename() << ": " << link.file << "#" << link.heading;
            ++headings;
        }
    }
    EXPECT_GT(links, 60);
    EXPECT_GT(headings, 15);
}

TEST(Docs, EveryPictureIsUsed) {
    std::set<std::string> used;
    for (const fs::path& document : Documents())
        for (const Link& link : Links(FileBytes(document)))
            used.insert(fs::path(link.file).filename());
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
