#include "tool/diff_picture.h"

#include "engine/compositor.h"
#include "engine/dinterface.h"
#include "engine/program_folder.h"
#include "tool/commands.h"
#include "tool/png_file.h"

#include <algorithm>
#include <climits>
#include <filesystem>
#include <new>
#include <set>

namespace {

namespace fs = std::filesystem;

constexpr int kGap = kTileSize;
constexpr int kCaption = 2 * kTileSize + 4;
// Wide enough for the longest word above a column.
constexpr int kLeastColumn = 7 * kTileSize;
constexpr std::int64_t kMostPixels = 1 << 28;

struct Side {
    Dinterface world;

    bool Take(Game& game, std::string& why) {
        vWorld = &world;
        GameFault fault;
        const bool taken = world.TakeGame(game, fault);
        why = fault.text;
        return taken;
    }

    // The whole grid of the board, from now on its viewport; what is drawn is forgotten again.
    Bitmap Draw(Dobject& board) {
        vWorld = &world;
        Bitmap picture = MakeBitmap(board.width * kTileSize, board.height * kTileSize);
        if (!picture) throw std::bad_alloc();
        board.viewx = board.viewy = 0;
        board.vieww = board.width;
        board.viewh = board.height;
        world.ShowBoard(board.id);
        world.SetViewSize(board.width, board.height);
        world.DrawWorld(picture.get(), 0, 0);
        if (vMissingSurfaces > 0) throw std::bad_alloc();
        Forget(board);
        return picture;
    }

private:
    static void Forget(Dobject& node) {
        node.vSurf.reset();
        for (const auto& child : node.children) Forget(*child);
    }
};

bool CanBeDrawn(const Dobject* board) {
    if (!board || board->tiles.empty()) return false;
    constexpr std::size_t kMostCells = kMostPixels / 4 / (kTileSize * kTileSize);
    if (board->tiles.size() <= kMostCells) return true;
    Complain("diff", "the board " + Quoted(board->name) + " is too large to draw");
    return false;
}

bool CellDiffers(BITMAP* a, BITMAP* b, int x, int y) {
    if (!a || !b || (x + 1) * kTileSize > std::min(a->w, b->w) ||
        (y + 1) * kTileSize > std::min(a->h, b->h))
        return true;
    for (int row = y * kTileSize; row < (y + 1) * kTileSize; ++row)
        if (!std::equal(a->line[row] + x * kTileSize, a->line[row] + (x + 1) * kTileSize,
                        b->line[row] + x * kTileSize))
            return true;
    return false;
}

class Drawer {
public:
    Drawer(Side& earlier, Side& later, const GameDiff& with)
        : before(earlier), after(later), diff(with) {
        const RGB* palette = after.world.GetFont()->GetPalette();
        paper = static_cast<unsigned char>(bestfit_color(palette, 8, 8, 8));
        ink = bestfit_color(palette, 63, 63, 63);
        frame = bestfit_color(palette, 63, 0, 63);
        for (const NodeChange& change : diff.nodes)
            for (const Dobject* node : {change.before, change.after})
                for (; node && node->parent; node = node->parent) touched.insert(node);
    }

    const RGB* Palette() const { return after.world.GetFont()->GetPalette(); }
    unsigned char Paper() const { return paper; }

    bool IsTouched(const Dobject* then, const Dobject* now) const {
        return !diff.glyphs.empty() || !diff.sheet.empty() || touched.contains(then) ||
               touched.contains(now);
    }

    // Null when nothing can be seen of a difference.
    Bitmap Draw(Dobject* then, Dobject* now) {
        const Bitmap a = CanBeDrawn(then) ? before.Draw(*then) : nullptr;
        const Bitmap b = CanBeDrawn(now) ? after.Draw(*now) : nullptr;
        if (!a && !b) return nullptr;
        const int w = std::max({a ? a->w : 0, b ? b->w : 0, kLeastColumn});
        const int h = std::max(a ? a->h : 0, b ? b->h : 0);
        const std::vector<Box> boxes = Changed(a.get(), b.get(), now ? *now : *then);
        if (boxes.empty()) return nullptr;
        Bitmap sheet = MakeBitmap(3 * w + 4 * kGap, h + kCaption + kGap);
        if (!sheet) throw std::bad_alloc();
        clear_to_color(sheet.get(), paper);
        const std::string title = Printable(now ? now->name : then->name);
        textout_ex(sheet.get(), font, title.c_str(), kGap, 1, ink, -1);
        const char* words[] = {"before", "after", "changed"};
        for (int column = 0; column < 3; ++column) {
            const int left = kGap + column * (w + kGap);
            BITMAP* picture = column == 0 ? a.get() : b.get();
            textout_ex(sheet.get(), font, words[column], left, kTileSize + 2, ink, -1);
            if (picture) blit(picture, sheet.get(), 0, 0, left, kCaption, picture->w, picture->h);
            if (column < 2) continue;
            for (const Box& box : boxes)
                rect(sheet.get(), left + box.x * kTileSize - 1, kCaption + box.y * kTileSize - 1,
                     left + (box.x + box.w) * kTileSize, kCaption + (box.y + box.h) * kTileSize,
                     frame);
        }
        return sheet;
    }

private:
    // What looks unlike, and the tiles of the board whose change cannot be seen.
    std::vector<Box> Changed(BITMAP* a, BITMAP* b, const Dobject& board) const {
        const BITMAP* any = b ? b : a;
        Boxes boxes;
        for (int y = 0; y < std::max(a ? a->h : 0, b ? b->h : 0) / kTileSize; ++y)
            for (int x = 0; x < std::max(a ? a->w : 0, b ? b->w : 0) / kTileSize; ++x)
                if (!any || CellDiffers(a, b, x, y)) boxes.Add(x, y);
        std::vector<Box> all = boxes.Take();
        if (!all.empty()) return all;
        for (const NodeChange& change : diff.nodes)
            if (change.after == &board) all = change.boxes;
        return all;
    }

