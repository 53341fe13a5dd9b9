// quilt-pictures: draws the pictures of docs/fades.md with the editor's own tools. To be
// started in the program's folder, where Library/ stands.

#include "editor/commands.h"
#include "editor/tools/fade_fills.h"
#include "editor/view/area_commands.h"
#include "editor/view/brush.h"
#include "editor/view/object_clip.h"
#include "editor/view/quilt_view.h"
#include "editor/view/selection.h"
#include "engine/report.h"
#include "library-src/png.h"
#include "library-src/whole_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

using platform::Point;

namespace {

constexpr int kWhite = 15;
constexpr int kBlack = 255;

struct Look {
    const char* set;
    int fg, bg;
};
// Colours in which a set looks like what it is called.
constexpr Look kLooks[] = {
    {"Shades", 15, 1},      {"Dots", 53, 41},       {"Grass", 84, 75},     {"Stone", 36, 28},
    {"Water", 52, 43},      {"Stars", 14, 184},     {"Bricks", 16, 62},    {"Waves", 54, 45},
    {"Leaves", 84, 216},    {"Hatching", 132, 121}, {"Text-art", 10, 255}, {"Blocks", 98, 105},
    {"Mountains", 228, 74}, {"Hearts", 164, 153},
};

Brush BrushFor(const FadeSet& set) {
    for (const Look& look : kLooks)
        if (set.name == look.set) return {1, look.fg, look.bg, 0};
    return {1, kWhite, 1, 0};
}

// A board that becomes a picture.
class Sheet {
public:
    Sheet(int w, int h) {
        vWorld->Root().EraseAll();
        vWorld->SetViewSize(w, h);
        node = vWorld->Root().Spawn_Back(vWorld->TakeId(), 0);
        node->Create("sheet", w, h);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) node->PutTile(x, y, 0, kBlack, kBlack, 0);
        vWorld->currentBoard = vWorld->currentObject = node->id;
    }

    void Label(const std::string& text, int x, int y) {
        for (std::size_t i = 0; i < text.size(); ++i)
            node->PutTile(x + static_cast<int>(i), y, static_cast<unsigned char>(text[i]), kWhite,
                          kBlack, 0);
    }

    void Fade(int x, int y, int w, int h, const FadeCells& cells, const FadeSet& set) {
        const HandleGuard handle(vWorld->GetCurrentObject());
        vBrush = BrushFor(set);
        SelectRect(handle, {x, y}, {x + w - 1, y + h - 1});
        NormalFade(handle, cells, 0, set.tiles);
    }

    bool Write(const std::string& path, int scale) const {
        const Bitmap drawn = MakeBitmap(node->vSurf->w, node->vSurf->h);
        clear_bitmap(drawn.get());
        vWorld->DrawWorld(drawn.get(), 0, 0);
        Picture picture(drawn->w * scale, drawn->h * scale, 0);
        for (int y = 0; y < picture.height; ++y)
            for (int x = 0; x < picture.width; ++x)
                picture.Put(x, y, drawn->line[y / scale][x / scale]);
        Palette palette;
        for (std::size_t i = 0; i < palette.colors.size(); ++i) {
            const RGB& color = vWorld->GetFont()->GetPalette()[i];
            palette.colors[i] = {color.r, color.g, color.b};
        }
        const bool good = WriteWhole(path, MakePng(picture, palette));
        if (!good) std::fprintf(stderr, "%s: cannot be written\n", path.c_str());
        return good;
    }

private:
    Dobject* node = nullptr;
};

template <typename Record>
const Record& Named(const std::vector<Record>& records, const std::string& name) {
    for (const Record& record : records)
        if (record.name == name) return record;
    return records.front();
}

struct Library {
    std::vector<FadeSet> sets = LoadFadeSets("quilt-pictures");
    std::vector<FadeBlend> blends = LoadFadeBlends("quilt-pictures");
};

