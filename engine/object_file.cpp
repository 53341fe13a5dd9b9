// Object files: one node with all below it in an archive with one entry.

#include "engine/file_layer.h"
#include "engine/game_archive.h"
#include "engine/game_limits.h"
#include "engine/game_text.h"
#include "engine/open_archive.h"

#include <filesystem>

namespace {

std::string EntryOf(const std::string& path) {
    return std::filesystem::path(path).filename().replace_extension(".obj").string();
}

}  // namespace

bool ReadObjectFile(const std::string& path, const IdSource& ids, Dobject& node, std::string& why) {
    const std::unique_ptr<ZipReader> archive = OpenArchive(path, why);
    if (!archive) return false;
    const std::string entry = EntryOf(path);
    ZipEntryInStream in;
    if (!OpenEntry(in, *archive, entry, kMaxText, why)) {
        why = why == kNoEntry
                  ? "it has no entry " + Quoted(entry) + ", which an object file of this name has"
                  : entry + ": " + why;
        return false;
    }
    GameTextReader reader(*in.rdbuf(), ids);
    const bool read = reader.TakeObjectWord() && reader.ReadInto(node);
    if (!read) {
        const std::string reason = reader.Reason().empty() ? "no object begins" : reader.Reason();
        why = entry + ", line " + std::to_string(reader.Line()) + ": " + reason;
    }
    std::string graver;
    if (!FinishEntry(in, *archive, read, graver)) {
        if (!graver.empty()) why = entry + ": " + graver;
        return false;
    }
    if (HasMemory(SurfaceBytes(node))) return true;
    why = "there is not enough memory for it";
    return false;
}

std::string ComposeObject(Dobject& node, const std::string& path, std::string& why) {
    ZipWriter archive;
    ZipEntryOutStream out;
    out.open(archive, EntryOf(path));
    WriteObject(node, out);
    const bool written = out.good() && out.close();
    const bool closed = archive.Close();
    why = WhyUnreadable(node, 1);
    return written && closed && why.empty() ? archive.TakeBytes() : std::string();
}
