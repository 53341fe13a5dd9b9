#include "engine/game_text.h"

#include "engine/eight_bytes.h"
#include "engine/report.h"

#include <algorithm>
#include <bit>
#include <new>
#include <stdexcept>

namespace {

using Status = TextScanner::Status;

// A grid up to this size is given its memory at once, a larger one as its cells arrive.
constexpr std::int64_t kBelievedCells = 1 << 20;
// A reader with a message box for each of thousands of objects would never come to an end.
constexpr int kMaxMissingStarts = 20;
constexpr std::size_t kShownLine = 200;
constexpr std::size_t kShownName = 60;

bool StartsWith(const std::string& line, const char* start) { return line.rfind(start, 0) == 0; }

std::uint16_t StoredField(std::int32_t field) {
    // What stays as it is in a fresh cell is 0.
    return field == kKeepField ? std::uint16_t{0} : static_cast<std::uint16_t>(field);
}

constexpr std::size_t kFields = 4;

// The numbers of a record: the four fields of its cell, behind the length of a run below 0.
std::size_t Need(std::int32_t first) { return first < 0 ? kFields + 1 : kFields; }

// False when a field does not fit into 16 bits, with or without a sign.
bool CellOf(const std::int32_t* fields, Dtile& tile) {
    bool beyond = false;
    for (std::size_t i = 0; i < kFields; ++i)
        beyond |= static_cast<std::uint32_t>(fields[i] - INT16_MIN) > UINT16_MAX - INT16_MIN;
    tile = {StoredField(fields[0]), StoredField(fields[1]), StoredField(fields[2]),
            StoredField(fields[3])};
    return !beyond;
}

}  // namespace

std::string Quoted(const std::string& name) {
    if (name.size() <= kShownName) return "'" + name + "'";
    return "'" + name.substr(0, kShownName) + "...'";
}

// The order that Spawn and Spawn_Back keep, made once for all siblings instead of by a search
// for each.
void SortByZ(Dobject& node) {
    const bool ascending = node.HoldsBoards();
    const auto before = [ascending](const auto& a, const auto& b) {
        return ascending ? a->posz < b->posz : a->posz > b->posz;
    };
    // As the writer left them.
    if (std::is_sorted(node.children.begin(), node.children.end(), before)) return;
    std::stable_sort(node.children.begin(), node.children.end(), before);
    ++vTreeChanges;
}

bool GameTextReader::Fail(const std::string& why) {
    reason = scanner.IsFilled() ? "millions of its characters say nothing" : why;
    faultLine = scanner.LineNumber();
    return false;
}

bool GameTextReader::ReadNumber(const Dobject& node, const char* what, std::int32_t& number) {
    const Status status = scanner.Number(number);
    if (status == Status::kGood) [[likely]]
        return true;
    const std::string of = std::string(what) + " of " + Quoted(node.name);
    switch (status) {
        case Status::kTooLarge:
            return Fail(of + " is beyond 32 bits");
        case Status::kEnd:
            return Fail("the text ends before " + of);
        default:
            return Fail(of + " is no number");
    }
}

bool GameTextReader::ReadWord(const std::string& where) {
    switch (scanner.Word(word)) {
        case Status::kGood:
            return true;
        case Status::kTooLong:
            return Fail(Quoted(word) + " has more than " + std::to_string(TextScanner::kMaxWord) +
                        " characters");
        default:
            return Fail("the text ends " + where);
    }
}

// A packed file can hold a thousand times its size.
bool GameTextReader::Hold(std::size_t bytes) {
    worldText += static_cast<std::int64_t>(bytes);
    return worldText <= kMaxWorldText || Fail("there are too many objects or scripts");
}

void GameTextReader::Remark(int at, const std::string& text) {
    if (remarks) remarks->remarks.push_back({at, text});
}

// --- the head of a block -----------------------------------------------------------------------

