// Loading and saving against zlib alone on the same bytes, for four games: 10 and 300 boards at
// random, in which packing hides all else, the sample, and 1,000 boards like the sample's.
//
// --write FOLDER writes what ratios.py has the programs work on instead: games, and the same
// boards as maps of another editor.

#include "bench/bench_world.h"
#include "bench/timed.h"
#include "engine/copy_object.h"

#include <minizip/unzip.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr int kBoards = 1000;
constexpr int kRandomBoards = 300;
constexpr int kFewBoards = 10;
constexpr int kBoardW = 80;
constexpr int kBoardH = 60;
constexpr int kLargeSide = 1000;
constexpr int kSmallW = 128;
constexpr int kSmallH = 96;
constexpr std::size_t kPiece = 1 << 16;
constexpr const char* kSample = "Library/samples/lamplight.zqlt";

int Roll(int high) {
    static std::mt19937 random(1);
    return std::uniform_int_distribution<int>(0, high)(random);
}

void PlantBoards(int boards) {
    for (int i = 0; i < boards; ++i) {
        Dobject& node = AddBenchNode(BenchWorld().Root(), kBoardW, kBoardH);
        const auto roll = [](int high) { return static_cast<std::uint16_t>(Roll(high)); };
        for (Dtile& tile : node.tiles) tile = {roll(255), roll(255), roll(255), roll(3)};
    }
}

void PlantLikeSample(int boards) {
    BenchWorld().Load(kSample);
    std::vector<const Dobject*> originals;
    for (const auto& board : BenchWorld().Root().children) originals.push_back(board.get());
    for (auto i = originals.size(); i < static_cast<std::size_t>(boards); ++i)
        CopyObject(BenchWorld().Root(), *originals[i % originals.size()]);
}

// Runs in a child, so that what it takes of memory is gone afterwards.
template <typename Work>
void InChild(Work work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(EXIT_SUCCESS);
    }
    waitpid(child, nullptr, 0);
}

// The entries of an archive, packed or unpacked.
std::vector<std::string> EntriesOf(const std::string& path, bool packed) {
    std::vector<std::string> entries;
    unzFile zip = unzOpen64(path.c_str());
    for (int at = unzGoToFirstFile(zip); at == UNZ_OK; at = unzGoToNextFile(zip)) {
        std::string& entry = entries.emplace_back();
        std::string piece(kPiece, '\0');
        int method = 0;
        int level = 0;
        unzOpenCurrentFile2(zip, &method, &level, packed);
        for (int n; (n = unzReadCurrentFile(zip, piece.data(), kPiece)) > 0;)
            entry.append(piece, 0, static_cast<std::size_t>(n));
        unzCloseCurrentFile(zip);
    }
    unzClose(zip);
    return entries;
}

// A game in a file, which is deleted at the end, and its entries.
struct GameFile {
    template <typename Plant>
    GameFile(const char* nickname, Plant plant)
        : name(nickname),
          path("files-bench-" + std::to_string(getpid()) + "-" + nickname + ".zqlt") {
        InChild([&] {
            BenchWorld().Root().EraseAll();
            plant();
            BenchWorld().Save(path);
        });
        packed = EntriesOf(path, true);
        plain = EntriesOf(path, false);
    }
    GameFile(const GameFile&) = delete;
    GameFile& operator=(const GameFile&) = delete;
    ~GameFile() { unlink(path.c_str()); }

    std::string name;
    std::string path;
    std::vector<std::string> packed, plain;
};

Bytef* Bytes(std::string& text) { return reinterpret_cast<Bytef*>(text.data()); }

void Inflate(benchmark::State& state, GameFile& game) {
    std::string piece(kPiece, '\0');
    for (auto _ : state)
        for (std::string& packed : game.packed) {
            z_stream stream = {};
            inflateInit2(&stream, -MAX_WBITS);
            stream.next_in = Bytes(packed);
            stream.avail_in = static_cast<uInt>(packed.size());
            uLong sum = 0;
            for (int result = Z_OK; result == Z_OK;) {
                stream.next_out = Bytes(piece);
                stream.avail_out = static_cast<uInt>(piece.size());
                result = inflate(&stream, Z_NO_FLUSH);
                sum = crc32(sum, Bytes(piece), static_cast<uInt>(piece.size()) - stream.avail_out);
            }
            benchmark::DoNotOptimize(sum);
            inflateEnd(&stream);
        }
}

void Deflate(benchmark::State& state, GameFile& game) {
    std::string piece(kPiece, '\0');
    for (auto _ : state)
        for (std::string& bytes : game.plain) {
            z_stream stream = {};
            deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8,
                         Z_DEFAULT_STRATEGY);
            stream.next_in = Bytes(bytes);
            stream.avail_in = static_cast<uInt>(bytes.size());
            for (int result = Z_OK; result == Z_OK;) {
                stream.next_out = Bytes(piece);
                stream.avail_out = static_cast<uInt>(piece.size());
                result = deflate(&stream, Z_FINISH);
            }
            benchmark::DoNotOptimize(stream.total_out);
            deflateEnd(&stream);
        }
}

