// Runs the seeds of the fuzzers, and everything that ever made one stop, through the targets.

#include "tests/fuzz/targets.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

// Small seeds are also cut anywhere, and altered in each byte.
TEST(Replay, SeedsAndPastCrashes) {
    constexpr std::size_t kSmall = 400;
    StartTargets();
    for (const Target& target : kTargets) {
        int seeds = 0;
        for (const std::string kind : {"corpus/", "crashes/"}) {
            const std::string folder = FUZZ_FOLDER + ("/" + kind) + target.name;
            if (!std::filesystem::exists(folder)) continue;
            for (const auto& entry : std::filesystem::directory_iterator(folder)) {
                SCOPED_TRACE(entry.path());
                const std::string file = FileBytes(entry.path());
                std::vector<std::uint8_t> bytes(file.begin(), file.end());
                target.run(bytes.data(), bytes.size());
                ++seeds;
                if (bytes.size() > kSmall || kind != "corpus/") continue;
                for (std::size_t at = 0; at < bytes.size(); ++at) {
                    target.run(bytes.data(), at);
                    constexpr std::uint8_t kFlips[] = {1, 0x80, 0xff};
                    const std::uint8_t kept = bytes[at];
                    bytes[at] ^= kFlips[at % 3];
                    target.run(bytes.data(), bytes.size());
                    bytes[at] = kept;
                }
            }
        }
        EXPECT_GE(seeds, 5) << "the seeds of " << target.name << " are gone";
    }
}