bool GameTextReader::ReadHead(Dobject& node, const Dobject* spawnedBy) {
    if (!ReadWord("before the name of an object") || !Hold(word.size() + kNodeBytes)) return false;
    node.name = word;
    if (!ReadNumber(node, "the z", node.posz)) return false;
    if (spawnedBy)
        Trace(spawnedBy->HoldsBoards() ? "%s->Spawn_Back(%i)\n" : "%s->Spawn(%i)\n",
              spawnedBy->name.c_str(), node.posz);
    const bool read = ReadNumber(node, "the x position", node.posx) &&
                      ReadNumber(node, "the y position", node.posy) &&
                      ReadNumber(node, "the width", node.width) &&
                      ReadNumber(node, "the height", node.height) &&
                      ReadNumber(node, "the view's x", node.viewx) &&
                      ReadNumber(node, "the view's y", node.viewy) &&
                      ReadNumber(node, "the view's width", node.vieww) &&
                      ReadNumber(node, "the view's height", node.viewh);
    if (!read) return false;
    if (!IsGridSize(node.width, node.height)) {
        const std::string size = std::to_string(node.width) + " by " + std::to_string(node.height);
        return Fail("the size of " + Quoted(node.name) + ", " + size + ", is no grid's");
    }
    Trace("%s->Create(%i,%i)\n", node.name.c_str(), node.width, node.height);
    return true;
}

// --- tiles -------------------------------------------------------------------------------------

// The cells of a grid, which the text need not hold: the node has memory ahead of those that came,
// and at the end as many as came.
class GameTextReader::GridCells {
public:
    GridCells(Dobject& of, std::int64_t all) : node(of), cells(all) { Grow(0, kBelievedCells); }
    GridCells(const GridCells&) = delete;
    GridCells& operator=(const GridCells&) = delete;
    ~GridCells() { node.tiles.resize(static_cast<std::size_t>(Have())); }

    std::int64_t Have() const { return next - node.tiles.data(); }
    std::int64_t Left() const { return cells - Have(); }
    const Dtile& Last() const { return next[-1]; }

    // As many of one kind, or what there is room for.
    void Put(std::int64_t count, const Dtile& tile) {
        constexpr std::ptrdiff_t kAtOnce = 8;
        Dtile* const to = next;
        const std::ptrdiff_t room = end - to;
        if (room < kAtOnce || room < count) [[unlikely]]
            return PutLast(count, tile);
        // Nobody can foretell how long a short run is.
        FillEight(to, LoadEight(&tile), kAtOnce);
        if (count > kAtOnce) FillEight(to + kAtOnce, LoadEight(&tile), count - kAtOnce);
        next = to + count;
    }
    // Whether there is no room at hand, as when it is full.
    bool IsShort() const { return next == end; }

    std::string Fault() const {
        return "the grid of " + Quoted(node.name) + " ends after " + std::to_string(Have()) +
               " of " + std::to_string(cells) + " cells";
    }

private:
    void Grow(std::int64_t have, std::int64_t size) {
        node.tiles.resize(static_cast<std::size_t>(std::min(cells, size)));
        next = node.tiles.data() + have;
        end = node.tiles.data() + node.tiles.size();
    }

    void PutLast(std::int64_t count, Dtile tile) {
        const std::int64_t have = Have();
        const std::int64_t wanted = have + std::min(count, Left());
        if (wanted > end - node.tiles.data()) Grow(have, std::max(wanted, 2 * have));
        next = std::fill_n(next, wanted - have, tile);
    }

    Dobject& node;
    const std::int64_t cells;
    Dtile* next = nullptr;  ///< behind the last that came
    Dtile* end = nullptr;   ///< of the memory that there is
};

bool GameTextReader::GridFault(const GridCells& grid, const std::string& why) {
    return Fail(grid.Fault() + (why.empty() ? "" : ": " + why));
}

inline bool GameTextReader::AddRecord(GridCells& grid, const std::int32_t* numbers) {
    const bool run = numbers[0] < 0;
    Dtile tile;
    if (!CellOf(numbers + run, tile)) [[unlikely]]
        return GridFault(grid, "a number is beyond 16 bits");
    grid.Put(run ? -std::int64_t{numbers[0]} : 1, tile);
    return true;
}

bool GameTextReader::ReadRecord(GridCells& grid) {
    std::int32_t numbers[kFields + 1] = {};
    for (std::size_t i = 0; i < Need(numbers[0]); ++i) {
        switch (scanner.Number(numbers[i])) {
            case Status::kGood:
                break;
            case Status::kNoNumber:
                return GridFault(grid, "a number is expected");
            case Status::kTooLarge:
                return GridFault(grid, "a number is beyond 16 bits");
            default:
                return GridFault(grid);
        }
    }
    return AddRecord(grid, numbers);
}

