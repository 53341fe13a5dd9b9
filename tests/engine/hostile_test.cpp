// Files that are cut, damaged or made to do harm: each loads or is refused with a reason, and
// none asks for more memory than its contents fill.

#include "engine/compositor.h"
#include "engine/game_archive.h"

#include "tests/support/plain_zip.h"
#include "tests/support/random_world.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

#include <iostream>
#include <sstream>

using testing::HasSubstr;

namespace {

const std::string kHead = "~endvars\n~endimports\n";
const std::string kText =
    kHead +
    "~ob board 1\n0 0 4 3\n0 0 4 3\n-11 1 2 3 0 5 -2 1 1\n~pb\n#bind x\n\n#end\n~pe\n"
    "~ob door 5\n-1 2 2 1\n0 0 2 1\n7 15 0 1 8 15 0 2\n~pb\n~pe\n~oe\n"
    "~ob key 4\n1 1 1 1\n0 0 1 1\n9 14 0 0\n~pb\nx\n~pe\n~oe\n~oe\n"
    "~ob other 2\n0 480 1 1\n0 0 1 1\n3 4 5 1\n~pb\n~pe\n~oe\n";

std::vector<PlainEntry> Entries(const std::string& text) {
    std::string pixels;
    for (int i = 0; i < 128; ++i) pixels += std::to_string(i) + " ";
    return {
        {"font.hdr", "16 8 2\r\n"}, {"font.raw", pixels}, {"game.qlt", text}, {"res.dat", "2 0"}};
}

std::int32_t vNextId = 1;

bool Read(std::string_view bytes, Game& game, GameFault& fault) {
    const auto archive = ZipReader::InMemory(bytes);
    const bool read = ReadGame(
        *archive, "x.zqlt", [] { return vNextId++; }, game, fault);
    EXPECT_NE(read, !fault.text.empty()) << "refused, and only then, with a reason";
    return read;
}

class Hostile : public WorldTest {
protected:
    Hostile() { world->SetViewSize(10, 10); }

    // The text reader's verdict. What it takes is drawn, too.
    bool TakesText(const std::string& text) {
        std::stringbuf in(text);
        Game game;
        game.root.name = kRootName;
        GameTextReader reader(in, [this] { return world->TakeId(); });
        const bool read = reader.ReadWorld(game.root);
        EXPECT_NE(read, !reader.Reason().empty()) << text;
        reports.Clear();  // "~pb Expected" among them
        if (!read || SurfaceBytes(game.root) > 1 << 22) return read;
        GameFault fault;
        EXPECT_TRUE(world->TakeGame(game, fault));
        const Bitmap target = MakeBitmap(80, 80);
        clear_bitmap(target.get());
        world->DrawWorld(target.get(), 0, 0);
        reports.Clear();
        return true;
    }
};

// In a process of its own: reads, tells why not, and ends with 0 refused, 1 taken, or 2 for more
// memory than so many MiB.
[[noreturn]] void ReadWithin(long mebibytes, const std::string& bytes) {
    const auto peak = [] {
        rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss;
    };
    const long before = peak();
    Game game;
    GameFault fault;
    const bool taken = Read(bytes, game, fault);
    std::cerr << fault.text << std::flush;
    _exit((peak() - before) / 1024 > mebibytes ? 2 : taken);
}

}  // namespace

TEST_F(Hostile, EveryPrefixIsRefused) {
    const std::string whole = FileBytes("Library/default.zqlt");
    Game game;
    GameFault fault;
    ASSERT_TRUE(Read(whole, game, fault));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        Game cut;
        GameFault why;
        ASSERT_FALSE(Read(std::string_view(whole).substr(0, size), cut, why)) << size;
    }
    // A file ends otherwise than memory does, so the last of them come from one.
    const TempFolder folder;
    for (std::size_t size = whole.size() - 100; size < whole.size(); ++size) {
        PutFile(folder / "cut.zqlt", whole.substr(0, size));
        ASSERT_FALSE(world->Load(folder / "cut.zqlt")) << size;
    }
    reports.Clear();
}

