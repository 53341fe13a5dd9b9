#include "library-src/new_game.h"

#include "library-src/dated_archive.h"

#include <sstream>

namespace {

constexpr int kBoardWidth = 80;
constexpr int kBoardHeight = 60;
constexpr int kVideoMode640 = 1;
constexpr int kWindowed = 1;
constexpr int kPixelsAsNumbers = 2;

struct Tile {
    int chr, fg, bg, attrib;
    bool operator==(const Tile&) const = default;
};

constexpr Tile kBorder{176, 16, 32, 1};
constexpr Tile kInside{0, 255, 255, 0};

Tile BoardTile(int x, int y) {
    bool edge = x == 0 || y == 0 || x == kBoardWidth - 1 || y == kBoardHeight - 1;
    return edge ? kBorder : kInside;
}

void PutRun(std::ostream& out, const Tile& tile, int length) {
    if (length > 1) out << -length << ' ';
    out << tile.chr << ' ' << tile.fg << ' ' << tile.bg << ' ' << tile.attrib;
}

// Runs of equal tiles, over the ends of rows, with one blank between two runs.
void PutTiles(std::ostream& out) {
    Tile run = BoardTile(0, 0);
    int length = 0;
    for (int i = 0; i < kBoardWidth * kBoardHeight; ++i) {
        Tile tile = BoardTile(i % kBoardWidth, i / kBoardWidth);
        if (tile != run) {
            PutRun(out, run, length);
            out << ' ';
            run = tile;
            length = 0;
        }
        ++length;
    }
    PutRun(out, run, length);
    out << '\n';
}

std::string World() {
    std::ostringstream out;
    out << "~endvars\n~endimports\n";
    out << "~ob Board1 0\n";
    out << "0 0 " << kBoardWidth << ' ' << kBoardHeight << '\n';
    out << "0 0 " << kBoardWidth << ' ' << kBoardHeight << '\n';
    PutTiles(out);
    out << "~pb\n~pe\n~oe\n";
    return out.str();
}

std::string FontHeader() {
    std::ostringstream out;
    out << kSheetSize << ' ' << kSheetSize << ' ' << kPixelsAsNumbers << '\n';
    return out.str();
}

std::string FontPixels(const Sheet& sheet) {
    std::ostringstream out;
    for (int pixel : sheet) out << pixel << ' ';
    return out.str();
}

std::string VideoSettings() {
    std::ostringstream out;
    out << kVideoMode640 << ' ' << kWindowed;
    return out.str();
}

// A text entry's line ends are a carriage return and a line feed.
std::string TextEntry(const std::string& text) {
    std::string entry;
    for (char c : text) {
        if (c == '\n') entry += '\r';
        entry += c;
    }
    return entry;
}

}  // namespace

bool WriteNewGame(const std::filesystem::path& file, const Sheet& sheet) {
    return WriteDatedArchive(file, {{"font.hdr", TextEntry(FontHeader())},
                                    {"font.raw", FontPixels(sheet)},
                                    {"game.qlt", TextEntry(World())},
                                    {"res.dat", TextEntry(VideoSettings())}});
}