// Takes records whose cells are known, as many as stand in a piece of text, and gives their number;
// tells the text of the next one's fields, if that can become known. What is no digit ends a
// number, and begins a run: no branch hangs on which records are runs, nor on how many digits a
// number has.
std::int64_t GameTextReader::TakeKnown(GridCells& grid, KnownCells::Text& unknown) {
    const char* const piece = scanner.Ahead(kDigitPiece + KnownCells::kLook);
    if (!piece) return 0;
    const auto nextOf = [](std::uint64_t bits) { return bits & (bits - 1); };
    std::ptrdiff_t at = *piece == ' ';
    std::uint64_t others = OthersAt(piece) >> at << at;
    std::int64_t taken = 0;
    while (others != 0 && !grid.IsShort()) {
        // All bits of a run, else none.
        const std::uint64_t run = 0 - (others >> at & 1);
        const std::ptrdiff_t behind = std::countr_zero(nextOf(others));
        const std::ptrdiff_t fields = at + (static_cast<std::ptrdiff_t>(run) & (behind + 1 - at));
        others = (nextOf(nextOf(others)) & run) | (others & ~run);
        others = nextOf(nextOf(nextOf(others)));
        if (others == 0) break;
        const std::ptrdiff_t end = std::countr_zero(others);
        const std::ptrdiff_t digits = behind - at - 1;
        const std::int64_t length = DigitsAt(piece + at + 1, digits);
        const bool strange =
            (piece[at] != '-') | (piece[behind] != ' ') | (digits > kMostDigits) | (length == 0);
        if ((run & std::uint64_t{strange}) != 0) break;
        const KnownCells::Text text = KnownCells::TextAt(piece + fields, end - fields);
        const Dtile* const tile = known.Find(text);
        if (!tile || piece[end] != ' ') {
            unknown = text;
            break;
        }
        grid.Put(1 + (static_cast<std::int64_t>(run) & (length - 1)), *tile);
        at = end + 1;
        others = nextOf(others);
        ++taken;
    }
    scanner.Take(at);
    return taken;
}

// As long as there are more cells of which the like came before than others.
bool GameTextReader::ReadAlike(GridCells& grid) {
    constexpr std::int64_t kMostStrange = 32;
    for (std::int64_t strange = 0; strange < kMostStrange && grid.Left() > 0;) {
        KnownCells::Text unknown;
        const std::int64_t taken = TakeKnown(grid, unknown);
        strange -= std::min(strange, taken);
        if (taken > 0 && unknown.length == 0) continue;
        if (!ReadRecord(grid)) return false;
        ++strange;
        known.Add(unknown, grid.Last());
    }
    return true;
}

bool GameTextReader::ReadStrange(GridCells& grid) {
    while (grid.Left() > 0) {
        // No number of the next object.
        const auto left = static_cast<std::size_t>(grid.Left());
        scanner.Peek(peeked, std::min(left * kFields, TextScanner::Peeked::kMost));
        std::size_t used = 0;
        while (grid.Left() > 0 && used < peeked.count &&
               used + Need(peeked.numbers[used]) <= peeked.count) {
            if (!AddRecord(grid, peeked.numbers + used)) return false;
            used += Need(peeked.numbers[used]);
        }
        scanner.Take(peeked, used);
        if (used == 0 && !ReadRecord(grid)) return false;
    }
    return true;
}

bool GameTextReader::ReadGrid(Dobject& node) {
    const std::int64_t cells = std::int64_t{node.width} * node.height;
    worldCells += cells;
    if (worldCells > kMaxWorldCells)
        return Fail("with " + Quoted(node.name) + " the world has more than " +
                    std::to_string(kMaxWorldCells) + " cells");
    GridCells grid(node, cells);
    return ReadAlike(grid) && ReadStrange(grid);
}

// --- scripts -----------------------------------------------------------------------------------

