#include "engine/open_archive.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace {

std::string OpenFault(const std::string& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (error || !std::filesystem::exists(status)) return "there is no such file";
    if (!std::filesystem::is_regular_file(status)) return "it is no file";
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::string("it cannot be read: ") + std::strerror(errno);
    if (std::filesystem::file_size(path, error) == 0) return "it is empty";
    return kNoArchive;
}

}  // namespace

std::unique_ptr<ZipReader> OpenArchive(const std::string& path, std::string& why) {
    std::error_code error;
    // minizip would wait for ever on a pipe.
    if (std::filesystem::is_regular_file(path, error)) {
        auto archive = std::make_unique<ZipReader>(path);
        if (archive->IsOpen()) return archive;
    }
    why = OpenFault(path);
    return nullptr;
}
