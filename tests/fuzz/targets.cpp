#include "tests/fuzz/targets.h"

#include "engine/compositor.h"
#include "engine/dinterface.h"
#include "engine/game_archive.h"
#include "engine/report.h"
#include "tests/support/random_world.h"
#include "tool/compare/salvage.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

namespace {

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
    vWorld->ClickTreeList(0, 15);
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

}  // namespace

void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

void StartTargets() {
    if (vWorld) return;
    StartAllegro();
    StartTrace(nullptr);
    static Dinterface world;
    world.SetViewSize(kTargetW, kTargetH);
}

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
