// The clipboards in files, by the dialogs that show them, and those files in other programs.

#include "editor/tools/do_tile_clip.h"
#include "editor/tools/tile_clip_files.h"
#include "tests/support/scripted_platform.h"

using namespace platform;

namespace {

constexpr std::uint16_t kNone = 65535;
constexpr Dtile kNothing{kNone, kNone, kNone, kNone};

struct TileClip : WorldTest {
    ~TileClip() override { ClearTileClip(); }
    static void Put(int w, int h, const std::vector<Dtile>& cells) {
        vTileClip = cells;
        vTileClipW = w;
        vTileClipH = h;
    }
    // "2x1 c65f7 a3": of each cell the fields that it has.
    static std::string Cells() {
        std::string text = std::to_string(vTileClipW) + "x" + std::to_string(vTileClipH);
        for (const Dtile& t : vTileClip) {
            text += " ";
            const std::uint16_t fields[] = {t.chr, t.fg, t.bg, t.attrib};
            for (int i = 0; i < 4; ++i)
                if (fields[i] != kNone) text += "cfba"[i] + std::to_string(Signed(fields[i]));
        }
        return text;
    }

    TempFolder temp;
    ScriptedPlatform script;
};

}  // namespace

// The first cell alone tells the kind of file, and so which fields come back.
TEST_F(TileClip, FilesKeepWhatTheirKindCarries) {
    const struct {
        Dtile first;
        std::string extension, kept;
    } cases[] = {
        {{5, kNone, kNone, kNone}, "chr", "c5 c300  c-25536"},
        {{kNone, 65534, kNone, kNone}, "bmp", "f254 f44 f255 f64"},
        {{kNone, kNone, 0, kNone}, "bmp", "b0 b44 b255 b64"},
        {{kNone, kNone, kNone, 0}, "att", "a0 a300  a-25536"},
        {kNothing, "qcf", " c300f300b300a300  c-25536f-25536b-25536a-25536"},
        {{kNone, 1, 1, kNone}, "qcf", "f1b1 c300f300b300a300  c-25536f-25536b-25536a-25536"}};
    for (const auto& c : cases) {
        Put(2, 2, {c.first, {300, 300, 300, 300}, kNothing, {40000, 40000, 40000, 40000}});
        EXPECT_EQ(SaveFormat(ClipKindOf(c.first)).extension, c.extension);
        const std::string file = temp / ("kind." + c.extension);
        script.ExpectDialog("Tile ClipBoard", [&](ScriptedForm& form) {
            script.ExpectFile("save", file);
            form.Choose(kClipSave);
            std::string bytes = FileBytes(file);
            EXPECT_TRUE(c.extension != "att" || bytes == "2 2\n0 300 \n-1 -25536 \n");
            // A PCX picture may begin elsewhere than at 0, 0.
            for (const auto at : {4u, 6u, 8u, 10u}) bytes[at] += c.extension == "chr" ? 3 : 0;
            PutFile(file, bytes);
            ClearTileClip();
            script.ExpectFile("open", file);
            const auto say = [&](ScriptedForm& f) { f.Click(c.first.fg == kNone ? 1003 : 1002); };
            if (c.extension == "bmp") script.ExpectDialog("Load BMP As", say);
            form.Choose(kClipLoad);
            EXPECT_EQ(form.Shown(kClipPicture).invalidated, 1);
            form.Click(kIdOk);
        });
        DoTileClip().Run();
        EXPECT_EQ(Cells(), "2x2 " + c.kept);
    }
}

TEST_F(TileClip, TheViewerShowsWhatIsDraggedIntoIt) {
    Dobject& node = AddNode(world->Root(), "as the viewer", 60, 50);
    for (int i = 0; i < 3000; ++i) node.PutTile(i % 60, i / 60, i % 256, 1 + i % 7, 1 + i % 9, 0);
    script.ExpectDialog("Tile ClipBoard", [&](ScriptedForm& form) {
        ScriptedWindow& shown = form.Shown(kClipPicture);
        Point scroll;
        for (int step = 0; step < 40; ++step) {
            Put(60, step < 39 ? 50 : 0, node.tiles);
            shown.Paint();
            const Point by{Roll(-30, 30), Roll(-30, 30)};
            if (step < 39) shown.Drag({step, 9}, {step + 8 * by.x, 9 + 8 * by.y});
            scroll = {std::clamp(scroll.x + by.x, shown.size.w / 16 - 60, 0),
                      std::clamp(scroll.y + by.y, shown.size.h / 16 - 50, 0)};
            if (shown.invalidated || step == 39) shown.Paint();
            EXPECT_EQ(shown.description, step < 39 ? "60 by 50 tiles" : "60 by 0 tiles");
            shown.ExpectPicture([&](int x, int y) {
                const int there = getpixel(node.Surface(), x - 8 * scroll.x, y - 8 * scroll.y);
                return step < 39 ? std::max(there, 0) : 0;
            });
        }
        form.Click(kIdOk);
    });
    DoTileClip().Run();
}