    Side& before;
    Side& after;
    const GameDiff& diff;
    unsigned char paper = 0;
    int ink = 0;
    int frame = 0;
    std::set<const Dobject*> touched;
};

bool Save(const std::string& path, const std::vector<Bitmap>& pictures, const Drawer& drawer) {
    int w = 0;
    std::int64_t h = 0;
    for (const Bitmap& picture : pictures) {
        w = std::max(w, picture->w);
        h += picture->h;
    }
    if (h == 0) return true;
    if (w * h > kMostPixels) {
        Complain(path, "the picture is too large; a folder takes a picture a board");
        return false;
    }
    PngFile png(w, static_cast<int>(h), 1, drawer.Palette());
    std::vector<unsigned char> row;
    for (const Bitmap& picture : pictures)
        for (int y = 0; y < picture->h; ++y) {
            row.assign(static_cast<std::size_t>(w), drawer.Paper());
            std::copy_n(picture->line[y], picture->w, row.begin());
            png.AddRow(row.data());
        }
    return WriteBytes(path, png.TakeBytes());
}

// A file of the board's name in a folder: no name that leads out of it, none taken before.
std::string FileFor(const fs::path& folder, const std::string& name, std::set<std::string>& taken) {
    std::string file = name;
    for (char& c : file)
        if (c == '/' || c == '\\' || static_cast<unsigned char>(c) < ' ') c = '_';
    file = file.substr(0, 100);
    if (file.empty() || file[0] == '.') file.insert(0, "_");
    std::string free = file;
    for (int time = 2; !taken.insert(free).second; ++time) free = file + "-" + std::to_string(time);
    return folder / (free + ".png");
}

}  // namespace

bool DrawDiff(Game& before, Game& after, const GameDiff& diff, const std::string& to,
              const std::string& board) {
    std::error_code error;
    const fs::path target = fs::absolute(to, error);
    fs::current_path(ProgramFolder(), error);
    Side sides[2];
    std::string why;
    if (!sides[0].Take(before, why) || !sides[1].Take(after, why)) {
        Complain(to, why);
        return false;
    }
    const bool folder = fs::is_directory(target, error);
    Drawer drawer(sides[0], sides[1], diff);
    std::vector<Bitmap> pictures;
    std::set<std::string> taken;
    bool good = true;
    std::int64_t pixels = 0;
    const auto draw = [&](const Dobject* then, const Dobject* now) {
        const std::string& name = now ? now->name : then->name;
        if (!good || (!board.empty() && name != board) || !drawer.IsTouched(then, now)) return;
        Bitmap picture = drawer.Draw(const_cast<Dobject*>(then), const_cast<Dobject*>(now));
        if (!picture) return;
        pixels += std::int64_t{picture->w} * picture->h;
        pictures.push_back(std::move(picture));
        if (folder) {
            good = Save(FileFor(target, name, taken), pictures, drawer);
            pictures.clear();
        } else if (pixels > kMostPixels) {
            Complain(to, "the picture is too large; a folder takes a picture a board");
            good = false;
        }
    };
    const auto isBoard = [](const Dobject* node) {
        return node && node->parent && !node->parent->parent;
    };
    for (const auto& then : sides[0].world.Root().children)
        if (!isBoard(diff.pairs.After(*then))) draw(then.get(), nullptr);
    for (const auto& now : sides[1].world.Root().children) {
        const Dobject* then = diff.pairs.Before(*now);
        draw(isBoard(then) ? then : nullptr, now.get());
    }
    if (good && !folder) good = Save(target, pictures, drawer);
    vClipBuffer.reset();
    vSubClipBuffer.reset();
    return good;
}
