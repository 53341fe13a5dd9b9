#include "engine/dfont.h"
#include "tool/commands.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iostream>

namespace {

using Json = nlohmann::ordered_json;

constexpr std::int32_t kUsualSetting = 1;

std::int64_t ScriptLines(const std::string& script) {
    const auto feeds = std::count(script.begin(), script.end(), '\n');
    return feeds + (!script.empty() && script.back() != '\n');
}

Json Described(const Dobject& node) {
    Json json = {{"name", node.name},
                 {"posx", node.posx},
                 {"posy", node.posy},
                 {"posz", node.posz},
                 {"width", node.width},
                 {"height", node.height},
                 {"viewx", node.viewx},
                 {"viewy", node.viewy},
                 {"vieww", node.vieww},
                 {"viewh", node.viewh},
                 {"script_lines", ScriptLines(node.script)},
                 {"children", Json::array()}};
    for (const auto& child : node.children) json["children"].push_back(Described(*child));
    return json;
}

void PrintJson(const Game& game) {
    Json json = {{"font",
                  {{"width", game.sheet->w},
                   {"height", game.sheet->h},
                   {"glyphs", CountGlyphs(game.sheet->w, game.sheet->h)}}},
                 {"video_mode", game.videoMode.value_or(kUsualSetting)},
                 {"windowed", game.windowed.value_or(kUsualSetting)},
                 {"boards", Json::array()}};
    for (const auto& board : game.root.children) json["boards"].push_back(Described(*board));
    // A name may hold bytes that are no text; those become replacement characters.
    std::cout << json.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}

void PrintNode(const Dobject& node, std::size_t depth) {
    std::cout << std::string(2 * depth, ' ') << Printable(node.name) << ": at " << node.posx << ", "
              << node.posy << ", z " << node.posz << ", " << node.width << " by " << node.height
              << " tiles, view " << node.viewx << ", " << node.viewy << ", " << node.vieww << " by "
              << node.viewh;
    const std::int64_t lines = ScriptLines(node.script);
    if (lines > 0) std::cout << ", " << lines << (lines == 1 ? " script line" : " script lines");
    const std::size_t children = node.children.size();
    if (children > 0) std::cout << ", " << children << (children == 1 ? " child" : " children");
    std::cout << '\n';
    for (const auto& child : node.children) PrintNode(*child, depth + 1);
}

}  // namespace

int Info(const std::string& path, bool json) {
    Game game;
    if (!ReadWhole(path, game)) return kBadFile;
    if (json) {
        PrintJson(game);
    } else {
        std::cout << "font: " << game.sheet->w << " by " << game.sheet->h << " pixels, "
                  << CountGlyphs(game.sheet->w, game.sheet->h) << " glyphs\n"
                  << "video mode: " << game.videoMode.value_or(kUsualSetting)
                  << (game.windowed.value_or(kUsualSetting) ? ", windowed" : ", full screen")
                  << '\n';
        for (const auto& board : game.root.children) PrintNode(*board, 0);
    }
    return std::cout.flush() ? kGood : Complain("standard output", "it cannot be written");
}
