#include "engine/compositor.h"
#include "engine/dinterface.h"
#include "engine/eight_bytes.h"
#include "engine/program_folder.h"
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

// Hands on each row of pixels of the board as it shows; false without the memory for it.
template <typename Take>
bool ComposeRows(const Dobject& board, Take take) {
    const int stripTiles = std::min(kStripTiles, board.viewh);
    vWorld->SetViewSize(board.vieww, stripTiles);
    const Bitmap strip = MakeBitmap(board.vieww * kTileSize, stripTiles * kTileSize);
    for (int top = 0; strip && top < board.viewh; top += kStripTiles) {
        vWorld->DrawWorld(strip.get(), 0, -top);
        ClearUncovered(strip.get());
        const int rows = std::min(kStripTiles, board.viewh - top) * kTileSize;
        for (int y = 0; y < rows; ++y) take(strip->line[y]);
    }
    return strip && vMissingSurfaces == 0;
}

// Composed twice, since how many bits a pixel takes must be known before the first row: that costs
// less than to pack eight bits where one would do.
std::string Picture(const Dobject& board, int scale) {
    const int w = board.vieww * kTileSize;
    vWorld->ShowBoard(board.id);
    bool has[256] = {};
    const auto note = [&](const unsigned char* row) {
        std::uint64_t last = ~LoadEight(row);
        for (int x = 0; x < w; x += kTileSize) {
            if (std::exchange(last, LoadEight(row + x)) == last) continue;
            for (int i = 0; i < kTileSize; ++i) has[row[x + i]] = true;
        }
    };
    if (!ComposeRows(board, note)) return {};
    ColorSet used;
    for (std::size_t i = 0; i < used.size(); ++i) used[i] = has[i];
    PngFile png(w, board.viewh * kTileSize, scale, vWorld->GetFont()->GetPalette(), used);
    const bool whole = ComposeRows(board, [&](const unsigned char* row) { png.AddRow(row); });
    return whole ? png.TakeBytes() : std::string();
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
    return WriteBytes(picture, bytes) ? kGood : kBadFile;
}
