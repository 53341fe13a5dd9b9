// Files of the editor read by other programs, and files of other programs read here: netpbm for
// the pictures, Python's zipfile for the archives.

#include "editor/tools/tile_clip_files.h"
#include "engine/picture_file.h"
#include "tests/support/random_world.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <random>
#include <sstream>

namespace {

class OtherPrograms : public WorldTest {
protected:
    ~OtherPrograms() override { ClearTileClip(); }

    /// Runs a command line in the test's folder and gives what it writes.
    std::string Shell(const std::string& line) {
        const std::string out = temp / "out";
        const std::string full = "cd '" + temp.Path() + "' && { " + line + "; } >out 2>err";
        EXPECT_EQ(std::system(full.c_str()), 0) << line << "\n" << FileBytes(temp / "err");
        return FileBytes(out);
    }
    bool Load(const std::string& name) {
        return LoadTileClip(temp / name, [] { return true; });
    }
    static void PutClip(int w, int h, std::vector<Dtile> cells) {
        vTileClip = std::move(cells);
        vTileClipW = w;
        vTileClipH = h;
    }
    const RGB& Color(int index) const { return world->GetFont()->GetPalette()[index]; }
    static int Wide(int six) { return six << 2 | six >> 4; }

    TempFolder temp;
};

constexpr std::uint16_t kNone = 65535;
constexpr int kW = 7;
constexpr int kH = 4;

// A picture in the plain text form that netpbm's programs take and give.
std::string PlainPicture(const std::vector<int>& values) {
    std::ostringstream text;
    text << "P3\n" << kW << ' ' << kH << "\n255\n";
    for (const int value : values) text << value << '\n';
    return text.str();
}

std::vector<int> ValuesOf(const std::string& plain) {
    std::istringstream text(plain);
    std::string magic;
    int w = 0, h = 0, most = 0;
    text >> magic >> w >> h >> most;
    EXPECT_EQ(magic, "P3");
    EXPECT_EQ(w, kW);
    EXPECT_EQ(h, kH);
    std::vector<int> values;
    for (int value = 0; text >> value;) values.push_back(value);
    return values;
}

std::vector<Dtile> Cells(std::uint16_t Dtile::*plane, int most, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<Dtile> cells(kW * kH, Dtile{kNone, kNone, kNone, kNone});
    for (Dtile& cell : cells)
        cell.*plane = static_cast<std::uint16_t>(random() % static_cast<unsigned>(most));
    return cells;
}

}  // namespace

TEST_F(OtherPrograms, GlyphPictures) {
    PutClip(kW, kH, Cells(&Dtile::chr, 65536, 1));
    const std::vector<Dtile> before = vTileClip;
    ASSERT_TRUE(SaveTileClip(temp / "glyphs.chr"));
    const std::vector<int> values = ValuesOf(Shell("pcxtoppm glyphs.chr | pnmtoplainpnm"));
    ASSERT_EQ(values.size(), 3u * kW * kH);
    for (std::size_t i = 0; i < before.size(); ++i) {
        // Red is the first of the three bytes in memory.
        EXPECT_EQ(values[3 * i], before[i].chr & 255);
        EXPECT_EQ(values[3 * i + 1], before[i].chr >> 8);
        EXPECT_EQ(values[3 * i + 2], before[i].chr > 32767 ? 255 : 0) << "the sign";
    }
    PutFile(temp / "theirs.ppm", PlainPicture(values));
    Shell("ppmtopcx -24bit theirs.ppm > theirs.chr");
    ClearTileClip();
    ASSERT_TRUE(Load("theirs.chr")) << reports.Texts();
    EXPECT_EQ(vTileClip, before);
}

