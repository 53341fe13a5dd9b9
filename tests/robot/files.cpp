#include "tests/robot/run.h"

#include "editor/tools/tile_clip_files.h"
#include "editor/view/tile_clip.h"
#include "engine/dinterface.h"
#include "engine/picture_file.h"
#include "tests/support/random_world.h"

void MakeFiles(Run& run, const std::string& programFolder) {
    const TempFolder& folder = run.folder;
    namespace fs = std::filesystem;
    for (const char* name : {"program", "settings", "folder", "locked"})
        fs::create_directory(folder / name);
    fs::permissions(folder / "settings", fs::perms::owner_all);
    fs::copy(programFolder + "/Library", folder / "program/Library");
    fs::create_symlink("/bin/true", folder / "program/QUILT! Runner");
    fs::current_path(folder / "program");

    std::mt19937 random(static_cast<std::uint32_t>(run.chance.Below(INT32_MAX)));
    Dinterface world;
    PlantRandomWorld(world, random);
    world.Export(HandleGuard(world.AddHandle(world.Root().children.front().get())),
                 folder / "good.zobj");
    world.Save(folder / "good.zqlt");
    world.GetFont()->AddRow();
    PutFile(folder / "font-good.bmp",
            MakeBmp(world.GetFont()->Sheet(), world.GetFont()->GetPalette()));
    constexpr std::uint16_t kNone = 65535;
    const std::pair<const char*, Dtile> clips[] = {{"good.qcf", {1, 2, 3, 1}},
                                                   {"good.chr", {1, kNone, kNone, kNone}},
                                                   {"good.bmp", {kNone, 4, kNone, kNone}},
                                                   {"good.att", {kNone, kNone, kNone, 2}}};
    for (const auto& [name, tile] : clips) {
        vTileClipW = 5;
        vTileClipH = 3;
        vTileClip.assign(15, tile);
        SaveTileClip(folder / name);
    }
    ClearTileClip();
    PutFile(folder / "good.txt", "abc\ndef\n\xdb\xb2\xb1\n");
    for (const std::string& name : folder.Names()) {
        if (name.find("good") == name.npos) continue;
        const std::string bytes = FileBytes(folder / name);
        const std::string kind = fs::path(name).extension();
        PutFile(folder / ("bad-half" + kind), bytes.substr(0, bytes.size() / 2));
        PutFile(folder / ("bad-other" + kind), FileBytes(folder / "good.zobj"));
        PutFile(folder / ("bad-text" + kind), "3 4 5 no file of any kind -99999999999 ~ob");
        PutFile(folder / ("bad-empty" + kind), "");
    }
    fs::permissions(folder / "locked", fs::perms::owner_read | fs::perms::owner_exec);
}