// The checksums see to it that a damaged archive never passes for another world.
TEST_F(Hostile, EveryByteChangedIsReadAsItWasOrRefused) {
    for (int method : {0, 8}) {
        std::vector<PlainEntry> entries = Entries(kText);
        for (PlainEntry& entry : entries) entry.method = method;
        const std::string zip = MakeZip(entries);
        Game game;
        GameFault fault;
        ASSERT_TRUE(Read(zip, game, fault));
        const std::string expected = Account(game.root);
        int taken = 0;
        for (std::size_t at = 0; at < zip.size(); ++at) {
            for (int change : {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80, 0xff}) {
                std::string changed = zip;
                changed[at] = static_cast<char>(changed[at] ^ change);
                Game other;
                GameFault why;
                const bool read = Read(changed, other, why);
                reports.Clear();  // "~pb Expected" may come before the damage is seen
                if (!read) continue;
                ++taken;
                if (!other.hasText) continue;
                ASSERT_EQ(Account(other.root), expected) << at << " ^ " << change;
            }
        }
        EXPECT_GT(taken, 100) << "dates and attributes do not matter";
    }
}

TEST_F(Hostile, DeepNestingIsRefusedAtItsLimit) {
    const auto nested = [](int depth) {
        std::string text = kHead;
        for (int i = 0; i < depth; ++i) text += "~ob n 0 0 0 1 1 0 0 1 1 1 2 3 0\n~pb\n~pe\n";
        for (int i = 0; i < depth; ++i) text += "~oe\n";
        return text;
    };
    EXPECT_TRUE(TakesText(nested(kMaxNesting)));
    EXPECT_FALSE(TakesText(nested(kMaxNesting + 1)));
    EXPECT_FALSE(TakesText(nested(100'000)));
}

// The bound is 256 MiB beyond what the contents fill, with a little for the reader itself.
TEST_F(Hostile, MemoryIsAskedForAsFarAsTheContentsGo) {
    constexpr long kOwn = 16;
#ifdef QUILT_SANITIZED
    constexpr long kTimes = 4;  // what it lays around small pieces
#else
    constexpr long kTimes = 1;
#endif
    const auto board = [](int w, int h, const std::string& tiles) {
        const std::string size = std::to_string(w) + " " + std::to_string(h);
        return "~ob n 0\n0 0 " + size + "\n0 0 " + size + "\n" + tiles + "\n~pb\n~pe\n~oe\n";
    };
    const std::string largest = board(8191, 4096, "-33550336 1 2 3 0");
    std::string manyNodes = kHead;
    while (manyNodes.size() < 20'000'000) manyNodes += "~ob n 0 0 0 0 0 0 0 0 0\n~pb\n~pe\n~oe\n";
    struct Case {
        const char* what;
        std::string text;
        bool taken;
        long mebibytes;
        const char* reason;
    };
    const std::vector<Case> cases = {
        {"cells that are not there", kHead + board(32767, 1024, "1 2 3 0"), false, 0,
         "1 of 33553408"},
        {"sides beyond all", kHead + board(32767, 32767, "-1 2 3 0"), false, 0, "is no grid's"},
        {"one run over the largest grid", kHead + largest, true, 256, ""},
        {"two of them", kHead + largest + largest, false, 256, "the world has more than"},
        {"a longest run over a small grid", kHead + board(2, 2, "-2147483648 1 2 3 0"), true, 0,
         ""},
        {"a name without end", kHead + "~ob " + std::string(4'000'000, 'n'), false, 4, "65535"},
        {"a line without end",
         kHead + "~ob n 0 0 0 0 0 0 0 0 0\n~pb\n" + std::string(4'000'000, 'n'), false, 4, "9998"},
        {"objects without end", manyNodes, false, 256, "too many objects"},
    };
    for (const Case& c : cases) {
        EXPECT_EXIT(ReadWithin(kTimes * (c.mebibytes + kOwn), MakeZip(Entries(c.text))),
                    testing::ExitedWithCode(c.taken), HasSubstr(c.reason))
            << c.what;
    }
}

TEST_F(Hostile, MessagesComeToAnEnd) {
    std::string text = kHead;
    for (int i = 0; i < 100; ++i) text += "~ob n 0 0 0 0 0 0 0 0 0\nno\n~pe\n~oe\n";
    std::stringbuf in(text);
    Dobject root;
    GameTextReader reader(in, [] { return 1; });
    EXPECT_FALSE(reader.ReadWorld(root));
    EXPECT_LE(reports.Messages().size(), 20u) << "a message box each";
    reports.Clear();
}
