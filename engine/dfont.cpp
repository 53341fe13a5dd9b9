#include "engine/dfont.h"

#include "engine/dtile.h"
#include "engine/eight_bytes.h"
#include "engine/picture_file.h"
#include "engine/report.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int kDefaultSheetSide = 128;
constexpr const char* kDefaultFile = "Library/default.dat";

struct DatafileCloser {
    void operator()(DATAFILE* file) const { unload_datafile(file); }
};

[[noreturn]] void StopWithoutFont(const char* message, int line) {
    Fatal(message, __FILE__, line);
    std::exit(EXIT_FAILURE);
}

std::uint64_t Colored(std::uint64_t pixels, std::uint64_t under, int fg, int bg) {
    const std::uint64_t set = SetBytes(pixels);
    const auto half = [&](int color) {
        return color < 0 ? under : kEveryByte * static_cast<std::uint8_t>(color);
    };
    return (half(fg) & set) | (half(bg) & ~set);
}

}  // namespace

bool IsSheetSize(std::int64_t w, std::int64_t h) {
    const auto cells = [](std::int64_t pixels) { return (pixels + kTileSize - 1) / kTileSize; };
    return w > 0 && h > 0 && cells(w) <= kMaxGlyphs && cells(h) <= kMaxGlyphs &&
           cells(w) * cells(h) <= kMaxGlyphs;
}

int CountGlyphs(int w, int h) {
    const auto cells = [](int pixels) { return pixels < 2 ? 0 : (pixels + 6) / kTileSize; };
    // A sheet that is narrower than two pixels still has one glyph a row.
    return std::max(cells(w), 1) * cells(h);
}

void Dfont::LoadDefault() {
    std::unique_ptr<DATAFILE, DatafileCloser> file(load_datafile(kDefaultFile));
    if (!file || file.get()[0].type != DAT_BITMAP || file.get()[1].type != DAT_PALETTE)
        StopWithoutFont("Unable to load 'Library/default.dat'", __LINE__);
    auto* picture = static_cast<BITMAP*>(file.get()[0].dat);
    Bitmap sheet = MakeBitmap(kDefaultSheetSide, kDefaultSheetSide);
    if (!sheet || bitmap_color_depth(picture) != 8)
        StopWithoutFont("Unable to load default font from Library/default.dat", __LINE__);
    blit(picture, sheet.get(), 0, 0, 0, 0, kDefaultSheetSide, kDefaultSheetSide);
    std::memcpy(palette, file.get()[1].dat, sizeof palette);
    set_palette(palette);
    TakeSheet(std::move(sheet));
}

BITMAP* Dfont::NewSheet(int w, int h) {
    if (!IsSheetSize(w, h)) return nullptr;
    Bitmap sheet = MakeBitmap(w, h);
    if (!sheet) return nullptr;
    vSheet = std::move(sheet);
    corners.clear();
    glyphCount = 0;
    return vSheet.get();
}

void Dfont::TakeSheet(Bitmap sheet) {
    vSheet = std::move(sheet);
    LayoutGlyphs();
}

void Dfont::LayoutGlyphs() {
    corners.clear();
    for (int x = 0, y = 0; y < vSheet->h - 1 && corners.size() < kMaxGlyphs;) {
        corners.push_back({x, y});
        x += kTileSize;
        if (x >= vSheet->w - 1) {
            x = 0;
            y += kTileSize;
        }
    }
    glyphCount = static_cast<int>(corners.size());
}

bool Dfont::CornerOf(int chr, Corner& corner) const {
    if (chr < 0 || chr >= glyphCount) return false;
    corner = corners[static_cast<std::size_t>(chr)];
    return true;
}

std::uint64_t Dfont::GlyphRow(Corner corner, int row) const {
    std::uint64_t pixels = 0;
    const int y = corner.y + row;
    if (y < vSheet->h) {
        const int count = std::min(kTileSize, vSheet->w - corner.x);
        std::memcpy(&pixels, vSheet->line[y] + corner.x, static_cast<std::size_t>(count));
    }
    return pixels;
}

// The common case. It does not look at what is there: a new surface is touched only once.
void Dfont::DrawOpaque(BITMAP* target, Corner corner, int fg, int bg, int x, int y) const {
    const std::uint64_t clear = kEveryByte * static_cast<std::uint8_t>(bg);
    const std::uint64_t turned = clear ^ (kEveryByte * static_cast<std::uint8_t>(fg));
    unsigned char* const* from = vSheet->line + corner.y;
    unsigned char* const* to = target->line + y;
    for (int row = 0; row < kTileSize; ++row) {
        const std::uint64_t pixels = LoadEight(from[row] + corner.x);
        StoreEight(to[row] + x, clear ^ (turned & SetBytes(pixels)));
    }
}

