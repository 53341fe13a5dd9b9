// The few operations on files that a save stands on, so that a test can refuse any of them.
//
// Each gives 0 or an errno value. The system's own are the default; this is the one place of
// the engine that calls them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class FileLayer {
public:
    /// What stands at a path, links followed.
    struct Status {
        bool exists = false;
        bool regular = false;
        bool writable = false;  ///< for this user
        unsigned mode = 0;      ///< permission bits
        unsigned owner = 0;
        unsigned group = 0;
    };

    FileLayer() = default;
    FileLayer(const FileLayer&) = delete;
    FileLayer& operator=(const FileLayer&) = delete;
    virtual ~FileLayer() = default;

    /// Asked on each operation that can fail, by its name below; an errno value refuses it.
    virtual int Refused(const char* /*operation*/) { return 0; }

    /// The target of a symbolic link, or an empty text when there is no link at that path.
    int ReadLink(const std::string& path, std::string& target);
    int Look(const std::string& path, Status& status);
    /// A new file for writing; EEXIST when the name is taken.
    int Create(const std::string& path, unsigned mode, int& file);
    int Open(const std::string& path, int& file);
    int OpenFolder(const std::string& path, int& file);
    /// Permissions as told, and owner and group as far as this user may set them.
    int SetMode(int file, const Status& like);
    /// All of it.
    int Write(int file, const char* data, std::size_t count);
    /// Up to `count` bytes; `got` 0 at the end.
    int Read(int file, char* data, std::size_t count, std::size_t& got);
    /// Returns when the disk has it.
    int Sync(int file);
    int Close(int file);
    int Rename(const std::string& from, const std::string& to);
    int Remove(const std::string& path);
    /// What is in a folder, as far as it can be read.
    std::vector<std::string> Names(const std::string& folder);
    /// Bytes of memory that can be had before the machine, or the group of processes that this
    /// one is counted with, runs out; a very large number when that is not known.
    std::int64_t FreeMemory();
};

/// Never null; a test may put its own in place for a while.
extern FileLayer* vFiles;

/// Whether so many bytes can be had, by the layer in place. For a few, nothing is asked.
inline bool HasMemory(std::int64_t bytes) {
    constexpr std::int64_t kFew = 1 << 22;
    return bytes <= kFew || bytes <= vFiles->FreeMemory();
}
