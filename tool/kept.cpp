// The games that the editor has kept: listed, and written out.

#include "engine/kept_games.h"
#include "tool/commands.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

namespace {

std::int64_t NodesBelow(const Dobject& node) {
    std::int64_t count = 0;
    for (const auto& child : node.children) count += 1 + NodesBelow(*child);
    return count;
}

void Print(std::size_t number, const KeptGame& kept) {
    std::cout << number << "  " << kept.moment << "  " << Printable(kept.game) << "  ";
    Game game;
    GameFault fault;
    const IdSource none = [] { return 0; };
    if (ReadGame(kept.path, none, game, fault)) {
        const auto boards = static_cast<std::int64_t>(game.root.children.size());
        std::cout << boards << " boards, " << NodesBelow(game.root) - boards << " objects, ";
    } else {
        std::cout << "damaged, ";
    }
    std::cout << kept.bytes << " bytes\n";
}

}  // namespace

int Kept(const std::string& game, int number, const std::string& to) {
    std::vector<KeptGame> list = ListKept(KeptFolder());
    const std::string stem = std::filesystem::path(game).stem().string();
    if (!game.empty())
        std::erase_if(list, [&](const KeptGame& kept) {
            return kept.game != stem && !kept.game.starts_with(stem + "-");
        });
    if (to.empty()) {
        for (std::size_t i = 0; i < list.size(); ++i) Print(i + 1, list[i]);
        return std::cout.flush() ? kGood : Complain("standard output", "it cannot be written");
    }
    if (number < 1 || static_cast<std::size_t>(number) > list.size())
        return Complain("kept", "there is no game with the number " + std::to_string(number));
    const std::string& path = list[static_cast<std::size_t>(number) - 1].path;
    std::ifstream in(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    const std::string why = bytes.empty() ? path + " cannot be read" : "";
    return WriteBytes(to, bytes, why) ? kGood : kBadFile;
}
