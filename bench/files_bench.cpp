// Loading, saving and rendering against zlib alone on the same bytes.

#include "bench/bench_world.h"

#include <benchmark/benchmark.h>
#include <minizip/unzip.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kBoards = 1000;
constexpr int kFewBoards = 10;
constexpr int kBoardW = 80;
constexpr int kBoardH = 60;
constexpr int kLargeSide = 1000;
constexpr std::size_t kPiece = 1 << 16;

void FillAtRandom(Dobject& node) {
    static std::mt19937 random(1);
    const auto roll = [](int high) {
        return static_cast<std::uint16_t>(std::uniform_int_distribution<int>(0, high)(random));
    };
    for (Dtile& tile : node.tiles) tile = {roll(255), roll(255), roll(255), roll(3)};
    node.RedrawTiles();
}

void PlantBoards(int boards, int w, int h) {
    Dinterface& world = BenchWorld();
    world.Root().EraseAll();
    for (int i = 0; i < boards; ++i) FillAtRandom(AddBenchNode(world.Root(), w, h));
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

// A game of so many boards in a file that is deleted at the end.
class GameFile {
public:
    explicit GameFile(int boards, int w = kBoardW, int h = kBoardH)
        : path("files-bench-" + std::to_string(getpid()) + ".zqlt") {
        InChild([&] {
            PlantBoards(boards, w, h);
            BenchWorld().Save(path);
        });
    }
    ~GameFile() { unlink(path.c_str()); }

    const std::string path;
};

// --- zlib alone ----------------------------------------------------------------------------------

Bytef* Bytes(std::string& text) { return reinterpret_cast<Bytef*>(text.data()); }

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

void Inflate(std::string& packed, std::string& piece) {
    z_stream stream = {};
    inflateInit2(&stream, -MAX_WBITS);
    stream.next_in = Bytes(packed);
    stream.avail_in = static_cast<uInt>(packed.size());
    uLong checksum = 0;
    for (int result = Z_OK; result == Z_OK;) {
        stream.next_out = Bytes(piece);
        stream.avail_out = static_cast<uInt>(piece.size());
        result = inflate(&stream, Z_NO_FLUSH);
        checksum =
            crc32(checksum, Bytes(piece), static_cast<uInt>(piece.size()) - stream.avail_out);
    }
    benchmark::DoNotOptimize(checksum);
    inflateEnd(&stream);
}

std::size_t Deflate(std::string& bytes, std::string& piece, int windowBits) {
    z_stream stream = {};
    deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY);
    stream.next_in = Bytes(bytes);
    stream.avail_in = static_cast<uInt>(bytes.size());
    for (int result = Z_OK; result == Z_OK;) {
        stream.next_out = Bytes(piece);
        stream.avail_out = static_cast<uInt>(piece.size());
        result = deflate(&stream, Z_FINISH);
    }
    deflateEnd(&stream);
    return stream.total_out;
}

void InflateEntries(benchmark::State& state) {
    const GameFile game(kBoards);
    std::vector<std::string> entries = EntriesOf(game.path, true);
    std::string piece(kPiece, '\0');
    for (auto _ : state)
        for (std::string& entry : entries) Inflate(entry, piece);
}

void DeflateEntries(benchmark::State& state) {
    const GameFile game(kBoards);
    std::vector<std::string> entries = EntriesOf(game.path, false);
    std::string piece(kPiece, '\0');
    for (auto _ : state)
        for (std::string& entry : entries)
            benchmark::DoNotOptimize(Deflate(entry, piece, -MAX_WBITS));
}

// --- the engine
// ------------------------------------------------------------------------------------

void Load(benchmark::State& state) {
    const GameFile game(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        BenchWorld().Root().EraseAll();
        state.ResumeTiming();
        if (!BenchWorld().Load(game.path)) state.SkipWithError("the game does not load");
    }
    BenchWorld().Root().EraseAll();
}

