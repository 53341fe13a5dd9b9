// quilt-tool, called by a shell as people call it.
#pragma once

#include "tests/support/test_world.h"

#include <sys/wait.h>

struct ToolTest : WorldTest {
    struct Result {
        int status;
        std::string out, err;
    };
    /// In `folder`, so that paths are relative and far from the program, which is in the path.
    Result Shell(const std::string& command) {
        const std::string line = "cd '" + folder.Path() +
                                 "' && PATH='" QUILT_TOOLS "':$PATH && { " + command + "; } >'" +
                                 out.Path() + "/out' 2>'" + out.Path() + "/err' </dev/null";
        const int status = std::system(line.c_str());
        EXPECT_TRUE(WIFEXITED(status)) << command;
        return {WEXITSTATUS(status), FileBytes(out / "out"), FileBytes(out / "err")};
    }
    Result Run(const std::string& arguments) { return Shell("quilt-tool " + arguments); }

    TempFolder folder;
    TempFolder out;
};