TEST_F(OtherPrograms, ColorPictures) {
    PutClip(kW, kH, Cells(&Dtile::fg, 256, 2));
    const std::vector<Dtile> before = vTileClip;
    ASSERT_TRUE(SaveTileClip(temp / "color.bmp"));
    const std::vector<int> values = ValuesOf(Shell("bmptopnm color.bmp | pnmtoplainpnm"));
    ASSERT_EQ(values.size(), 3u * kW * kH);
    for (std::size_t i = 0; i < before.size(); ++i) {
        const RGB& color = Color(before[i].fg);
        EXPECT_EQ(values[3 * i] >> 2, color.r) << before[i].fg;
        EXPECT_EQ(values[3 * i + 1] >> 2, color.g) << before[i].fg;
        EXPECT_EQ(values[3 * i + 2] >> 2, color.b) << before[i].fg;
    }
    // Of 24 bits a pixel: the nearest of the program's colours.
    std::vector<int> wide;
    for (const Dtile& cell : before) {
        const RGB& color = Color(cell.fg);
        for (const int part : {color.r, color.g, color.b}) wide.push_back(Wide(part));
    }
    PutFile(temp / "theirs.ppm", PlainPicture(wide));
    Shell("ppmtobmp -windows -bpp=24 theirs.ppm > theirs.bmp");
    ASSERT_TRUE(Load("theirs.bmp")) << reports.Texts();
    for (std::size_t i = 0; i < before.size(); ++i) {
        const RGB& color = Color(vTileClip[i].fg);
        const RGB& wanted = Color(before[i].fg);
        EXPECT_EQ(color.r, wanted.r) << before[i].fg << " as " << vTileClip[i].fg;
        EXPECT_EQ(color.g, wanted.g) << before[i].fg;
        EXPECT_EQ(color.b, wanted.b) << before[i].fg;
    }
}

TEST_F(OtherPrograms, PicturesOfFewColorsKeepTheirNumbers) {
    Shell("printf 'P1 3 2 1 0 1 0 1 1' | ppmtobmp -windows -bpp=1 > one.bmp");
    ASSERT_TRUE(Load("one.bmp")) << reports.Texts();
    ASSERT_EQ(vTileClip.size(), 6u);
    EXPECT_NE(vTileClip[0].fg, vTileClip[1].fg);
    EXPECT_LE(vTileClip[0].fg + vTileClip[1].fg, 1);
    EXPECT_EQ(vTileClip[5].fg, vTileClip[0].fg);
}

TEST_F(OtherPrograms, ArchivesOfWholeTiles) {
    PutClip(2, 2, {{65, 65534, 1, 2}, {kNone, 7, 0, kNone}, {40000, 1, 2, 0}, {0, 0, 0, 0}});
    const std::vector<Dtile> before = vTileClip;
    ASSERT_TRUE(SaveTileClip(temp / "ours.qcf"));
    const std::string listing = Shell(
        "python3 -c 'import zipfile; z = zipfile.ZipFile(\"ours.qcf\"); assert z.testzip() is "
        "None; print([(n, z.read(n)) for n in z.namelist()])'");
    EXPECT_EQ(listing,
              "[('size.hdr', b'2 2\\r\\n'), ('clip.dat', b'65 -2 1 2 -1 7 0 -1 -25536 1 2 0 0 0 0 "
              "0 ')]\n");
    for (const char* packing : {"ZIP_STORED", "ZIP_DEFLATED"}) {
        Shell(std::string("python3 -c 'import zipfile; z = zipfile.ZipFile(\"theirs.qcf\", \"w\", "
                          "zipfile.") +
              packing +
              "); z.writestr(\"size.hdr\", \"2 2\\n\"); z.writestr(\"clip.dat\", \"65 -2 1 2\\n-1 "
              "7 0 65535 40000 1 2 0 0 0 0 0\"); z.close()'");
        ClearTileClip();
        ASSERT_TRUE(Load("theirs.qcf")) << reports.Texts();
        EXPECT_EQ(vTileClip, before) << packing;
    }
}

TEST_F(OtherPrograms, ObjectFiles) {
    Dobject& board = AddNode(world->Root(), "board", 4, 4);
    Dobject& thing = AddNode(board, "thing", 2, 1, 3);
    thing.script = "#end";
    AddNode(thing, "child", 1, 1);
    const Handle handle = HandleOf(thing);
    ASSERT_TRUE(world->Export(handle, temp / "thing.zobj"));
    const std::string before = Account(thing);
    // Unpacked and packed anew by the other program.
    EXPECT_EQ(Shell("python3 -c 'import zipfile; z = zipfile.ZipFile(\"thing.zobj\"); "
                    "t = z.read(\"thing.obj\"); print(z.namelist(), t[:12]); "
                    "o = zipfile.ZipFile(\"copy.zobj\", \"w\"); o.writestr(\"copy.obj\", t); "
                    "o.close()'"),
              "['thing.obj'] b'~ob thing 3\\r'\n");
    Dobject& other = AddNode(board, "other", 1, 1);
    ASSERT_TRUE(world->Import(HandleOf(other), temp / "copy.zobj")) << reports.Texts();
    EXPECT_EQ(Account(other), before);
}
