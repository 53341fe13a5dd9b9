// Game archives: the font sheet, the world and the video settings in one zip file.
//
// docs/formats.md describes the format. What Dinterface does with files (world_files.cpp)
// stands on what is here; tools that only look at a game use it directly.
#pragma once

#include "engine/game_text.h"
#include "engine/zip_stream.h"

#include <cstdint>
#include <optional>
#include <string>

/// The game that New opens, in the program's folder.
inline constexpr const char* kNewGame = "Library/default.zqlt";

/// What an archive holds, read and checked but not yet part of anything.
struct Game {
    Game() { root.name = kRootName; }

    Bitmap sheet;  ///< null only when the archive has neither a font nor a world
    int sheetFormat = 0;
    Dobject root;  ///< its nodes have tiles but no surfaces
    bool hasText = false;
    std::string textEntry;                  ///< name of the text entry that was read
    unsigned long textTime = 0;             ///< its moment, as archives write it
    std::optional<std::int32_t> videoMode;  ///< absent with the settings entry
    std::optional<std::int32_t> windowed;
};

/// Why a game could not be read: "game.qlt, line 812: the grid of ...".
struct GameFault {
    std::string text;
    int line = 0;  ///< in the text entry, else 0
};

/// Reads all of an archive. `fileName` is the archive's name; one called world.zqlt may have
/// its text in an entry world.qlt, all have it in game.qlt otherwise. False, with the fault,
/// when it cannot be read to its end in the format. `remarks` may be null.
bool ReadGame(ZipReader& archive, const std::string& fileName, const IdSource& ids, Game& game,
              GameFault& fault, TextRemarks* remarks = nullptr);
/// The same from a file.
bool ReadGame(const std::string& path, const IdSource& ids, Game& game, GameFault& fault,
              TextRemarks* remarks = nullptr);

enum class Packing { kUsual, kQuick };

/// The bytes of the archive of a world, expanded nodes as they are when collapsed. Empty, with
/// `why` filled, when it cannot be made or could not be read again. `dosTime` is the moment that
/// its entries tell, 0 for now. Quick packing takes a fifth of the time, and up to a fifth more
/// room.
std::string ComposeGame(BITMAP* sheet, const Dobject& root, std::int32_t videoMode,
                        std::int32_t windowed, std::string& why, unsigned long dosTime = 0,
                        Packing packing = Packing::kUsual);

/// The bytes of the object file of a node, to be saved at that path, whose name its entry has.
/// Otherwise as ComposeGame.
std::string ComposeObject(Dobject& node, const std::string& path, std::string& why);
/// Reads an object file, with all that is below its node. False, with the reason, when it cannot
/// be.
bool ReadObjectFile(const std::string& path, const IdSource& ids, Dobject& node, std::string& why);
