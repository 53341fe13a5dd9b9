// New, Load, Save, Export and Import.

#include "engine/dinterface.h"
#include "engine/file_layer.h"
#include "engine/game_archive.h"
#include "engine/replace_file.h"
#include "engine/report.h"

namespace {

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

bool Dinterface::New() { return Load(kNewGame); }

bool Dinterface::Load(const std::string& path, bool needsWorld) {
    Trace("Loading .. ( %s )\n", path.c_str());
    Game game;
    GameFault fault;
    bool good = ReadGame(
        path, [this] { return TakeId(); }, game, fault);
    if (good && needsWorld && !game.hasText) {
        fault = {"There is no game in this archive.", 0};
        good = false;
    }
    if (!good || !TakeGame(game, fault)) {
        const std::string text = path + " could not be loaded.\n" + fault.text;
        Fatal(text.c_str(), path.c_str(), fault.line);
        return false;
    }
    Trace("Finished Loading .. ( %s )\n", path.c_str());
    return true;
}

bool Dinterface::TakeGame(Game& game, GameFault& fault) {
    if (!HasMemory(SurfaceBytes(game.root))) {
        fault = {"the world is too large for this machine's memory", 0};
        return false;
    }
    if (game.sheet) vFont->TakeSheet(std::move(game.sheet));
    vMain->EraseAll();
    vMain->children.swap(game.root.children);
    ++vTreeChanges;
    for (const auto& board : vMain->children) board->parent = vMain.get();
    videoMode = game.videoMode.value_or(videoMode);
    windowed = game.windowed.value_or(windowed);
    return true;
}

bool Dinterface::Save(const std::string& path) {
    std::string why;
    CollapseTree(*vMain);
    const std::string bytes = ComposeGame(vFont->Sheet(), *vMain, videoMode, windowed, why);
    const bool saved = !bytes.empty() && ReplaceFile(path, bytes, why);
    if (!why.empty()) Fatal(why.c_str(), path.c_str(), 0);
    return saved;
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
    if (!ReadObjectFile(
            path, [this] { return TakeId(); }, fresh, why)) {
        const std::string text = path + " could not be loaded.\n" + why;
        Fatal(text.c_str(), path.c_str(), 0);
        return false;
    }
    Replace(*node, fresh);
    Trace("Finished Importing .. ( %s )\n", path.c_str());
    return true;
}
