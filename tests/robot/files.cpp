#include "tests/robot/files.h"

#include "editor/tools/tile_clip_files.h"
#include "editor/view/tile_clip.h"
#include "engine/dinterface.h"
#include "engine/picture_file.h"
#include "tests/support/random_world.h"
#include "tests/support/temp_folder.h"

#include <QApplication>
#include <QFileDialog>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace {

// Names begin with the kind of dialog that has a use for the file, so that a good file of one
// kind stays one. Files called "good" are never saved over, those called "saved" often.
struct DialogKind {
    const char* pattern;  ///< in the dialog's filters
    const char* stem;
    std::vector<const char*> extensions;  ///< the first one is that of a dialog that has one
};
const DialogKind kKinds[] = {
    {".zqlt", "game", {".zqlt"}},
    {".zobj", "object", {".zobj"}},
    {".qcf", "clip", {".qcf", ".chr", ".bmp", ".att", ".txt"}},
    {".chr", "clip", {".chr"}},
    {".att", "clip", {".att"}},
    {".bmp", "bmp", {".bmp"}},
};

const DialogKind& KindOf(const QFileDialog& dialog) {
    const QString filters = dialog.nameFilters().join(QLatin1Char(' '));
    for (const DialogKind& kind : kKinds)
        if (filters.contains(QLatin1String(kind.pattern))) return kind;
    return kKinds[0];
}

constexpr const char* kBadNames[] = {
    "bad-half.zqlt",  "bad-empty.zqlt",      "bad-text.zqlt",
    "bad-half.zobj",  "bad-renamed.zobj",    "bad-text.qcf",
    "bad-half.qcf",   "bad-empty.chr",       "bad-text.chr",
    "bad-text.bmp",   "bad-half.bmp",        "bad-text.att",
    "bad-empty.txt",  "missing.zqlt",        "missing.bmp",
    "bad-saved.zobj", "bad-saved.bmp",       "bad-saved.txt",
    "folder",         "bad-saved",           "bad-nothing.zip",
    "missing/a.zqlt", "bad-empty.bmp/a.qcf", "",
    "locked/a.zqlt",
};
constexpr const char* kBadPlaces[] = {
    "bad-saved.zobj", "bad-saved.bmp",       "bad-saved.txt", "bad-saved.zqlt.", "folder",
    "missing/a",      "bad-empty.bmp/a.bmp", "locked/a",      "bad saved",       "",
};

// A sheet's picture and a clipboard's are of the same form but not of the same use: what a
// clipboard has saved may be too large for a font.
bool IsFontEditOpen() {
    for (const QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowTitle() == QLatin1String("Font Edit")) return true;
    return false;
}

}  // namespace

Files::Files(const std::string& programFolder, Chance& chance) {
    std::string text = (std::filesystem::temp_directory_path() / "quilt-robot-XXXXXX").string();
    folder = mkdtemp(text.data());
    for (const char* name : {"program", "settings", "home", "folder", "locked"})
        std::filesystem::create_directory(*this / name);
    std::filesystem::permissions(*this / "settings", std::filesystem::perms::owner_all);
    std::filesystem::copy(programFolder + "/Library", ProgramFolder() + "/Library");
    std::filesystem::create_symlink("/bin/true", ProgramFolder() + "/QUILT! Runner");
    std::filesystem::current_path(ProgramFolder());
    MakeGoodFiles(chance);
    MakeBadFiles();
}

void Files::Remove() {
    std::filesystem::current_path("/");
    std::filesystem::permissions(*this / "locked", std::filesystem::perms::owner_all);
    std::filesystem::remove_all(folder);
}

namespace {

// All attributes, which a random world does without.
void Scatter(Dobject& node, Chance& chance) {
    constexpr int kAttributes = 4;
    for (Dtile& tile : node.tiles)
        if (chance.OneIn(3)) tile.attrib = static_cast<std::uint16_t>(chance.Below(kAttributes));
    for (const auto& child : node.children) Scatter(*child, chance);
}

}  // namespace

