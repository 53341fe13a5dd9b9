// The commands that write a world anew: as text, and as an archive.

#include "tool/commands.h"

#include <unistd.h>

#include <iostream>
#include <sstream>

int Cat(const std::string& path, bool rows) {
    Game game;
    bool object = false;
    if (!ReadEither(path, path, false, game, object)) return kBadFile;
    std::ios::sync_with_stdio(false);
    if (isatty(STDOUT_FILENO)) {
        std::ostringstream text;
        WriteWorld(game.root, text, rows);
        std::cout << Printable(text.str(), true);
    } else {
        WriteWorld(game.root, std::cout, rows);
    }
    return std::cout.flush() ? kGood : Complain("standard output", "it cannot be written");
}

int Repack(const std::string& from, const std::string& to) {
    constexpr std::int32_t kUsualSetting = 1;
    Game game;
    if (!ReadWhole(from, game)) return kBadFile;
    std::string why;
    const std::string bytes =
        ComposeGame(game.sheet.get(), game.root, game.videoMode.value_or(kUsualSetting),
                    game.windowed.value_or(kUsualSetting), why, game.textTime);
    return WriteBytes(to, bytes, why) ? kGood : kBadFile;
}