void Dfont::DrawAt(BITMAP* target, int chr, int fg, int bg, int x, int y) const {
    const bool sprite = fg == kSpriteMark || bg == kSpriteMark;
    const int w = std::min(kTileSize, target->w - x);
    const int h = std::min(kTileSize, target->h - y);
    Corner corner{};
    const bool exists = CornerOf(chr, corner);
    const bool whole = exists && w == kTileSize && h == kTileSize &&
                       corner.x + kTileSize <= vSheet->w && corner.y + kTileSize <= vSheet->h;
    if (whole && fg >= 0 && bg >= 0) return DrawOpaque(target, corner, fg, bg, x, y);
    for (int row = 0; whole && row < kTileSize; ++row) {
        unsigned char* to = target->line[y + row] + x;
        const std::uint64_t pixels = LoadEight(vSheet->line[corner.y + row] + corner.x);
        StoreEight(to, sprite ? pixels : Colored(pixels, LoadEight(to), fg, bg));
    }
    for (int row = 0; !whole && row < h; ++row) {
        unsigned char* to = target->line[y + row] + x;
        const std::uint64_t pixels = exists ? GlyphRow(corner, row) : 0;
        std::uint64_t under = 0;
        std::memcpy(&under, to, static_cast<std::size_t>(w));
        const std::uint64_t drawn = sprite ? pixels : Colored(pixels, under, fg, bg);
        std::memcpy(to, &drawn, static_cast<std::size_t>(w));
    }
}

void Dfont::DrawGlyph(BITMAP* target, int chr, int fg, int bg, int cellX, int cellY) const {
    if (!vSheet || cellX < 0 || cellY < 0) return;
    // Compared this way round because a large cell times 8 would overflow.
    if (cellX > (target->w - 1) / kTileSize || cellY > (target->h - 1) / kTileSize) return;
    DrawAt(target, chr, fg, bg, cellX * kTileSize, cellY * kTileSize);
}

void Dfont::DrawText(BITMAP* target, const char* text, int fg, int bg, int cellX, int cellY) const {
    if (!text) return;
    for (; *text; ++text, ++cellX)
        DrawGlyph(target, static_cast<signed char>(*text), fg, bg, cellX, cellY);
}

int Dfont::FindGlyphAt(int x, int y) const {
    auto found = std::find_if(corners.begin(), corners.end(),
                              [&](const Corner& c) { return c.x == x && c.y == y; });
    return found == corners.end() ? -1 : static_cast<int>(found - corners.begin());
}

int Dfont::NeighbourGlyph(int chr, int direction) const {
    static constexpr Corner kSteps[] = {{0, -8}, {8, 0}, {0, 8}, {-8, 0}};
    if (direction < 0 || direction > 3) return chr;
    Corner corner{};
    if (!CornerOf(chr, corner)) return -1;
    const Corner step = kSteps[direction];
    return FindGlyphAt(corner.x + step.x, corner.y + step.y);
}

int Dfont::GetGlyphPixel(int chr, int x, int y) const {
    Corner corner{};
    if (!CornerOf(chr, corner) || x < 0 || y < 0 || x >= kTileSize || y >= kTileSize) return 0;
    const int pixel = getpixel(vSheet.get(), corner.x + x, corner.y + y);
    return std::max(pixel, 0);  // -1 beyond the sheet
}

void Dfont::PutGlyphPixel(int chr, int x, int y, int value) {
    Corner corner{};
    if (!CornerOf(chr, corner) || x < 0 || y < 0 || x >= kTileSize || y >= kTileSize) return;
    putpixel(vSheet.get(), corner.x + x, corner.y + y, value);
}

void Dfont::ResizeSheet(int h) {
    if (h < kTileSize || !IsSheetSize(vSheet->w, h)) return;
    Bitmap sheet = MakeBitmap(vSheet->w, h);
    if (!sheet) return;
    blit(vSheet.get(), sheet.get(), 0, 0, 0, 0, vSheet->w, std::min(vSheet->h, h));
    TakeSheet(std::move(sheet));
}

void Dfont::AddRow() { ResizeSheet(vSheet->h + kTileSize); }

void Dfont::RemoveRow() { ResizeSheet(vSheet->h - kTileSize); }

void Dfont::ImportBitmap(const std::string& path) {
    std::string bytes;
    std::string why;
    Bitmap picture;
    if (ReadWholeFile(path, bytes, why, "BM")) picture = ReadBmp(bytes, why);
    if (!picture || !IsSheetSize(picture->w, picture->h)) {
        if (why.empty()) why = "a sheet of that size cannot be";
        const std::string text = "Unable to import font\n" + path + ": " + why;
        Fatal(text.c_str(), __FILE__, __LINE__);
        LoadDefault();
        return;
    }
    TakeSheet(std::move(picture));
}
