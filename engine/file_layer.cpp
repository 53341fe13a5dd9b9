#include "engine/file_layer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>

namespace {

FileLayer vSystemFiles;

// The call again as long as a signal cuts it short.
template <typename Call>
auto Again(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

int ErrorOf(long result) { return result < 0 ? errno : 0; }

int OpenWith(const std::string& path, int flags, unsigned mode, int& file) {
    file = Again([&] { return open(path.c_str(), flags | O_CLOEXEC, mode); });
    return ErrorOf(file);
}

// The number in a file that holds one, or a very large one.
std::int64_t NumberIn(const char* path) {
    std::ifstream in(path);
    std::int64_t number = 0;
    return in >> number ? number : std::numeric_limits<std::int64_t>::max();
}

// The number behind a key in a file of such lines, or `absent`.
std::int64_t NumberOf(const char* path, const std::string& wanted, std::int64_t absent) {
    std::ifstream in(path);
    std::string key;
    std::int64_t number = 0;
    while (in >> key >> number) {
        if (key == wanted) return number;
        in.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    }
    return absent;
}

}  // namespace

FileLayer* vFiles = &vSystemFiles;

int FileLayer::ReadLink(const std::string& path, std::string& target) {
    if (const int error = Refused("ReadLink")) return error;
    char text[PATH_MAX];
    const ssize_t size = readlink(path.c_str(), text, sizeof text);
    target.clear();
    if (size < 0) return errno == EINVAL || errno == ENOENT ? 0 : errno;
    if (size == static_cast<ssize_t>(sizeof text)) return ENAMETOOLONG;
    target.assign(text, static_cast<std::size_t>(size));
    return 0;
}

int FileLayer::Look(const std::string& path, Status& status) {
    if (const int error = Refused("Look")) return error;
    struct stat found;
    status = Status();
    if (stat(path.c_str(), &found) < 0) return errno == ENOENT ? 0 : errno;
    status.exists = true;
    status.regular = S_ISREG(found.st_mode);
    status.writable = access(path.c_str(), W_OK) == 0;
    status.mode = found.st_mode & 07777;
    status.owner = found.st_uid;
    status.group = found.st_gid;
    return 0;
}

int FileLayer::Create(const std::string& path, unsigned mode, int& file) {
    if (const int error = Refused("Create")) return error;
    return OpenWith(path, O_WRONLY | O_CREAT | O_EXCL, mode, file);
}

int FileLayer::Open(const std::string& path, int& file) {
    if (const int error = Refused("Open")) return error;
    return OpenWith(path, O_RDONLY, 0, file);
}

int FileLayer::OpenFolder(const std::string& path, int& file) {
    if (const int error = Refused("OpenFolder")) return error;
    return OpenWith(path, O_RDONLY | O_DIRECTORY, 0, file);
}

int FileLayer::SetMode(int file, const Status& like) {
    if (const int error = Refused("SetMode")) return error;
    struct stat own;
    if (fstat(file, &own) < 0) return errno;
    if (own.st_uid != like.owner || own.st_gid != like.group) {
        // Only the superuser may give files away; the group alone may still be ours to set.
        if (fchown(file, like.owner, like.group) < 0 &&
            fchown(file, static_cast<uid_t>(-1), like.group) < 0 && errno != EPERM &&
            // A container has no number for the owner, and some file systems no owners at all.
            errno != EINVAL && errno != ENOTSUP)
            return errno;
    }
    return ErrorOf(fchmod(file, like.mode));
}

int FileLayer::Write(int file, const char* data, std::size_t count) {
    if (const int error = Refused("Write")) return error;
    while (count > 0) {
        const ssize_t n = Again([&] { return write(file, data, count); });
        if (n < 0) return errno;
        data += n;
        count -= static_cast<std::size_t>(n);
    }
    return 0;
}

int FileLayer::Read(int file, char* data, std::size_t count, std::size_t& got) {
    if (const int error = Refused("Read")) return error;
    const ssize_t n = Again([&] { return read(file, data, count); });
    got = n < 0 ? 0 : static_cast<std::size_t>(n);
    return ErrorOf(n);
}

int FileLayer::Sync(int file) {
    if (const int error = Refused("Sync")) return error;
    return ErrorOf(Again([&] { return fsync(file); }));
}

// Not tried again: after an interrupted close the number may already be another file's.
int FileLayer::Close(int file) {
    const int error = ErrorOf(close(file));
    return error && error != EINTR ? error : Refused("Close");
}

int FileLayer::Rename(const std::string& from, const std::string& to) {
    if (const int error = Refused("Rename")) return error;
    return ErrorOf(std::rename(from.c_str(), to.c_str()));
}

int FileLayer::Remove(const std::string& path) { return ErrorOf(unlink(path.c_str())); }

std::vector<std::string> FileLayer::Names(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator at(folder, error), end; !error && at != end;
         at.increment(error))
        names.push_back(at->path().filename().string());
    return names;
}

std::int64_t FileLayer::FreeMemory() {
    if (Refused("FreeMemory")) return 0;
    constexpr std::int64_t kUnknown = std::numeric_limits<std::int64_t>::max();
    const std::int64_t kilobytes = NumberOf("/proc/meminfo", "MemAvailable:", kUnknown / 1024);
    std::int64_t available = kilobytes * 1024;
    const std::int64_t limit = NumberIn("/sys/fs/cgroup/memory.max");
    const std::int64_t used = NumberIn("/sys/fs/cgroup/memory.current");
    if (limit != kUnknown && used != kUnknown) {
        // Files kept in memory count as used, and give way.
        constexpr const char* kStatistics = "/sys/fs/cgroup/memory.stat";
        const std::int64_t kept =
            NumberOf(kStatistics, "active_file", 0) + NumberOf(kStatistics, "inactive_file", 0);
        available = std::min(available, limit - used + kept);
    }
    return std::max<std::int64_t>(available, 0);
}