// Two pictures a set: straight, and round.
bool DrawSets(const Library& library, const std::string& path) {
    constexpr int kColumns = 2, kSide = 15, kTall = 10, kGap = 2;
    constexpr int kAcross = 2 * kSide + 1 + kGap, kDown = kTall + 3;
    const int rows = (static_cast<int>(library.sets.size()) + kColumns - 1) / kColumns;
    Sheet sheet(kColumns * kAcross + kGap, rows * kDown + 1);
    int n = 0;
    for (const FadeSet& set : library.sets) {
        const int x = kGap + n % kColumns * kAcross;
        const int y = 1 + n / kColumns * kDown;
        sheet.Label(set.name, x, y);
        sheet.Fade(x, y + 1, kSide, kTall, Named(library.blends, "Left to right").cells, set);
        sheet.Fade(x + kSide + 1, y + 1, kSide, kTall,
                   Named(library.blends, "From the middle").cells, set);
        ++n;
    }
    return sheet.Write(path, 2);
}

bool DrawBlends(const Library& library, const std::string& path) {
    constexpr int kColumns = 6, kGap = 2, kLabelled = 18;
    constexpr int kAcross = kLabelled, kDown = kBlendSide + 3;
    const int rows = (static_cast<int>(library.blends.size()) + kColumns - 1) / kColumns;
    Sheet sheet(kColumns * kAcross + kGap, rows * kDown + 1);
    int n = 0;
    for (const FadeBlend& blend : library.blends) {
        const int x = kGap + n % kColumns * kAcross;
        const int y = 1 + n / kColumns * kDown;
        sheet.Label(blend.name, x, y);
        sheet.Fade(x, y + 1, kBlendSide, kBlendSide, blend.cells, library.sets.front());
        ++n;
    }
    return sheet.Write(path, 1);
}

// Answers for the person at the dialogs: what the commands of the board below choose there.
class Painter final : public ViewHost {
public:
    explicit Painter(const Library& from) : library(from) {}

    /// One command of the pop-up menus over a drag from `cursor` to `anchor`.
    void Do(int command, Point cursor, Point anchor, Brush brush, const char* setName = "Shades",
            const char* blendName = "Left to right", int chance = 0) {
        vBrush = brush;
        set = setName;
        blend = blendName;
        random = chance;
        RunAreaCommand(command, cursor, anchor, *this);
    }

    /// A copy with every box of the filter ticked.
    void CopyAll(int command, Point cursor, Point anchor) {
        all = true;
        Do(command, cursor, anchor, {1, 15, 1, 0});
        all = false;
    }

    bool RunAreaDialog(AreaDialog dialog) override {
        const HandleGuard h(vWorld->GetCurrentObject());
        const FadeTiles& tiles = Named(library.sets, set).tiles;
        switch (dialog) {
            case AreaDialog::Fade:
                NormalFade(h, Named(library.blends, blend).cells, random, tiles);
                break;
            case AreaDialog::Distance:
                DistanceFade(h, 35, 70, random, tiles);
                break;
            case AreaDialog::Slime:
                SlimeFade(h, random, tiles);
                break;
            case AreaDialog::Speckle:
                SpeckleFill(h, random);
                break;
            case AreaDialog::Filter:
                if (!all) vBrush.chr = vBrush.bg = vBrush.attrib = -1;
                break;
        }
        return true;
    }
    bool EditBrush() override { return false; }
    void EditName() override {}
    void RedrawAll() override {}
    void RedrawTree() override {}
    void RedrawPropViewer() override {}
    void RedrawBrushPreview() override {}
    void ShowBrushMode() override {}

private:
    const Library& library;
    const char* set = "";
    const char* blend = "";
    int random = 0;
    bool all = false;
};

// The land: a lake, a meadow and two mountains, whose outlines are flooded with their fades.
void DrawLand(Painter& p) {
    p.Do(kCmdFadeDistance, {0, 22}, {63, 27}, {1, 52, 43, 0}, "Water", "", 2);
    p.Do(kCmdFadeNormal, {0, 28}, {63, 39}, {1, 84, 75, 0}, "Grass", "Top to bottom", 3);
    const Brush ridge{219, 35, 255, 1};
    for (const Point top : {Point{14, 8}, Point{33, 12}}) {
        const int rise = 21 - top.y;
        p.Do(kCmdLineFill, top, {top.x - rise, 21}, ridge);
        p.Do(kCmdLineFill, top, {top.x + rise, 21}, ridge);
        const int command = top.x < 20 ? kCmdFloodFadeNormal : kCmdFloodFadeSlime;
        p.Do(command, {top.x, top.y + 2}, top, {1, 33, 27, 1}, "Shades", "Bottom to top", 4);
    }
}

