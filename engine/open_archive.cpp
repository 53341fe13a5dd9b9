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

// To the end of the open entry, unless that is far away.
bool Drain(ZipReader& archive) {
    constexpr int kMostBlocks = 1 << 10;
    char block[1 << 14];
    for (int i = 0; i < kMostBlocks; ++i)
        if (archive.Read(block, sizeof block) <= 0) return true;
    return false;
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

bool OpenEntry(ZipEntryInStream& in, ZipReader& archive, const std::string& name,
               std::uint64_t limit, std::string& why, std::ios::openmode mode) {
    in.open(archive, name, mode);
    if (!in) {
        why = archive.Damaged() ? "the entry cannot be unpacked" : kNoEntry;
        return false;
    }
    // No more than the size that is stated is ever unpacked.
    const std::uint64_t size = archive.EntryFacts().size;
    if (size <= limit) return true;
    in.close();
    why = "its " + std::to_string(size) + " bytes are more than it can hold";
    return false;
}

bool FinishEntry(ZipEntryInStream& in, ZipReader& archive, bool good, std::string& why) {
    const bool over = good && !Drain(archive);
    const bool unpacked = !archive.Damaged();
    in.close();
    // What is wrong with the packed data matters more than what it did to the contents.
    if (!unpacked || archive.Damaged())
        why = "the data are damaged";
    else if (over)
        why = "it goes on long behind its end";
    else
        return good;
    return false;
}
