#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

TempFolder::TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "quilt-test-XXXXXX").string();
    if (mkdtemp(name.data()))
        path = name;
    else
        ADD_FAILURE() << "no temporary folder";
}

TempFolder::~TempFolder() {
    std::error_code error;
    if (!path.empty()) std::filesystem::remove_all(path, error);
}

std::string TempFolder::Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(File(name), std::ios::binary) << bytes;
    return File(name);
}
