#include "engine/program_folder.h"

#include <filesystem>

std::string ProgramFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}
