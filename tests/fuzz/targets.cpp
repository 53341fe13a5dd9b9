#include "tests/fuzz/targets.h"

#include "editor/tools/tile_clip_files.h"
#include "engine/compositor.h"
#include "engine/dinterface.h"
#include "engine/game_archive.h"
#include "engine/report.h"
#include "tests/support/plain_zip.h"
#include "tests/support/random_world.h"
#include "tests/support/test_world.h"
#include "tool/compare/salvage.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// Ends the program when what must always hold does not.
void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

void Tell(std::string_view text) { vTold += SumOf(text); }

constexpr int kTargetW = 20;
constexpr int kTargetH = 15;
// Writing and drawing larger worlds shows nothing new and takes long, and a run of a few
// characters can fill millions of cells. In bytes of surfaces.
constexpr std::int64_t kLargestWritten = 1 << 24, kLargestDrawn = 1 << 20;

std::string FileOf(std::string_view bytes, const std::string& extension) {
    static const TempFolder folder;
    return PutFile(folder / ("fuzz." + extension), std::string(bytes));
}

bool Read(std::string_view bytes, Game& game) {
    GameFault fault;
    TextRemarks all;
    const IdSource ids = [] { return vWorld->TakeId(); };
    const bool read = ReadGame(*ZipReader::InMemory(bytes), "world.zqlt", ids, game, fault, &all);
    Tell(fault.text);
    for (const auto& remark : all.remarks) Tell(std::to_string(remark.line) + remark.text);
    Require(read || !fault.text.empty(), "an archive that is refused has a reason");
    return read;
}

// Composed anew, read again and shown.
void Repeat(Game& game, bool whole) {
    if (SurfaceBytes(game.root) > kLargestWritten) return;
    if (!game.sheet) game.sheet = MakeBitmap(kTileSize, kTileSize);
    std::string why;
    const std::string composed = ComposeGame(game.sheet.get(), game.root, 1, 1, why);
    // Nodes that were read with marks missing can be such as no file holds.
    Require(!composed.empty() || (!whole && !why.empty()), "what was read can be saved");
    if (composed.empty()) return;
    Game again;
    GameFault fault;
    Require(Read(composed, again), "what was saved can be read");
    const std::string account = Account(game.root, Kept::InFile);
    Tell(account);
    Require(Account(again.root) == account, "it reads as it was");
    if (SurfaceBytes(game.root) > kLargestDrawn) return;
    Require(vWorld->TakeGame(again, fault), "a small world finds its place");
    const Bitmap target = MakeBitmap(kTargetW * kTileSize, kTargetH * kTileSize);
    vWorld->DrawWorld(target.get(), 0, 0);
    vWorld->DrawTreeList(0, 0, target.get());
    vWorld->SelectTreeRow(0);
    vWorld->DrawWorld(target.get(), 3, -2);
    Tell(Pixels(target.get()));
}

void FuzzArchive(std::string_view bytes) {
    Game game;
    if (Read(bytes, game)) Repeat(game, true);
}

// A damaged archive: what is saved of it can be composed and read.
void FuzzRepair(std::string_view bytes) {
    Salvage salvage;
    SalvageGame(bytes, salvage);
    for (const std::string& what : salvage.missing) Tell(what);
    if (!salvage.empty) Repeat(salvage.game, false);
}

// As a file of the tile clipboard: loaded, saved in the format of its kind, and loaded again. A
// picture of colours is taken as the foreground.
void FuzzClip(std::string_view bytes, const std::string& extension) {
    const std::vector<Dtile> old{{1, 2, 3, 0}, {4, 5, 6, 1}};
    const auto load = [&](const std::string& path) {
        vTileClip = old;
        vTileClipW = 1;
        vTileClipH = 2;
        const bool loaded = LoadTileClip(path, [] { return true; });
        const std::int64_t cells = std::int64_t{vTileClipW} * vTileClipH;
        Require(cells > 0 && cells == std::ssize(vTileClip), "there is a cell for each place");
        return loaded;
    };
    if (!load(FileOf(bytes, extension)))
        return Require(vTileClip == old && vTileClipW == 1, "what is refused changes nothing");
    if (vTileClip.size() > kLargestDrawn / 64) return;
    const std::vector<Dtile> read = vTileClip;
    Tell({reinterpret_cast<const char*>(read.data()), read.size() * sizeof read[0]});
    const ClipKind kind = ClipKindOf(read.front());
    const std::string saved = FileOf({}, SaveFormat(kind).extension);
    Require(SaveTileClip(saved), "what was read can be saved");
    Require(load(saved), "what was saved can be loaded");
    // A file of whole tiles may hold a clip that is saved as less.
    const bool all = extension != "qcf" || kind == ClipKind::Whole;
    Require(!all || vTileClip == read, "it loads as it was");
}

// An object file "fuzz.zobj": imported, exported and imported again.
void FuzzZobj(std::string_view bytes) {
    const std::string path = FileOf(bytes, "zobj");
    Dobject holder;
    Dobject& node = *holder.Spawn(vWorld->TakeId(), 0);
    node.Create("old", 1, 1);
    const HandleGuard handle(vWorld->AddHandle(&node));
    if (!vWorld->Import(handle, path))
        return Require(node.name == "old" && node.width == 1 && node.children.empty(),
                       "it was left alone");
    if (SurfaceBytes(node) > kLargestWritten) return;
    const std::string read = Account(holder, Kept::InFile);
    Tell(read);
    Require(vWorld->Export(handle, path), "what was read can be saved");
    Require(vWorld->Import(handle, path), "what was saved can be read");
    Require(Account(holder) == read && node.parent == &holder, "it reads as it was");
}

}  // namespace

void StartTargets() {
    if (vWorld) return;
    StartAllegro();
    StartTrace(nullptr);
    // Without the path, which is another one each time.
    vMessageHook = [](const char* text, const char*) {
        const char* name = std::strstr(text, "fuzz.");
        Tell(name ? name : text);
    };
    static Dinterface world;
    world.SetViewSize(kTargetW, kTargetH);
}

const std::vector<Target> kTargets = {
    {"archive", FuzzArchive},
    {"text", [](auto bytes) { FuzzArchive(MakeZip(GameEntries(std::string(bytes)))); }},
    {"repair", FuzzRepair},
    {"zobj", FuzzZobj},
    {"qcf", [](auto bytes) { FuzzClip(bytes, "qcf"); }},
    {"chr", [](auto bytes) { FuzzClip(bytes, "chr"); }},
    {"txt", [](auto bytes) { FuzzClip(bytes, "txt"); }},
    {"att", [](auto bytes) { FuzzClip(bytes, "att"); }},
    {"bmp", [](auto bytes) { FuzzClip(bytes, "bmp"); }},
};
