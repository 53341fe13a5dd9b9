// Files of the editor read by other programs, and files of other programs read here: netpbm for
// the pictures, Python's zipfile for the archives.

#include "editor/tools/tile_clip_files.h"
#include "editor/view/tile_clip.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <cstdlib>
#include <random>
#include <sstream>

namespace {

constexpr std::uint16_t kNone = 65535;

class OtherPrograms : public WorldTest {
protected:
    ~OtherPrograms() override { ClearTileClip(); }

    /// Runs a command line in the test's folder and gives what it writes.
    std::string Shell(const std::string& line) {
        const std::string full = "cd '" + temp.Path() + "' && { " + line + "; } >out 2>err";
        EXPECT_EQ(std::system(full.c_str()), 0) << line << "\n" << FileBytes(temp / "err");
        return FileBytes(temp / "out");
    }
    bool Load(const std::string& name) {
        return LoadTileClip(temp / name, [] { return true; });
    }
    // A clipboard of 7 by 4 cells that carry that field alone.
    static std::vector<Dtile> Put(std::uint16_t Dtile::*plane, int most) {
        std::mt19937 random(1);
        vTileClip.assign(28, Dtile{kNone, kNone, kNone, kNone});
        for (Dtile& cell : vTileClip)
            cell.*plane = static_cast<std::uint16_t>(random() % static_cast<unsigned>(most));
        vTileClipW = 7;
        vTileClipH = 4;
        return vTileClip;
    }
    // The three numbers of each pixel, as netpbm's plain text has them.
    std::vector<int> Values(const std::string& reader) {
        std::istringstream text(Shell(reader + " | pnmtoplainpnm"));
        std::string head[4];
        for (std::string& word : head) text >> word;
        EXPECT_EQ(head[0] + head[1] + head[2], "P374");
        std::vector<int> values;
        for (int value = 0; text >> value;) values.push_back(value);
        EXPECT_EQ(values.size(), 84u);
        values.resize(84);
        return values;
    }
    void PutValues(const std::vector<int>& values) {
        std::string text = "P3 7 4 255\n";
        for (const int value : values) text += std::to_string(value) + "\n";
        PutFile(temp / "theirs.ppm", text);
    }

    TempFolder temp;
};

}  // namespace

TEST_F(OtherPrograms, Pictures) {
    std::vector<Dtile> before = Put(&Dtile::chr, 65536);
    ASSERT_TRUE(SaveTileClip(temp / "glyphs.chr"));
    std::vector<int> values = Values("pcxtoppm glyphs.chr");
    for (std::size_t i = 0; i < 28; ++i) {
        // Red is the first of the three bytes in memory, blue the sign.
        EXPECT_EQ(values[3 * i] + 256 * values[3 * i + 1], before[i].chr);
        EXPECT_EQ(values[3 * i + 2], before[i].chr > 32767 ? 255 : 0);
    }
    PutValues(values);
    Shell("ppmtopcx -24bit theirs.ppm > theirs.chr");
    ClearTileClip();
    ASSERT_TRUE(Load("theirs.chr")) << reports.Texts();
    EXPECT_EQ(vTileClip, before);

    before = Put(&Dtile::fg, 256);
    ASSERT_TRUE(SaveTileClip(temp / "color.bmp"));
    values = Values("bmptopnm color.bmp");
    const auto part = [](int color, std::size_t i) {
        const RGB& rgb = vWorld->GetFont()->GetPalette()[color];
        return int{i % 3 == 0 ? rgb.r : i % 3 == 1 ? rgb.g : rgb.b};
    };
    for (std::size_t i = 0; i < 84; ++i) {
        EXPECT_EQ(values[i] >> 2, part(before[i / 3].fg, i));
        values[i] = part(before[i / 3].fg, i) * 65 / 16;
    }
    // Of 24 bits a pixel: the nearest of the program's colours. Of few: their own numbers.
    PutValues(values);
    Shell("ppmtobmp -windows -bpp=24 theirs.ppm > theirs.bmp");
    ASSERT_TRUE(Load("theirs.bmp")) << reports.Texts();
    for (std::size_t i = 0; i < 84; ++i)
        EXPECT_EQ(part(vTileClip[i / 3].fg, i), part(before[i / 3].fg, i));
    Shell("printf 'P1 3 2 1 0 1 0 1 1' | ppmtobmp -windows -bpp=1 > one.bmp");
    ASSERT_TRUE(Load("one.bmp")) << reports.Texts();
    EXPECT_EQ(vTileClip[0].fg + vTileClip[1].fg, 1);
    EXPECT_EQ(vTileClip[5].fg, vTileClip[0].fg);
}

TEST_F(OtherPrograms, ArchivesOfWholeTiles) {
    const std::vector<Dtile> before{
        {65, 65534, 1, 2}, {kNone, 7, 0, kNone}, {40000, 1, 2, 0}, {0, 0, 0, 0}};
    vTileClip = before;
    vTileClipW = vTileClipH = 2;
    ASSERT_TRUE(SaveTileClip(temp / "ours.qcf"));
    const std::string python = "python3 -c 'from zipfile import *; ";
    EXPECT_EQ(Shell(python + "z = ZipFile(\"ours.qcf\"); assert z.testzip() is None; "
                             "print([(n, z.read(n)) for n in z.namelist()])'"),
              "[('size.hdr', b'2 2\\r\\n'), ('clip.dat', b'65 -2 1 2 -1 7 0 -1 -25536 1 2 0 0 0 0 "
              "0 ')]\n");
    for (const std::string packing : {"ZIP_STORED", "ZIP_DEFLATED"}) {
        Shell(python + "z = ZipFile(\"theirs.qcf\", \"w\", " + packing +
              "); z.writestr(\"size.hdr\", \"2 2\\n\"); z.writestr(\"clip.dat\", \"65 -2 1 2\\n-1 "
              "7 0 65535 40000 1 2 0 0 0 0 0\"); z.close()'");
        ClearTileClip();
        ASSERT_TRUE(Load("theirs.qcf")) << reports.Texts();
        EXPECT_EQ(vTileClip, before) << packing;
    }
}