void Save(benchmark::State& state) {
    const GameFile game(static_cast<int>(state.range(0)));
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

void LoadMemory(benchmark::State& state) {
    const GameFile game(kBoards);
    int ends[2];
    if (pipe(ends) != 0) return state.SkipWithError("no pipe");
    double numbers[2] = {};
    for (auto _ : state) {
        InChild([&] {
            const double before = Held("VmRSS:");
            BenchWorld().Load(game.path);
            const double found[2] = {Held("VmHWM:") - before, Held("VmRSS:") - before};
            if (write(ends[1], found, sizeof found) < 0) _exit(EXIT_FAILURE);
        });
        if (read(ends[0], numbers, sizeof numbers) < 0) state.SkipWithError("no numbers");
    }
    close(ends[0]);
    close(ends[1]);
    state.counters["peak"] = numbers[0];
    state.counters["world"] = numbers[1];
}

// --- the tool
// --------------------------------------------------------------------------------------

void RenderBoard(benchmark::State& state) {
    const GameFile game(1, kLargeSide, kLargeSide);
    const std::string picture = game.path + ".png";
    const std::string command = "./quilt-tool render " + game.path + " " + picture;
    for (auto _ : state)
        if (std::system(command.c_str()) != 0) state.SkipWithError("quilt-tool render failed");
    unlink(picture.c_str());
}

void DeflatePicture(benchmark::State& state) {
    const GameFile game(1, kLargeSide, kLargeSide);
    BenchWorld().Load(game.path);
    const BITMAP& surf = *BenchWorld().Root().children.front()->Surface();
    std::string pixels;
    for (int y = 0; y < surf.h; ++y) pixels.append(surf.line[y], surf.line[y] + surf.w);
    BenchWorld().Root().EraseAll();
    std::string piece(kPiece, '\0');
    for (auto _ : state) benchmark::DoNotOptimize(Deflate(pixels, piece, MAX_WBITS));
}

// Two games of 1,000 boards, the second with a tile changed on each tenth board, by a command in
// which A and B are the two.
void RunOnTwo(benchmark::State& state, std::string command) {
    const GameFile game(kBoards);
    const std::string other = game.path + ".other.zqlt";
    InChild([&] {
        BenchWorld().Load(game.path);
        int number = 0;
        for (const auto& board : BenchWorld().Root().children)
            if (number++ % 10 == 0) board->tiles[100].chr ^= 1;
        BenchWorld().Save(other);
    });
    for (const auto& [letter, path] : {std::pair{" A", game.path}, std::pair{" B", other}})
        for (std::size_t at; (at = command.find(letter)) != command.npos;)
            command.replace(at, 2, " " + path);
    for (auto _ : state)
        if (std::system(("./quilt-tool " + command).c_str()) < 0)
            state.SkipWithError("quilt-tool does not start");
    unlink(other.c_str());
    unlink("files-bench-joined.zqlt");
}

void LoadTwo(benchmark::State& state) {
    RunOnTwo(state, "info A >/dev/null; ./quilt-tool info B >/dev/null");
}
void Diff(benchmark::State& state) { RunOnTwo(state, "diff A B >/dev/null"); }
void Merge(benchmark::State& state) { RunOnTwo(state, "merge A A B -o files-bench-joined.zqlt"); }

// First, while the process is small.
BENCHMARK(LoadMemory)->Iterations(1);
BENCHMARK(InflateEntries)->Unit(benchmark::kMillisecond);
BENCHMARK(DeflateEntries)->Unit(benchmark::kMillisecond);
BENCHMARK(Load)->Arg(kFewBoards)->Arg(kBoards)->Unit(benchmark::kMillisecond);
BENCHMARK(Save)->Arg(kFewBoards)->Arg(kBoards)->Unit(benchmark::kMillisecond);
BENCHMARK(RenderBoard)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(LoadTwo)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(Diff)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(Merge)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(DeflatePicture)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