// The rest of the tile line, and the line that should read "~pb". Its absence is reported, and
// reading goes on as though it had been there.
bool GameTextReader::ReadScriptStart(Dobject& node) {
    for (int attempt = 0; attempt < 2; ++attempt) {
        const int at = scanner.LineNumber();
        const Status status = scanner.Line(line, kShownLine);
        if (status == Status::kEnd)
            return Fail("the text ends before the script of " + Quoted(node.name));
        if (status == Status::kTooLong) scanner.SkipLine();
        if (StartsWith(line, "~pb")) return true;
        if (attempt == 0) continue;
        Remark(at, "'~pb' is missing before the script of " + Quoted(node.name));
        if (++missingStarts > kMaxMissingStarts)
            return Fail("'~pb' is missing in more than " + std::to_string(kMaxMissingStarts) +
                        " objects");
        Fatal("~pb Expected", line.c_str(), at);
    }
    return true;
}

bool GameTextReader::ReadScript(Dobject& node) {
    const std::string lineOf = "a line of the script of " + Quoted(node.name);
    for (bool first = true;; first = false) {
        const int at = scanner.LineNumber();
        const Status status = scanner.Line(line, kMaxScriptLine);
        if (status == Status::kEnd)
            return Fail("the script of " + Quoted(node.name) + " has no end");
        if (status == Status::kTooLong)
            return Fail(lineOf + " has more than " + std::to_string(kMaxScriptLine) +
                        " characters");
        if (StartsWith(line, "~pe")) {
            if (line != "~pe") Remark(at, lineOf + " begins with ~pe and ends it");
            return true;
        }
        if (!first) node.script += '\n';
        if (StartsWith(line, "~pb"))
            Remark(at, lineOf + " begins with ~pb and reads as empty");
        else
            node.script += line;
        if (!Hold(line.size() + 1)) return false;
    }
}

// --- blocks ------------------------------------------------------------------------------------

bool GameTextReader::TakeObjectWord() {
    return scanner.Word(word) == Status::kGood && word == "~ob";
}

bool GameTextReader::ReadChildren(Dobject& node) {
    for (;;) {
        if (!ReadWord("before the '~oe' of " + Quoted(node.name))) return false;
        if (!StartsWith(word, "~ob")) break;
        if (!ReadChild(node)) return false;
    }
    if (word != "~oe")
        Remark(scanner.LineNumber(), Quoted(word) + " ends " + Quoted(node.name) + ", not '~oe'");
    SortByZ(node);
    return true;
}

bool GameTextReader::ReadChild(Dobject& parent) {
    parent.children.push_back(std::make_unique<Dobject>(ids()));
    Dobject& child = *parent.children.back();
    child.parent = &parent;
    return ReadBlock(child, &parent);
}

bool GameTextReader::ReadBlock(Dobject& node, const Dobject* spawnedBy) {
    if (depth == kMaxNesting)
        return Fail("objects are nested more than " + std::to_string(kMaxNesting) + " deep");
    if (remarks) remarks->lines[&node] = scanner.LineNumber();
    ++depth;
    const bool own =
        ReadHead(node, spawnedBy) && ReadGrid(node) && ReadScriptStart(node) && ReadScript(node);
    if (!own) cut = &node;
    const bool read = own && ReadChildren(node);
    --depth;
    return read;
}

bool GameTextReader::ReadBoards(Dobject& root) {
    for (int header = 0; header < 2; ++header)
        if (!ReadWord("in its header")) return false;
    while (TakeObjectWord())
        if (!ReadChild(root)) return false;
    if (scanner.IsFilled()) return Fail({});
    if (!word.empty()) Remark(scanner.LineNumber(), "nothing is read from " + Quoted(word) + " on");
    SortByZ(root);
    return true;
}

template <typename Reading>
bool GameTextReader::Guarded(Reading reading) {
    try {
        return reading();
    } catch (const std::bad_alloc&) {
        return Fail("there is not enough memory");
    } catch (const std::length_error&) {
        return Fail("there is not enough memory");
    }
}

bool GameTextReader::ReadWorld(Dobject& root) {
    return Guarded([&] { return ReadBoards(root); });
}

bool GameTextReader::ReadInto(Dobject& node) {
    return Guarded([&] { return ReadBlock(node, nullptr); });
}

// --- whole nodes -------------------------------------------------------------------------------

std::int64_t SurfaceBytes(const Dobject& node) {
    constexpr std::int64_t kTilePixels = kTileSize * kTileSize;
    std::int64_t bytes =
        node.vSurf ? 0 : static_cast<std::int64_t>(node.tiles.size()) * kTilePixels;
    for (const auto& child : node.children) bytes += SurfaceBytes(*child);
    return bytes;
}