// The sky runs from night to evening, with stars and the moon in it.
void DrawSky(Painter& p) {
    p.Do(kCmdBlendFadeFlood, {0, 0}, {0, 21}, {1, 185, 191, 0});
    for (int y = 0; y < 7; ++y)
        p.Do(kCmdSpeckle, {0, y}, {63, y}, {y % 2 ? 250 : 249, 15, 185 + y * 2 / 7, 0}, "", "", 5);
    p.Do(kCmdCircleFill, {46, 2}, {54, 8}, {219, 252, 255, 0});
    p.Do(kCmdFadeNormal, {47, 3}, {53, 7}, {1, 254, 251, 0}, "Shades", "Corner");
}

// A house with a window that is copied, and someone at the door.
void DrawHouse(Painter& p) {
    p.Do(kCmdFill, {40, 24}, {55, 33}, {193, 16, 59, 1});
    p.Do(kCmdReplaceSpeckle, {40, 24}, {55, 33}, {0, 19, 0, 0}, "", "", 30);
    p.Do(kCmdRectFill, {40, 24}, {55, 33}, {219, 18, 255, 1});
    for (int i = 0; i < 6; ++i)
        p.Do(kCmdLineFill, {38 + i, 23 - i}, {57 - i, 23 - i}, {240, 57, 60, 1});
    p.Do(kCmdRectFadeNormal, {46, 28}, {49, 33}, {1, 124, 120, 1}, "Shades", "Left to right");
    p.Do(kCmdFill, {47, 29}, {48, 33}, {186, 127, 122, 1});
    p.Do(kCmdPasteSprite, {51, 33}, {51, 33}, {2, 15, 1, 0});
    p.Do(kCmdRectFill, {42, 26}, {44, 29}, {219, 126, 255, 1});
    p.Do(kCmdFill, {43, 27}, {43, 28}, {197, 120, 254, 1});
    p.CopyAll(kCmdCopyFill, {42, 26}, {44, 29});
    p.Do(kCmdPasteFill, {51, 26}, {53, 29}, {1, 15, 1, 0});
}

// A tree is painted once, copied with its shape by a flood, and pasted to make a wood.
void DrawWood(Painter& p) {
    p.Do(kCmdFill, {4, 28}, {8, 30}, {5, 84, 72, 1});
    p.Do(kCmdFill, {5, 27}, {7, 31}, {5, 84, 72, 1});
    p.CopyAll(kCmdCopyFlood, {6, 29}, {6, 29});
    p.Do(kCmdFill, {6, 32}, {6, 34}, {179, 123, 120, 1});
    for (const Point at : {Point{14, 30}, Point{22, 28}, Point{29, 31}}) {
        p.Do(kCmdPasteFill, at, {at.x + 4, at.y + 4}, {1, 15, 1, 0});
        p.Do(kCmdFill, {at.x + 2, at.y + 5}, {at.x + 2, at.y + 7}, {179, 123, 120, 1});
    }
}

// A boat becomes an object, which then sails away from where it was made.
void DrawBoats(Painter& p) {
    p.Do(kCmdFill, {9, 25}, {13, 25}, {220, 131, 43, 0});
    p.Do(kCmdFill, {11, 23}, {11, 24}, {16, 15, 43, 0});
    p.Do(kCmdMakeObject, {9, 23}, {13, 25}, {1, 15, 1, 0});
    const HandleGuard boat(vWorld->GetCurrentObject());
    vWorld->MoveTo(boat, 24, 24);
}

// An evening at the lake, with commands of every kind from both menus.
bool DrawBoard(const Library& library, const std::string& path) {
    Sheet sheet(64, 40);
    Painter p(library);
    DrawLand(p);
    DrawSky(p);
    DrawHouse(p);
    DrawWood(p);
    DrawBoats(p);
    return sheet.Write(path, 2);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: quilt-pictures FOLDER\n", stderr);
        return 2;
    }
    install_allegro(SYSTEM_NONE, &errno, nullptr);
    set_color_depth(8);
    StartTrace(nullptr);
    Dinterface world;
    const Library library;
    if (library.sets.empty() || library.blends.empty()) return 1;
    const std::string folder = std::string(argv[1]) + "/";
    const bool good = DrawSets(library, folder + "fade-sets.png") &&
                      DrawBlends(library, folder + "fade-blends.png") &&
                      DrawBoard(library, folder + "areas-board.png");
    return good ? 0 : 1;
}
