#include "engine/compositor.h"
#include "engine/dinterface.h"
#include "engine/program_folder.h"
#include "engine/replace_file.h"
#include "tool/commands.h"
#include "tool/png_file.h"

#include <algorithm>
#include <climits>
#include <filesystem>

namespace {

// The picture is composed in strips of so many tiles, which bounds what a viewport can ask for.
constexpr int kStripTiles = 8;

Dobject* FindBoard(const std::string& name) {
    for (const auto& board : vWorld->Root().children)
        if (name.empty() || board->name == name) return board.get();
    return nullptr;
}

// Why a board has no picture, or nothing.
std::string WhyNoPicture(const Dobject& board, int scale) {
    const std::string size = std::to_string(board.vieww) + " by " + std::to_string(board.viewh);
    if (board.vieww < 1 || board.viewh < 1)
        return "the viewport of " + Quoted(board.name) + ", " + size + ", is empty";
    const std::int64_t side = std::int64_t{kTileSize} * scale;
    if (board.vieww > kMaxGridSide || board.viewh > kMaxGridSide ||
        board.vieww * side * board.viewh > INT_MAX / side)
        return "the picture of " + Quoted(board.name) + ", " + size + " tiles, is too large";
    return {};
}

std::string Picture(const Dobject& board, int scale) {
    const int w = board.vieww;
    const int h = board.viewh;
    PngFile png(w * kTileSize, h * kTileSize, scale, vWorld->GetFont()->GetPalette());
    vWorld->ShowBoard(board.id);
    const int stripTiles = std::min(kStripTiles, h);
    vWorld->SetViewSize(w, stripTiles);
    const Bitmap strip = MakeBitmap(w * kTileSize, stripTiles * kTileSize);
    for (int top = 0; strip && top < h; top += kStripTiles) {
        clear_bitmap(strip.get());
        vWorld->DrawWorld(strip.get(), 0, -top);
        const int rows = std::min(kStripTiles, h - top) * kTileSize;
        for (int y = 0; y < rows; ++y) png.AddRow(strip->line[y]);
    }
    return strip && vMissingSurfaces == 0 ? png.TakeBytes() : std::string();
}

}  // namespace

int Render(const RenderOptions& options) {
    Game game;
    if (!ReadWhole(options.game, game)) return kBadFile;
    // The default font and the palette lie beside the program.
    std::error_code error;
    const std::string picture = std::filesystem::absolute(options.picture, error).string();
    std::filesystem::current_path(ProgramFolder(), error);
    Dinterface world;
    GameFault fault;
    if (!world.TakeGame(game, fault)) return Complain(options.game, fault.text);
    const Dobject* board = FindBoard(options.board);
    if (!board && options.board.empty()) return Complain(options.game, "there is no board in it");
    if (!board) {
        Complain(options.game, "there is no board " + Quoted(options.board));
        return kWrongCall;
    }
    const std::string noPicture = WhyNoPicture(*board, options.scale);
    if (!noPicture.empty()) return Complain(options.game, noPicture);
    const std::string bytes = Picture(*board, options.scale);
    vClipBuffer.reset();
    vSubClipBuffer.reset();
    if (bytes.empty()) return Complain(options.picture, "there is not enough memory");
    std::string why;
    const bool saved = ReplaceFile(picture, bytes, why);
    if (!why.empty()) Complain(options.picture, why);
    return saved ? kGood : kBadFile;
}
