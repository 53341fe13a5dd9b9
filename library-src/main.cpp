// quilt-library: makes the data files of the Library folder, or pictures of them, from the sources
// in this folder.

#include "engine/bitmap.h"
#include "engine/replace_file.h"
#include "engine/report.h"
#include "library-src/datafile.h"
#include "library-src/icon.h"
#include "library-src/new_game.h"
#include "library-src/pictures.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string_view>

namespace {

using std::filesystem::path;

struct Sources {
    Glyphs glyphs;
    Palette palette;
    Icon icon;
};

bool WriteBytes(const path& file, const std::string& bytes) {
    std::string why = "There is not enough memory.";
    const bool good = !bytes.empty() && ReplaceFile(file, bytes, why);
    if (!good) std::fprintf(stderr, "%s: %s\n", file.c_str(), why.c_str());
    return good;
}

bool WriteLibrary(const Sources& from, const path& folder) {
    return WriteBytes(folder / "default.dat", MakeDatafile(from.glyphs.sheet, from.palette)) &&
           WriteBytes(folder / "default.zqlt", NewGame(from.glyphs.sheet));
}

bool WritePictures(const Sources& from, const path& folder) {
    return WriteBytes(folder / "library-glyphs.png", SheetPicture(from.glyphs, from.palette)) &&
           WriteBytes(folder / "library-palette.png", PalettePicture(from.glyphs, from.palette));
}

// As an icon theme sorts them, for an installed program.
bool WriteIcons(const Sources& from, const path& folder) {
    constexpr int kLargest = 512;
    bool good = true;
    for (int size = kIconPixels; good && size <= kLargest; size *= 2) {
        const std::string side = std::to_string(size);
        const path place = folder / (side + "x" + side) / "apps";
        std::error_code error;
        std::filesystem::create_directories(place, error);
        good = WriteBytes(place / "quilt-edit.png",
                          IconPicture(from.icon, from.glyphs, from.palette, size / kIconPixels));
    }
    return good;
}

struct Mode {
    std::string_view option;
    bool (*write)(const Sources& from, const path& folder);
};
constexpr Mode kModes[] = {
    {"--library", WriteLibrary}, {"--pictures", WritePictures}, {"--icons", WriteIcons}};

int Usage() {
    std::fputs(
        "usage: quilt-library --library FOLDER [SOURCES]\n"
        "       quilt-library --pictures FOLDER [SOURCES]\n"
        "       quilt-library --icons FOLDER [SOURCES]\n"
        "\n"
        "Makes default.dat and default.zqlt, or pictures of the glyphs and the palette, or the\n"
        "program's icon in all its sizes, in FOLDER. SOURCES is the folder of palette.txt,\n"
        "icon.txt and glyphs/, library-src if it is not given.\n",
        stderr);
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    StartAllegro();
    StartTrace(nullptr);
    if (argc < 3 || argc > 4) return Usage();
    const std::string_view option = argv[1];
    const auto* mode = std::find_if(std::begin(kModes), std::end(kModes),
                                    [&](const Mode& each) { return each.option == option; });
    if (mode == std::end(kModes)) return Usage();
    path folder = argv[2];
    path sources = argc > 3 ? argv[3] : "library-src";

    Problems problems;
    Sources read{ReadGlyphs(sources / "glyphs", problems),
                 ReadPalette(sources / "palette.txt", problems),
                 ReadIcon(sources / "icon.txt", problems)};
    for (const std::string& problem : problems.List())
        std::fprintf(stderr, "%s\n", problem.c_str());
    if (!problems.Empty()) return 1;

    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return mode->write(read, folder) ? 0 : 1;
}
