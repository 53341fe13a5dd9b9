// Object files: one node with all below it in an archive with one entry.

#include "engine/dinterface.h"
#include "engine/file_layer.h"
#include "engine/game_archive.h"
#include "engine/game_limits.h"
#include "engine/game_text.h"
#include "engine/open_archive.h"
#include "engine/replace_file.h"
#include "engine/report.h"

#include <filesystem>

namespace {

std::string EntryOf(const std::string& path) {
    return std::filesystem::path(path).filename().replace_extension(".obj").string();
}

// Everything of the file's node, read and checked; false with the reason.
bool ReadNode(const std::string& path, Dobject& node, std::string& why) {
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
    GameTextReader reader(*in.rdbuf(), [] { return vWorld->TakeId(); });
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
    if (SurfaceBytes(node) <= AvailableMemory()) return true;
    why = "there is not enough memory for it";
    return false;
}

void Replace(Dobject& node, Dobject& fresh) {
    node.Destroy();
    node.name = fresh.name;
    node.script = fresh.script;
    node.viewx = fresh.viewx;
    node.viewy = fresh.viewy;
    node.vieww = fresh.vieww;
    node.viewh = fresh.viewh;
    node.posx = fresh.posx;
    node.posy = fresh.posy;
    node.posz = fresh.posz;
    node.width = fresh.width;
    node.height = fresh.height;
    node.evieww = node.eviewh = 0;
    node.vSurf = std::move(fresh.vSurf);
    node.tiles = std::move(fresh.tiles);
    node.undoTiles.clear();
    node.children = std::move(fresh.children);
    ++vTreeChanges;
    for (const auto& child : node.children) child->parent = &node;
}

}  // namespace

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

bool Dinterface::Export(Handle h, const std::string& path) {
    Dobject* node = Node(h);
    if (!node) return false;
    std::string why;
    const std::string bytes = ComposeObject(*node, path, why);
    if (!why.empty()) {
        Fatal(why.c_str(), path.c_str(), 0);
        return false;
    }
    const bool saved = !bytes.empty() && ReplaceFile(path, bytes, why);
    if (!why.empty()) Trace("%s\n", why.c_str());
    return saved;
}

bool Dinterface::Import(Handle h, const std::string& path) {
    Dobject* node = Editable(h);
    if (!node) return false;
    Trace("Importing .. ( %s )\n", path.c_str());
    Dobject fresh;
    std::string why;
    if (!ReadNode(path, fresh, why)) {
        const std::string text = path + " could not be loaded.\n" + why;
        Fatal(text.c_str(), path.c_str(), 0);
        return false;
    }
    Replace(*node, fresh);
    Trace("Finished Importing .. ( %s )\n", path.c_str());
    return true;
}
