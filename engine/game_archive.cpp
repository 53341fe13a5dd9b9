#include "engine/game_archive.h"

#include "engine/dfont.h"
#include "engine/file_layer.h"
#include "engine/game_limits.h"
#include "engine/number_writer.h"
#include "engine/open_archive.h"

#include <algorithm>
#include <filesystem>
#include <new>

namespace {

constexpr const char* kHeaderEntry = "font.hdr";
constexpr const char* kSheetEntry = "font.raw";
constexpr const char* kTextEntry = "game.qlt";
constexpr const char* kSettingsEntry = "res.dat";
constexpr std::int32_t kNumbersFormat = 2;
constexpr int kMaxColor = 255;
constexpr int kQuickLevel = 4;  // the least that still looks for the longer of two matches

using Status = TextScanner::Status;

std::string FileNameOf(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

std::string OwnTextEntry(const std::string& fileName) {
    return std::filesystem::path(fileName).filename().replace_extension(".qlt").string();
}

// --- reading -----------------------------------------------------------------------------------

class GameReader {
public:
    GameReader(ZipReader& from, Game& to, GameFault& why) : archive(from), game(to), fault(why) {}

    bool Read(const std::string& fileName, const IdSource& ids, TextRemarks* remarks) {
        std::string text = OwnTextEntry(fileName);
        if (!archive.HasEntry(text)) text = kTextEntry;
        game.hasText = archive.HasEntry(text);
        // A text without a font is no game; an archive with neither leaves the font alone.
        if ((game.hasText || archive.HasEntry(kHeaderEntry)) && !ReadFont()) return false;
        if (game.hasText && !ReadText(text, ids, remarks)) return false;
        return !archive.HasEntry(kSettingsEntry) || ReadSettings();
    }

private:
    bool Fail(const std::string& entry, const std::string& why, int line = 0) {
        fault.text = entry + (line > 0 ? ", line " + std::to_string(line) : "") + ": " + why;
        fault.line = line;
        return false;
    }

    bool Open(ZipEntryInStream& in, const std::string& entry, std::uint64_t limit,
              std::ios::openmode mode = std::ios::in) {
        std::string why;
        return OpenEntry(in, archive, entry, limit, why, mode) || Fail(entry, why);
    }

    // Keeps the fault that made it no good, unless there is a graver one.
    bool Finish(ZipEntryInStream& in, const std::string& entry, bool good) {
        std::string why;
        const bool finished = FinishEntry(in, archive, good, why);
        return finished || (!why.empty() && Fail(entry, why));
    }

    bool ReadFont() {
        ZipEntryInStream in;
        if (!Open(in, kHeaderEntry, kMaxNumbers)) return false;
        TextScanner scanner(*in.rdbuf());
        std::int32_t size[3] = {};
        bool good = true;
        for (std::int32_t& number : size) good = good && scanner.Number(number) == Status::kGood;
        if (!good) Fail(kHeaderEntry, "three numbers are expected");
        if (good && !IsSheetSize(size[0], size[1]))
            good = Fail(kHeaderEntry, "a sheet of " + std::to_string(size[0]) + " by " +
                                          std::to_string(size[1]) + " pixels cannot be");
        if (!Finish(in, kHeaderEntry, good)) return false;
        game.sheetFormat = size[2];
        return ReadSheet(size[0], size[1]);
    }

    bool ReadSheet(int w, int h) {
        game.sheet = MakeBitmap(w, h);
        if (!game.sheet) return Fail(kSheetEntry, "there is not enough memory");
        ZipEntryInStream in;
        const std::uint64_t limit =
            kMaxNumbers + kMaxNumber * static_cast<unsigned>(w) * static_cast<unsigned>(h);
        if (!Open(in, kSheetEntry, limit, std::ios::binary)) return false;
        const bool numbers = game.sheetFormat == kNumbersFormat;
        bool good = true;
        ReadAhead ahead(*in.rdbuf());
        TextScanner scanner(ahead);
        for (int y = 0; good && y < h; ++y)
            good = numbers ? ReadNumberRow(scanner, y) : ReadByteRow(ahead, y);
        return Finish(in, kSheetEntry, good);
    }

    bool SheetEnds(int x, int y) {
        const int pixels = y * game.sheet->w + x;
        return Fail(kSheetEntry, "the sheet ends after " + std::to_string(pixels) + " of " +
                                     std::to_string(game.sheet->w * game.sheet->h) + " pixels");
    }

    bool ReadNumberRow(TextScanner& scanner, int y) {
        for (int x = 0; x < game.sheet->w;) {
            const auto left = static_cast<std::size_t>(game.sheet->w - x);
            scanner.Peek(peeked, std::min(left, TextScanner::Peeked::kMost));
            const std::size_t count = peeked.count;
            scanner.Take(peeked, count);
            if (!PutPixels(x, y, peeked.numbers, count)) return false;
            x += static_cast<int>(count);
            if (count > 0) continue;
            std::int32_t pixel = 0;
            if (scanner.Number(pixel) != Status::kGood) return SheetEnds(x, y);
            if (!PutPixels(x++, y, &pixel, 1)) return false;
        }
        return true;
    }

    bool PutPixels(int x, int y, const std::int32_t* pixels, std::size_t count) {
        std::int32_t bits = 0;
        unsigned char* const to = game.sheet->line[y] + x;
        for (std::size_t i = 0; i < count; ++i) {
            bits |= pixels[i];
            to[i] = static_cast<unsigned char>(pixels[i]);
        }
        static_assert((kMaxColor & (kMaxColor + 1)) == 0);
        if ((bits & ~kMaxColor) == 0) return true;
        while (*pixels >= 0 && *pixels <= kMaxColor) ++x, ++pixels;
        return Fail(kSheetEntry, "the pixel at " + std::to_string(x) + ", " + std::to_string(y) +
                                     " is no colour: " + std::to_string(*pixels));
    }

    bool ReadByteRow(std::streambuf& bytes, int y) {
        for (int x = 0; x < game.sheet->w; ++x) {
            int c = bytes.sbumpc();
            while (TextScanner::IsSpace(c)) c = bytes.sbumpc();
            if (c == std::streambuf::traits_type::eof()) return SheetEnds(x, y);
            game.sheet->line[y][x] = static_cast<unsigned char>(c);
        }
        return true;
    }

    bool ReadText(const std::string& entry, const IdSource& ids, TextRemarks* remarks) {
        ZipEntryInStream in;
        if (!Open(in, entry, kMaxText)) return false;
        game.textTime = archive.EntryFacts().dosTime;
        game.textEntry = entry;
        ReadAhead ahead(*in.rdbuf());
        GameTextReader reader(ahead, ids);
        reader.SetRemarks(remarks);
        const bool good = reader.ReadWorld(game.root);
        if (!good) Fail(entry, reader.Reason(), reader.Line());
        return Finish(in, entry, good);
    }

    bool ReadSettings() {
        ZipEntryInStream in;
        if (!Open(in, kSettingsEntry, kMaxNumbers)) return false;
        TextScanner scanner(*in.rdbuf());
        std::int32_t mode = 0;
        std::int32_t windowed = 0;
        const bool good =
            scanner.Number(mode) == Status::kGood && scanner.Number(windowed) == Status::kGood;
        if (!good) Fail(kSettingsEntry, "two numbers are expected");
        game.videoMode = mode;
        game.windowed = windowed;
        return Finish(in, kSettingsEntry, good);
    }

    ZipReader& archive;
    Game& game;
    GameFault& fault;
    TextScanner::Peeked peeked;
};

// --- writing -----------------------------------------------------------------------------------

void WriteSheet(BITMAP* sheet, std::ostream& out) {
    NumberWriter numbers(out);
    for (int y = 0; y < sheet->h; ++y)
        for (int x = 0; x < sheet->w; ++x) numbers.Put(sheet->line[y][x], ' ');
    numbers.Flush();
}

// Writes one entry by `write`; false when it did not reach the archive.
template <typename Write>
bool WriteEntry(ZipWriter& archive, const char* name, std::ios::openmode mode, Write write) {
    ZipEntryOutStream out;
    out.open(archive, name, mode);
    write(out);
    const bool written = out.good();
    return out.close() && written;
}

}  // namespace

bool ReadGame(ZipReader& archive, const std::string& fileName, const IdSource& ids, Game& game,
              GameFault& fault, TextRemarks* remarks) {
    if (!archive.IsOpen()) {
        fault = {kNoArchive, 0};
        return false;
    }
    try {
        return GameReader(archive, game, fault).Read(fileName, ids, remarks);
    } catch (const std::bad_alloc&) {
        fault = {"there is not enough memory", 0};
        return false;
    }
}

bool ReadGame(const std::string& path, const IdSource& ids, Game& game, GameFault& fault,
              TextRemarks* remarks) {
    fault = {};
    const std::unique_ptr<ZipReader> archive = OpenArchive(path, fault.text);
    return archive && ReadGame(*archive, FileNameOf(path), ids, game, fault, remarks);
}

std::string ComposeGame(BITMAP* sheet, const Dobject& root, std::int32_t videoMode,
                        std::int32_t windowed, std::string& why, unsigned long dosTime,
                        Packing packing) {
    ZipWriter archive;
    if (packing == Packing::kQuick) archive.SetLevel(kQuickLevel);
    archive.SetTime(dosTime);
    bool good = WriteEntry(archive, kHeaderEntry, std::ios::out, [&](std::ostream& out) {
        out << sheet->w << ' ' << sheet->h << ' ' << kNumbersFormat << '\n';
    });
    good &= WriteEntry(archive, kSheetEntry, std::ios::binary,
                       [&](std::ostream& out) { WriteSheet(sheet, out); });
    good &= WriteEntry(archive, kTextEntry, std::ios::out,
                       [&](std::ostream& out) { WriteWorld(root, out); });
    good &= WriteEntry(archive, kSettingsEntry, std::ios::out,
                       [&](std::ostream& out) { out << videoMode << ' ' << windowed; });
    good &= archive.Close();
    why = WhyUnreadable(root, 0);
    if (!good && why.empty())
        why = "There is not enough memory to save the game. Close other programs and try again.";
    return why.empty() ? archive.TakeBytes() : std::string();
}
