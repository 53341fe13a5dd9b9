#include "engine/replace_file.h"

#include "engine/file_layer.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

constexpr int kMaxLinks = 40;
constexpr int kMaxNames = 100;
constexpr std::size_t kPiece = 1 << 20;
constexpr unsigned kPrivate = 0600;
constexpr unsigned kNewFile = 0666;              // less what the user's mask takes off
constexpr const char* kBeside = ".quilt-save-";  // then the process, "-" and a number
constexpr int kReadsOtherwise = -1;              // beside the errno values

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::string Advice(int error) {
    switch (error) {
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return "Make room on that disk, or save to another one.";
        case EACCES:
        case EPERM:
        case EROFS:
            return "Save under another name, in a folder that you may write to.";
        case ENOENT:
        case ENOTDIR:
        case ENAMETOOLONG:
        case ELOOP:
        case EISDIR:
            return "Save under another name, in a folder that exists.";
        case EIO:
        case kReadsOtherwise:
            return "The disk may be failing: save to another one.";
        default:
            return "Try again, or save under another name.";
    }
}

std::string Describe(const std::string& path, const char* what, int error) {
    std::string text = path + " could not be saved: " + what;
    if (error > 0) text += std::string(": ") + std::strerror(error);
    return text + ".\nThe file on the disk is as it was. " + Advice(error);
}

// One replacement on its way; each step gives 0 or an error.
class Replacement {
public:
    Replacement(std::string_view content, std::string& step) : bytes(content), what(step) {}

    bool Run(const std::string& path, int& error) {
        error = FindTarget(path);
        if (error == 0) error = WriteBeside();
        if (error == 0) error = Compare();
        if (error == 0) error = Rename();
        if (error != 0) CleanUp();
        return error == 0;
    }

    /// Flushes the folder, so that the new name lasts; of no effect on what the path holds.
    int Confirm() {
        Sweep();
        const int synced = vFiles->Sync(folder);
        vFiles->Close(folder);
        // Some file systems cannot flush a folder, and need not.
        return synced == EINVAL || synced == ENOTSUP ? 0 : synced;
    }

private:
    int Doing(const char* step, int error) {
        if (error != 0) what = step;
        return error;
    }

    int FindTarget(const std::string& path) {
        target = path;
        for (int links = 0;; ++links) {
            std::string next;
            const int error = Doing("the link cannot be followed", vFiles->ReadLink(target, next));
            if (error != 0) return error;
            if (next.empty()) break;
            if (links == kMaxLinks) return Doing("the link leads in a circle", ELOOP);
            target = next.front() == '/' ? next : FolderOf(target) + next;
        }
        const int error = Doing("its place cannot be looked at", vFiles->Look(target, old));
        if (error != 0) return error;
        if (old.exists && !old.regular) return Doing("there is something else there", EISDIR);
        if (old.exists && !old.writable) return Doing("the file is write-protected", EACCES);
        return 0;
    }

    int CreateBeside() {
        // Nothing of a private file is ever readable by others; a new one gets its mode at once.
        const unsigned mode = old.exists ? kPrivate : kNewFile;
        int error = 0;
        for (int n = 0; n < kMaxNames; ++n) {
            beside =
                FolderOf(target) + kBeside + std::to_string(getpid()) + "-" + std::to_string(n);
            error = vFiles->Create(beside, mode, file);
            if (error == 0) return 0;
            beside.clear();
            if (error != EEXIST) break;
        }
        return error;
    }

    int WriteBeside() {
        int error = Doing("no file can be made in its folder", CreateBeside());
        if (error == 0 && old.exists)
            error = Doing("the permissions cannot be set", vFiles->SetMode(file, old));
        for (std::size_t at = 0; error == 0 && at < bytes.size(); at += kPiece) {
            const std::string_view piece = bytes.substr(at, kPiece);
            error = Doing("writing failed", vFiles->Write(file, piece.data(), piece.size()));
        }
        if (error == 0) error = Doing("writing failed", vFiles->Sync(file));
        return CloseFile(error);
    }

    int CloseFile(int error) {
        if (file < 0) return error;
        const int closed = vFiles->Close(file);
        file = -1;
        return error != 0 ? error : Doing("writing failed", closed);
    }

    int Compare() {
        int error = Doing("what was written cannot be opened", vFiles->Open(beside, file));
        if (error != 0) return error;
        // No byte more than there may be, but one that shows a file that is too long.
        const std::size_t room = std::min(kPiece, bytes.size() + 1);
        const auto piece = std::make_unique<char[]>(room);
        std::size_t at = 0;
        for (std::size_t got = 1; error == 0 && got > 0; at += got) {
            error = Doing("what was written cannot be read",
                          vFiles->Read(file, piece.get(), room, got));
            const bool same = got <= bytes.size() - at &&
                              std::equal(piece.get(), piece.get() + got,
                                         bytes.begin() + static_cast<std::ptrdiff_t>(at));
            if (error == 0 && !same) error = kReadsOtherwise;
        }
        if (error == 0 && at != bytes.size()) error = kReadsOtherwise;
        if (error == kReadsOtherwise) Doing("what was written reads back otherwise", error);
        return CloseFile(error);
    }

    int Rename() {
        // Opened first: once the file has its name there must be nothing left that can fail.
        const std::string where = FolderOf(target);
        int error = Doing("its folder cannot be opened",
                          vFiles->OpenFolder(where.empty() ? "." : where, folder));
        if (error != 0) return error;
        error = Doing("the old file cannot be replaced", vFiles->Rename(beside, target));
        if (error != 0) vFiles->Close(folder);
        return error;
    }

    // What saves that were killed have left in the folder.
    void Sweep() {
        const std::string where = FolderOf(target);
        for (const std::string& name : vFiles->Names(where.empty() ? "." : where)) {
            if (!name.starts_with(kBeside)) continue;
            const int process = std::atoi(name.c_str() + std::strlen(kBeside));
            if (process > 0 && kill(process, 0) < 0 && errno == ESRCH) vFiles->Remove(where + name);
        }
    }

    void CleanUp() {
        if (file >= 0) vFiles->Close(file);
        if (!beside.empty()) vFiles->Remove(beside);
    }

    std::string_view bytes;
    std::string& what;
    std::string target;
    std::string beside;
    FileLayer::Status old;
    int file = -1;
    int folder = -1;
};

}  // namespace

bool ReplaceFile(const std::string& path, std::string_view bytes, std::string& why) {
    std::string step;
    int error = 0;
    Replacement replacement(bytes, step);
    why.clear();
    if (!replacement.Run(path, error)) {
        why = Describe(path, step.c_str(), error);
        return false;
    }
    error = replacement.Confirm();
    if (error != 0)
        why = path + " was saved, but the disk has not confirmed it: " + std::strerror(error) +
              ".\nSave once more, to another disk if you can.";
    return true;
}
