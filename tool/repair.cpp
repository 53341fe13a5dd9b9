#include "tool/commands.h"
#include "tool/compare/salvage.h"

#include <filesystem>
#include <iostream>
#include <new>

int Repair(const std::string& broken, const std::string& out) {
    std::error_code error;
    if (std::filesystem::equivalent(broken, out, error)) {
        Complain(out, "it is the damaged file itself, which is never written over");
        return kWrongCall;
    }
    std::string bytes;
    if (!ReadBytes(broken, bytes)) return kBadFile;
    Salvage salvage;
    try {
        SalvageGame(bytes, salvage);
    } catch (const std::bad_alloc&) {
        return Complain(broken, "there is not enough memory");
    }
    if (salvage.empty) return Complain(broken, "nothing of a game is left in it");
    if (salvage.object && salvage.game.root.children.empty())
        return Complain(broken, "nothing of its object is left");
    if (!salvage.object && !salvage.game.sheet) salvage.game.sheet = UsualSheet();
    if (!salvage.object && !salvage.game.sheet) return kBadFile;
    if (!WriteEither(out, salvage.game, salvage.object)) return kBadFile;
    for (const std::string& what : salvage.missing)
        std::cout << Printable(broken) << ": missing: " << Printable(what) << '\n';
    if (!std::cout.flush()) return Complain("standard output", "it cannot be written");
    return salvage.missing.empty() ? kGood : kBadFile;
}
