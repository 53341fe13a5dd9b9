// Runs the seeds of the fuzzers, and everything that ever made one stop, through the targets.

#include "tests/fuzz/targets.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

// Small seeds are also cut anywhere, and altered in each byte; a crash may be slow as it is.
TEST(Replay, SeedsAndPastCrashes) {
    constexpr std::size_t kSmall = 400;
    StartTargets();
    std::string told;
    for (const Target& target : kTargets) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(FUZZ_FOLDER)) {
            if (entry.path().parent_path().filename() != target.name) continue;
            SCOPED_TRACE(entry.path());
            std::string bytes = FileBytes(entry.path());
            const bool altered =
                bytes.size() <= kSmall && entry.path().string().starts_with(FUZZ_FOLDER "/corpus");
            target.run(bytes);
            for (std::size_t at = 0; altered && at < bytes.size(); ++at) {
                target.run(bytes.substr(0, at));
                const char kept = bytes[at];
                bytes[at] = static_cast<char>(kept ^ "\1\x80\xff"[at % 3]);
                target.run(bytes);
                bytes[at] = kept;
            }
        }
        told += target.name + std::to_string(std::exchange(vTold, 0) % 1000) + " ";
    }
    EXPECT_EQ(told, "archive710 text113 repair203 zobj557 qcf917 chr788 txt916 att871 bmp343 ")
        << "look at what a target reads and says now, then write its sum here";
}