void Load(benchmark::State& state, GameFile& game) {
    for (auto _ : state) {
        state.PauseTiming();
        BenchWorld().Root().EraseAll();
        state.ResumeTiming();
        if (!BenchWorld().Load(game.path)) state.SkipWithError("the game does not load");
    }
    BenchWorld().Root().EraseAll();
}

void Save(benchmark::State& state, GameFile& game) {
    BenchWorld().Load(game.path);
    for (auto _ : state)
        if (!BenchWorld().Save(game.path)) state.SkipWithError("the game cannot be saved");
    BenchWorld().Root().EraseAll();
}

// Bytes that the process holds now (VmRSS) or held at most (VmHWM).
double Held(const std::string& wanted) {
    std::ifstream in("/proc/self/status");
    std::string key;
    double kilobytes = 0;
    while (in >> key)
        if (key == wanted && in >> kilobytes) return kilobytes * 1024;
    return 0;
}

// By a program that has loaded nothing yet, and not by a child, whose pages are still shared.
int PrintMemory(const std::string& path) {
    const double before = Held("VmRSS:");
    BenchWorld().Load(path);
    std::printf("%.0f %.0f\n", Held("VmHWM:") - before, Held("VmRSS:") - before);
    return 0;
}

// --- games and maps for other programs -----------------------------------------------------------

// Glyphs at random, or calm: one glyph with another in every hundredth cell.
Dobject& PlantMap(int w, int h, bool calm) {
    BenchWorld().Root().EraseAll();
    Dobject& board = AddBenchNode(BenchWorld().Root(), w, h);
    for (Dtile& tile : board.tiles)
        tile = {static_cast<std::uint16_t>(calm && Roll(99) > 0 ? 176 : Roll(255)), 14, 1, 0};
    return board;
}

void WriteMap(const std::string& path, const Dobject& board) {
    std::ofstream out(path);
    out << R"(<map version="1.8" orientation="orthogonal" renderorder="right-down" tilewidth="8")"
        << R"( tileheight="8" infinite="0" width=")" << board.width << R"(" height=")"
        << board.height << R"("><tileset firstgid="1" name="glyphs" tilewidth="8" tileheight="8")"
        << R"( tilecount="256" columns="16"><image source="glyphs.png" width="128" height="128"/>)"
        << R"(</tileset><layer id="1" name="board" width=")" << board.width << R"(" height=")"
        << board.height << R"("><data encoding="csv">)" << '\n';
    for (std::size_t i = 0; i < board.tiles.size(); ++i)
        out << (i ? "," : "") << board.tiles[i].chr + 1;
    out << "</data></layer></map>\n";
}

int WriteInputs(const std::string& folder) {
    const auto write = [&](const std::string& name, int w, int h, bool calm) {
        const Dobject& board = PlantMap(w, h, calm);
        WriteMap(folder + "/" + name + ".tmx", board);
        return BenchWorld().Save(folder + "/" + name + ".zqlt");
    };
    bool good = write("random", kLargeSide, kLargeSide, false) &&
                write("calm", kLargeSide, kLargeSide, true) &&
                write("small", kSmallW, kSmallH, false) && write("one", 1, 1, false);
    // All glyphs once, of which quilt-tool makes the picture for the maps.
    Dobject& sheet = PlantMap(16, 16, false);
    for (std::size_t i = 0; i < sheet.tiles.size(); ++i)
        sheet.tiles[i].chr = static_cast<std::uint16_t>(i);
    good = good && BenchWorld().Save(folder + "/glyphs.zqlt");
    // Two games, the second with a tile changed on each tenth board.
    BenchWorld().Root().EraseAll();
    PlantBoards(kBoards);
    good = good && BenchWorld().Save(folder + "/a.zqlt");
    int number = 0;
    for (const auto& board : BenchWorld().Root().children)
        if (number++ % 10 == 0) board->tiles[100].chr ^= 1;
    return good && BenchWorld().Save(folder + "/b.zqlt") ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view mode = argc > 2 ? argv[1] : "";
    if (mode == "--write") return WriteInputs(argv[2]);
    if (mode == "--memory") return PrintMemory(argv[2]);
    GameFile games[] = {{"few", [] { PlantBoards(kFewBoards); }},
                        {"random", [] { PlantBoards(kRandomBoards); }},
                        {"sample", [] { PlantLikeSample(0); }},
                        {"samples", [] { PlantLikeSample(kBoards); }}};
    for (GameFile& game : games) {
        const auto row = [&game](const char* name, void (*work)(benchmark::State&, GameFile&)) {
            Timed(name + game.name, [&game, work](benchmark::State& state) {
                work(state, game);
            })->Unit(benchmark::kMillisecond);
        };
        row("Load/", Load);
        row("Inflate/", Inflate);
        row("Save/", Save);
        row("Deflate/", Deflate);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
