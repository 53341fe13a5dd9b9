#include "tests/fuzz/targets.h"

#include "editor/tools/tile_clip_files.h"
#include "engine/compositor.h"
#include "engine/dinterface.h"
#include "engine/game_archive.h"
#include "engine/game_text.h"
#include "engine/report.h"
#include "tests/support/random_world.h"
#include "tests/support/temp_folder.h"
#include "tool/compare/salvage.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

namespace {

// Ends the program when what must always hold does not.
void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

constexpr int kTargetW = 20;
constexpr int kTargetH = 15;
// Drawing larger worlds shows nothing new and takes long.
constexpr std::int64_t kDrawnBytes = 1 << 20;
// So does writing them; a run of a few characters can fill millions of cells.
constexpr std::int64_t kWrittenBytes = 1 << 24;

std::string_view Chars(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

IdSource Ids() {
    return [] { return vWorld->TakeId(); };
}

bool ReadText(const std::string& text, Dobject& root, std::string& reason) {
    std::stringbuf in(text);
    GameTextReader reader(in, Ids());
    TextRemarks remarks;
    reader.SetRemarks(&remarks);
    root.name = kRootName;
    const bool read = reader.ReadWorld(root);
    Require(read || !reader.Reason().empty(), "a text that is refused has a reason");
    reason = reader.Reason();
    return read;
}

void Show(Game& game) {
    if (SurfaceBytes(game.root) > kDrawnBytes) return;
    GameFault fault;
    Require(vWorld->TakeGame(game, fault), "a small world finds its place");
    const Bitmap target = MakeBitmap(kTargetW * kTileSize, kTargetH * kTileSize);
    clear_bitmap(target.get());
    vWorld->DrawWorld(target.get(), 0, 0);
    vWorld->DrawTreeList(0, 0, target.get());
    vWorld->SelectTreeRow(0);
    vWorld->DrawWorld(target.get(), 3, -2);
}

// The nodes that selectors are tried on: a few levels, names that occur twice.
void PlantNodes() {
    Dobject& root = vWorld->Root();
    if (root.children.size() == 2) return;
    root.EraseAll();
    for (const char* name : {"top", "b"}) {
        Dobject* board = root.Spawn(vWorld->TakeId(), 0);
        board->Create(name, 2, 2);
        for (const char* object : {"a", "a", "self"}) {
            Dobject* node = board->Spawn(vWorld->TakeId(), 0);
            node->Create(object, 2, 2);
            node->Spawn(vWorld->TakeId(), 0)->Create("a", 2, 2);
        }
    }
}

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

// As a file of the tile clipboard: loaded, saved in the format of its kind, and loaded again. A
// picture of colours is taken as the foreground.
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

// A game archive: read, composed anew, and read again.
void FuzzArchive(const std::uint8_t* data, std::size_t size) {
    Game game;
    GameFault fault;
    const auto archive = ZipReader::InMemory(Chars(data, size));
    if (!ReadGame(*archive, "world.zqlt", Ids(), game, fault)) {
        Require(!fault.text.empty(), "an archive that is refused has a reason");
        return;
    }
    if (!game.sheet || SurfaceBytes(game.root) > kWrittenBytes) return;
    std::string why;
    const std::string composed = ComposeGame(game.sheet.get(), game.root, 1, 1, why);
    Require(!composed.empty(), "what was read can be saved");
    Game again;
    Require(ReadGame(*ZipReader::InMemory(composed), "x", Ids(), again, fault),
            "what was saved can be read");
    Require(Account(again.root) == Account(game.root, Kept::InFile), "it reads as it was");
    Show(again);
}

// A game's text: read, drawn, written and read again.
void FuzzText(const std::uint8_t* data, std::size_t size) {
    Game game;
    std::string reason;
    if (!ReadText(std::string(Chars(data, size)), game.root, reason)) return;
    if (SurfaceBytes(game.root) > kWrittenBytes) return;
    std::ostringstream written;
    WriteWorld(game.root, written);
    Game again;
    Require(ReadText(written.str(), again.root, reason), "what was written can be read");
    Require(Account(again.root) == Account(game.root, Kept::InFile), "it reads as it was");
    Show(again);
}

// The first byte as the number of a node, the rest as a selector seen from it.
void FuzzSelector(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return;
    PlantNodes();
    const std::string selector(Chars(data + 1, size - 1));
    const int ids = 1 + static_cast<int>(data[0] % 16);
    std::int32_t id = vWorld->Root().children.front()->id + ids - 2;
    const Handle h = vWorld->GetHandleById(kRootHandle, id);
    const int list = vWorld->StartHandleList(h, selector.c_str());
    Require((list < 0) == (h == kNoHandle), "a node and a selector give a list");
    for (int left = vWorld->CountHandles(list); left > 0; --left)
        Require(vWorld->Node(vWorld->NextHandle(list)), "every element is a node");
    Require(list < 0 || vWorld->NextHandle(list) == kNoHandle, "the list ends at its count");
    vWorld->ReleaseHandleList(list);
    vWorld->ReleaseHandle(h);
    for (Handle free = 1; free < kMaxHandles; ++free)
        Require(!vWorld->Node(free), "released handles are free");
}

// A damaged archive: what is saved of it can be composed and read.
void FuzzRepair(const std::uint8_t* data, std::size_t size) {
    Salvage salvage;
    SalvageGame(Chars(data, size), salvage);
    Game& game = salvage.game;
    if (salvage.empty || SurfaceBytes(game.root) > kWrittenBytes) return;
    const Bitmap usual = MakeBitmap(8, 8);
    clear_bitmap(usual.get());
    std::string why;
    const std::string bytes =
        ComposeGame(game.sheet ? game.sheet.get() : usual.get(), game.root, 1, 1, why);
    // Nodes that were read with marks missing can be such as no file holds.
    if (bytes.empty()) return Require(!why.empty(), "what cannot be saved has a reason");
    Game again;
    GameFault fault;
    Require(ReadGame(*ZipReader::InMemory(bytes), "fuzz.zqlt", Ids(), again, fault),
            "what was saved can be read");
}

// An object file "fuzz.zobj": imported, exported and imported again.
void FuzzZobj(const std::uint8_t* data, std::size_t size) {
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

}  // namespace

void StartTargets() {
    if (vWorld) return;
    StartAllegro();
    StartTrace(nullptr);
    static Dinterface world;
    world.SetViewSize(kTargetW, kTargetH);
}

const std::vector<Target> kTargets = {
    {"archive", FuzzArchive},
    {"text", FuzzText},
    {"selector", FuzzSelector},
    {"repair", FuzzRepair},
    {"zobj", FuzzZobj},
    {"qcf", [](auto* data, auto size) { FuzzClip(data, size, "qcf"); }},
    {"chr", [](auto* data, auto size) { FuzzClip(data, size, "chr"); }},
    {"txt", [](auto* data, auto size) { FuzzClip(data, size, "txt"); }},
    {"att", [](auto* data, auto size) { FuzzClip(data, size, "att"); }},
    {"bmp", [](auto* data, auto size) { FuzzClip(data, size, "bmp"); }},
};
