// quilt-library: makes the data files of the Library folder, or pictures of them, from the sources
// in this folder.

#include "library-src/datafile.h"
#include "library-src/new_game.h"
#include "library-src/pictures.h"
#include "library-src/whole_file.h"

#include <cstdio>
#include <string_view>

namespace {

using std::filesystem::path;

struct Sources {
    Glyphs glyphs;
    Palette palette;
};

bool Wrote(bool good, const path& file) {
    if (!good) std::fprintf(stderr, "%s: cannot be written\n", file.c_str());
    return good;
}

bool WriteBytes(const path& file, const std::string& bytes) {
    return Wrote(WriteWhole(file, bytes), file);
}

bool WriteLibrary(const Sources& from, const path& folder) {
    path archive = folder / "default.zqlt";
    return WriteBytes(folder / "default.dat", MakeDatafile(from.glyphs.sheet, from.palette)) &&
           Wrote(WriteNewGame(archive, from.glyphs.sheet), archive);
}

bool WritePictures(const Sources& from, const path& folder) {
    return WriteBytes(folder / "library-glyphs.png", SheetPicture(from.glyphs, from.palette)) &&
           WriteBytes(folder / "library-palette.png", PalettePicture(from.glyphs, from.palette));
}

int Usage() {
    std::fputs(
        "usage: quilt-library --library FOLDER [SOURCES]\n"
        "       quilt-library --pictures FOLDER [SOURCES]\n"
        "\n"
        "Makes default.dat and default.zqlt, or pictures of the glyphs and the palette, in "
        "FOLDER.\n"
        "SOURCES is the folder of palette.txt and glyphs/, library-src if it is not given.\n",
        stderr);
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3 || argc > 4) return Usage();
    std::string_view mode = argv[1];
    if (mode != "--library" && mode != "--pictures") return Usage();
    path folder = argv[2];
    path sources = argc > 3 ? argv[3] : "library-src";

    Problems problems;
    Sources read{ReadGlyphs(sources / "glyphs", problems),
                 ReadPalette(sources / "palette.txt", problems)};
    for (const std::string& problem : problems.List())
        std::fprintf(stderr, "%s\n", problem.c_str());
    if (!problems.Empty()) return 1;

    std::error_code error;
    std::filesystem::create_directories(folder, error);
    bool good = mode == "--library" ? WriteLibrary(read, folder) : WritePictures(read, folder);
    return good ? 0 : 1;
}
