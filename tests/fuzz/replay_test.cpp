// Runs the seeds of the fuzzers, and everything that ever made one stop, through the targets.

#include "tests/fuzz/targets.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

namespace {

struct Target {
    const char* name;
    void (*run)(const std::uint8_t* data, std::size_t size);
};

// Names the parameter in the list of tests.
void PrintTo(const Target& target, std::ostream* out) { *out << target.name; }

class Replay : public testing::TestWithParam<Target> {};

std::vector<std::uint8_t> BytesOf(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

TEST_P(Replay, SeedsAndPastCrashes) {
    StartTargets();
    int seeds = 0;
    for (const std::string kind : {"corpus", "crashes"}) {
        const auto folder = std::filesystem::path(FUZZ_FOLDER) / kind / GetParam().name;
        if (!std::filesystem::exists(folder)) continue;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            SCOPED_TRACE(entry.path());
            const std::vector<std::uint8_t> bytes = BytesOf(entry.path());
            GetParam().run(bytes.data(), bytes.size());
            ++seeds;
        }
    }
    EXPECT_GE(seeds, 5) << "the seeds are gone";
}

INSTANTIATE_TEST_SUITE_P(Targets, Replay,
                         testing::Values(Target{"archive", FuzzArchive}, Target{"text", FuzzText},
                                         Target{"selector", FuzzSelector}, Target{"qcf", FuzzQcf},
                                         Target{"chr", FuzzChr}, Target{"txt", FuzzTxt},
                                         Target{"att", FuzzAtt}, Target{"bmp", FuzzBmp},
                                         Target{"zobj", FuzzZobj}),
                         [](const auto& test) { return std::string(test.param.name); });