void Files::MakeGoodFiles(Chance& chance) {
    std::mt19937 worlds(static_cast<std::uint32_t>(chance.Below(INT32_MAX)));
    Dinterface world;
    for (const char* name : {"game-good.zqlt", "game-good \xc3\xbc.zqlt", "game-good.2.zqlt"}) {
        PlantRandomWorld(world, worlds);
        Scatter(world.Root(), chance);
        world.Save(*this / name);
    }
    for (const char* name : {"object-good.zobj", "object-good \xc3\xa9.zobj"}) {
        PlantRandomWorld(world, worlds);
        const HandleGuard board(world.AddHandle(world.Root().children.front().get()));
        world.Export(board, *this / name);
    }
    world.GetFont()->AddRow();
    PutFile(*this / "bmp-good.bmp",
            MakeBmp(world.GetFont()->Sheet(), world.GetFont()->GetPalette()));
    MakeClips();
}

void Files::MakeClips() {
    const struct {
        const char* name;
        Dtile fields;  // added to each cell's own; 65535 stays
    } clips[] = {
        {"clip-good.qcf", {1, 2, 3, 1}},
        {"clip-good.chr", {1, 65535, 65535, 65535}},
        {"clip-good.bmp", {65535, 4, 65535, 65535}},
        {"clip-good.att", {65535, 65535, 65535, 2}},
    };
    constexpr int kW = 5;
    constexpr int kH = 3;
    for (const auto& clip : clips) {
        vTileClip.assign(kW * kH, clip.fields);
        vTileClipW = kW;
        vTileClipH = kH;
        SaveTileClip(*this / clip.name);
    }
    ClearTileClip();
    PutFile(*this / "clip-good.txt", "abc\ndef\n\xdb\xb2\xb1\n");
}

void Files::MakeBadFiles() {
    const auto half = [this](const char* from, const char* to) {
        const std::string bytes = FileBytes(*this / from);
        PutFile(*this / to, bytes.substr(0, bytes.size() / 2));
    };
    half("game-good.zqlt", "bad-half.zqlt");
    half("object-good.zobj", "bad-half.zobj");
    half("clip-good.qcf", "bad-half.qcf");
    half("bmp-good.bmp", "bad-half.bmp");
    PutFile(*this / "bad-renamed.zobj", FileBytes(*this / "object-good.zobj"));
    for (const char* name : {"bad-empty.zqlt", "bad-empty.chr", "bad-empty.txt", "bad-empty.bmp"})
        PutFile(*this / name, "");
    for (const char* name : {"bad-text.zqlt", "bad-text.qcf", "bad-text.chr", "bad-text.bmp",
                             "bad-text.att", "bad-nothing.zip"})
        PutFile(*this / name, "3 4 5 no file of any kind -99999999999 ~ob");
    std::filesystem::permissions(
        *this / "locked", std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
}

std::string Files::TakeIn(const std::string& game) const {
    std::string copy = *this / "game-first.zqlt";
    std::error_code error;
    std::filesystem::copy_file(game, copy, error);
    return copy;
}

std::string Files::Shown(std::string text) const {
    for (std::size_t at = 0; (at = text.find(folder, at)) != std::string::npos;)
        text.replace(at, folder.size(), "~");
    return text;
}

Files::Answer Files::AnswerFor(const QFileDialog& dialog, Chance& chance) const {
    const bool save = dialog.acceptMode() == QFileDialog::AcceptSave;
    if (chance.OneIn(3)) {
        const char* name = save ? chance.Pick(kBadPlaces) : chance.Pick(kBadNames);
        return {*this / name, true};
    }
    const DialogKind& kind = KindOf(dialog);
    const bool clipColors = kind.stem == std::string("bmp") && !IsFontEditOpen();
    const std::string stem = clipColors ? "clip" : kind.stem;
    const std::string number = std::to_string(chance.Below(3));
    if (save) return {*this / (stem + "-saved" + number), false};
    const std::string name = stem + (chance.OneIn(2) ? "-good" : "-saved" + number);
    return {*this / (name + chance.Pick(kind.extensions)), false};
}

Files::Answer Files::FirstGame(Chance& chance) const {
    switch (chance.Below(4)) {
        case 0:
            return {*this / "game-good.zqlt", false};
        case 1:
            return {*this / chance.Pick(kBadNames), true};
        default:
            return {};
    }
}

bool Files::NamesBadFile(const std::string& text) {
    for (const char* part : {"/bad", "/missing", "/locked", "/folder"})
        if (text.find(part) != std::string::npos) return true;
    return false;
}
