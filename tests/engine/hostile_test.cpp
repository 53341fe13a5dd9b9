// Files that are cut, damaged or made to do harm: each loads or is refused with a reason, and
// none asks for more memory than its contents fill.

#include "engine/game_archive.h"

#include "tests/support/plain_zip.h"
#include "tests/support/random_world.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

#include <iostream>

using testing::HasSubstr;
using Hostile = WorldTest;

namespace {

const std::string kHead = "~endvars\n~endimports\n";
const std::string kText =
    kHead +
    "~ob board 1\n0 0 4 3\n0 0 4 3\n-11 1 2 3 0 5 -2 1 1\n~pb\n#bind x\n\n#end\n~pe\n"
    "~ob door 5\n-1 2 2 1\n0 0 2 1\n7 15 0 1 8 15 0 2\n~pb\n~pe\n~oe\n~oe\n";

bool Read(std::string_view bytes, Game& game, GameFault& fault) {
    std::int32_t id = 1;
    const bool read = ReadGame(
        *ZipReader::InMemory(bytes), "x.zqlt", [&] { return id++; }, game, fault);
    EXPECT_NE(read, !fault.text.empty()) << "refused, and only then, with a reason";
    return read;
}

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

// The checksums see to it that a damaged archive never passes for another world.
TEST_F(Hostile, WhatIsCutIsRefusedAndWhatIsAlteredReadsAsItWasOrNot) {
    for (int method : {0, 8}) {
        std::vector<PlainEntry> entries = GameEntries(kText);
        for (PlainEntry& entry : entries) entry.method = method;
        const std::string zip = MakeZip(entries);
        Game game;
        GameFault fault;
        ASSERT_TRUE(Read(zip, game, fault));
        const std::string expected = Account(game.root);
        int taken = 0;
        for (std::size_t at = 0; at < zip.size(); ++at) {
            Game cut;
            GameFault why;
            ASSERT_FALSE(Read(std::string_view(zip).substr(0, at), cut, why)) << at;
            for (int change : {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80, 0xff}) {
                std::string changed = zip;
                changed[at] = static_cast<char>(changed[at] ^ change);
                Game other;
                GameFault none;
                if (!Read(changed, other, none)) continue;
                ++taken;
                if (!other.hasText) continue;
                ASSERT_EQ(Account(other.root), expected) << at << " ^ " << change;
            }
        }
        EXPECT_GT(taken, 100) << "dates and attributes do not matter";
        // A file ends otherwise than memory does.
        const TempFolder folder;
        for (std::size_t left = 1; left < 100; ++left)
            ASSERT_FALSE(
                world->Load(PutFile(folder / "cut.zqlt", zip.substr(0, zip.size() - left))));
        reports.Clear();  // "~pb Expected" may come before the damage is seen
    }
}

// The bound is 256 MiB beyond what the contents fill, with a little for the reader itself.
TEST_F(Hostile, MemoryAndMessagesComeToAnEnd) {
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
    const std::string start = "~ob n 0 0 0 0 0 0 0 0 0\n";
    std::string nodes, nested, odd;
    while (nodes.size() < 20'000'000) nodes += start + "~pb\n~pe\n~oe\n";
    while (nested.size() < 4'000'000) nested += start + "~pb\n~pe\n";
    const struct {
        std::string text;
        bool taken;
        long mebibytes;
        const char* reason;
    } cases[] = {
        {board(32767, 1024, "1 2 3 0"), false, 0, "1 of 33553408"},
        {board(32767, 32767, "-1 2 3 0"), false, 0, "is no grid's"},
        {largest, true, 256, ""},
        {largest + largest, false, 256, "the world has more than"},
        {board(2, 2, "-2147483648 1 2 3 0"), true, 0, ""},
        {"~ob " + std::string(4'000'000, 'n'), false, 4, "65535"},
        {start + "~pb\n" + std::string(4'000'000, 'n'), false, 4, "9998"},
        {nodes, false, 256, "too many objects"},
        {nested, false, 4, "nested more than 1000 deep"},
    };
    for (const auto& c : cases)
        EXPECT_EXIT(ReadWithin(kTimes * (c.mebibytes + kOwn), MakeZip(GameEntries(kHead + c.text))),
                    testing::ExitedWithCode(c.taken), HasSubstr(c.reason));
    for (int i = 0; i < 100; ++i) odd += start + "no\n~pe\n~oe\n";
    Game game;
    GameFault fault;
    EXPECT_FALSE(Read(MakeZip(GameEntries(kHead + odd)), game, fault));
    EXPECT_LE(reports.Messages().size(), 20u) << "a message box each";
    reports.Clear();
}
