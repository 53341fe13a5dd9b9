// Runs the seeds of the fuzzers, and everything that ever made one stop, through the targets.

#include "tests/fuzz/targets.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

struct Target {
    const char* name;
    void (*run)(const std::uint8_t* data, std::size_t size);
    bool altered = false;  ///< small seeds are also cut anywhere, and altered in each byte
};

// Names the parameter in the list of tests.
void PrintTo(const Target& target, std::ostream* out) { *out << target.name; }

constexpr std::size_t kSmall = 400;

class Replay : public testing::TestWithParam<Target> {};

}  // namespace

TEST_P(Replay, SeedsAndPastCrashes) {
    StartTargets();
    int seeds = 0;
    for (const std::string kind : {"corpus", "crashes"}) {
        const auto folder = std::filesystem::path(FUZZ_FOLDER) / kind / GetParam().name;
        if (!std::filesystem::exists(folder)) continue;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            SCOPED_TRACE(entry.path());
            const std::string file = FileBytes(entry.path());
            std::vector<std::uint8_t> bytes(file.begin(), file.end());
            GetParam().run(bytes.data(), bytes.size());
            ++seeds;
            if (!GetParam().altered || bytes.size() > kSmall || kind != "corpus") continue;
            for (std::size_t at = 0; at < bytes.size(); ++at) {
                GetParam().run(bytes.data(), at);
                constexpr std::uint8_t kFlips[] = {1, 0x80, 0xff};
                const std::uint8_t kept = bytes[at];
                bytes[at] ^= kFlips[at % 3];
                GetParam().run(bytes.data(), bytes.size());
                bytes[at] = kept;
            }
        }
    }
    EXPECT_GE(seeds, 5) << "the seeds are gone";
}

INSTANTIATE_TEST_SUITE_P(
    Targets, Replay,
    testing::Values(Target{"archive", FuzzArchive}, Target{"text", FuzzText, true},
                    Target{"selector", FuzzSelector}, Target{"qcf", FuzzQcf, true},
                    Target{"chr", FuzzChr, true}, Target{"txt", FuzzTxt, true},
                    Target{"att", FuzzAtt, true}, Target{"bmp", FuzzBmp, true},
                    Target{"zobj", FuzzZobj, true}, Target{"repair", FuzzRepair, true}),
    [](const auto& test) { return std::string(test.param.name); });
