// The targets whose readers take a path: the bytes go through a file.

#include "tests/fuzz/targets.h"

#include "editor/tools/tile_clip_files.h"
#include "engine/dinterface.h"
#include "engine/game_text.h"
#include "tests/support/temp_folder.h"

#include <string>

namespace {

// Writing larger ones shows nothing new and takes long.
constexpr std::size_t kWrittenCells = 1 << 14;

std::string FileOf(const std::uint8_t* data, std::size_t size, const std::string& extension) {
    static const TempFolder folder;
    return PutFile(folder / ("fuzz." + extension),
                   std::string(reinterpret_cast<const char*>(data), size));
}

bool Load(const std::string& path) {
    return LoadTileClip(path, [] { return true; });
}

// The clipboard that a file must leave alone or replace.
void PutOldClip() {
    vTileClip = {{1, 2, 3, 0}, {4, 5, 6, 1}};
    vTileClipW = 1;
    vTileClipH = 2;
}

void FuzzClip(const std::uint8_t* data, std::size_t size, const std::string& extension) {
    const std::string path = FileOf(data, size, extension);
    PutOldClip();
    const std::vector<Dtile> old = vTileClip;
    if (!Load(path)) {
        Require(vTileClip == old && vTileClipW == 1 && vTileClipH == 2,
                "a file that is refused leaves the clipboard as it was");
        return;
    }
    Require(vTileClipW > 0 && vTileClipH > 0 &&
                vTileClip.size() ==
                    static_cast<std::size_t>(vTileClipW) * static_cast<std::size_t>(vTileClipH),
            "the clipboard has a cell for each place");
    if (vTileClip.size() > kWrittenCells) return;
    const std::vector<Dtile> read = vTileClip;
    const ClipKind kind = ClipKindOf(read.front());
    const std::string saved = FileOf(nullptr, 0, SaveFormat(kind).extension);
    Require(SaveTileClip(saved), "what was read can be saved");
    PutOldClip();
    Require(Load(saved), "what was saved can be loaded");
    // A file of whole tiles may hold a clip that is saved as less.
    const bool all = extension != "qcf" || kind == ClipKind::Whole;
    Require(!all || vTileClip == read, "it loads as it was");
}

}  // namespace

void FuzzQcf(const std::uint8_t* data, std::size_t size) { FuzzClip(data, size, "qcf"); }
void FuzzChr(const std::uint8_t* data, std::size_t size) { FuzzClip(data, size, "chr"); }
void FuzzTxt(const std::uint8_t* data, std::size_t size) { FuzzClip(data, size, "txt"); }
void FuzzAtt(const std::uint8_t* data, std::size_t size) { FuzzClip(data, size, "att"); }
void FuzzBmp(const std::uint8_t* data, std::size_t size) { FuzzClip(data, size, "bmp"); }

void FuzzZobj(const std::uint8_t* data, std::size_t size) {
    constexpr std::int64_t kWrittenBytes = 1 << 22;
    const std::string path = FileOf(data, size, "zobj");
    Dobject node;
    node.Create("old", 1, 1);
    const Handle handle = vWorld->AddHandle(&node);
    if (vWorld->Import(handle, path)) {
        if (SurfaceBytes(node) <= kWrittenBytes) {
            Require(vWorld->Export(handle, path), "what was read can be saved");
            const std::string saved = FileBytes(path);
            Require(vWorld->Import(handle, path), "what was saved can be read");
            Require(node.parent == nullptr, "it stays a node of its own");
        }
    } else {
        Require(node.name == "old" && node.width == 1 && node.children.empty(),
                "a file that is refused leaves the node as it was");
    }
    vWorld->ReleaseHandle(handle);
}
