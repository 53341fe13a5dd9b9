#include "engine/dinterface.h"
#include "engine/open_archive.h"
#include "engine/program_folder.h"
#include "engine/replace_file.h"
#include "engine/report.h"
#include "tool/commands.h"
#include "tool/compare/diff.h"
#include "tool/compare/salvage.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace {

// In bytes of its boards' pictures: a million cells.
constexpr std::int64_t kLargeWorld = std::int64_t{64} << 20;

std::string vFile;

void ComplainOfEngine(const char* text, const char*) { Complain(vFile, text); }

unsigned char ByteAt(const std::string& text, std::size_t at) {
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

// Bytes of the character of UTF-8 at a place, 0 when there is none that can be shown.
std::size_t CharacterAt(const std::string& text, std::size_t at) {
    const unsigned char first = ByteAt(text, at);
    if (first >= ' ' && first < 0x7f) return 1;
    std::size_t size = 0;
    if (first >= 0xc2 && first < 0xe0) size = 2;
    if (first >= 0xe0 && first < 0xf0) size = 3;
    if (first >= 0xf0 && first < 0xf5) size = 4;
    for (std::size_t i = 1; i < size; ++i)
        if ((ByteAt(text, at + i) & 0xc0) != 0x80) return 0;
    const unsigned char second = ByteAt(text, at + 1);
    // The second control block, overlong forms, surrogates and what lies beyond Unicode.
    const bool excluded = (first == 0xc2 && second < 0xa0) || (first == 0xe0 && second < 0xa0) ||
                          (first == 0xed && second >= 0xa0) || (first == 0xf0 && second < 0x90) ||
                          (first == 0xf4 && second >= 0x90);
    return excluded ? 0 : size;
}

}  // namespace

std::string Printable(const std::string& text, bool lines) {
    std::string shown;
    for (std::size_t at = 0; at < text.size();) {
        const char c = text[at];
        const std::size_t size = CharacterAt(text, at);
        if ((lines && (c == '\n' || c == '\t')) || (size == 1 && (lines || c != '\\'))) {
            shown += c;
            ++at;
        } else if (size > 1) {
            shown += text.substr(at, size);
            at += size;
        } else {
            char escaped[5];
            std::snprintf(escaped, sizeof escaped, "\\x%02x", ByteAt(text, at));
            shown += escaped;
            ++at;
        }
    }
    return shown;
}

int Complain(const std::string& file, const std::string& what) {
    std::string line = what;
    for (char& c : line)
        if (c == '\n') c = ' ';
    std::fprintf(stderr, "quilt-tool: %s: %s\n", Printable(file).c_str(), Printable(line).c_str());
    return kBadFile;
}

bool ReadWhole(const std::string& path, Game& game, TextRemarks* remarks) {
    vFile = path;
    // With remarks the same things are told there, with their lines.
    vMessageHook = remarks ? nullptr : ComplainOfEngine;
    std::int32_t lastId = 0;
    GameFault fault;
    bool read = ReadGame(
        path, [&lastId] { return ++lastId; }, game, fault, remarks);
    vMessageHook = ComplainOfEngine;
    if (read && !game.hasText) {
        fault.text = "there is no world in this archive";
        read = false;
    }
    if (!read) Complain(path, fault.text);
    return read;
}

bool ReadBytes(const std::string& path, std::string& bytes) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        Complain(path, "there is no such file");
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    bytes.resize(std::filesystem::file_size(path, error));
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (in && !in.bad()) return true;
    Complain(path, std::string("it cannot be read: ") + std::strerror(errno));
    return false;
}

bool ReadEither(const std::string& path, const std::string& name, bool maybeEmpty, Game& game,
                bool& object) {
    object = false;
    std::error_code error;
    if (path == "/dev/null") return true;
    if (maybeEmpty && std::filesystem::file_size(path, error) == 0 && !error) return true;
    vFile = path;
    vMessageHook = ComplainOfEngine;
    GameFault fault;
    const std::unique_ptr<ZipReader> archive = OpenArchive(path, fault.text);
    const auto ids = [last = std::int32_t{0}]() mutable { return ++last; };
    const std::string file = std::filesystem::path(name).filename().string();
    bool read = archive && ReadGame(*archive, file, ids, game, fault);
    if (read && !game.hasText) {
        std::string bytes;
        if (!ReadBytes(path, bytes)) return false;
        read = object = ReadObjectArchive(bytes, game, fault.text);
    }
    if (!read) Complain(path, fault.text);
    return read;
}

bool WriteEither(const std::string& path, Game& game, bool object) {
    std::string why;
    std::string bytes;
    if (!object) {
        // A large one would take longer to pack than all else that is done with it.
        const bool large = SurfaceBytes(game.root) > kLargeWorld;
        bytes = ComposeGame(game.sheet.get(), game.root, game.videoMode.value_or(kUsualSetting),
                            game.windowed.value_or(kUsualSetting), why, 0,
                            large ? Packing::kQuick : Packing::kUsual);
    } else if (game.root.children.size() == 1) {
        bytes = ComposeObject(*game.root.children.front(), path, why);
    } else {
        why = "an object file has one object, not " + std::to_string(game.root.children.size());
    }
    return WriteBytes(path, bytes, why);
}

bool WriteBytes(const std::string& path, const std::string& bytes, std::string why) {
    if (bytes.empty() && why.empty()) why = "there is not enough memory";
    const bool saved = !bytes.empty() && ReplaceFile(path, bytes, why);
    // What a save says begins with the path.
    if (why.starts_with(path + " ")) why.erase(0, path.size() + 1);
    if (!why.empty()) Complain(path, why);
    return saved;
}

Bitmap UsualSheet() {
    Game game;
    GameFault fault;
    const std::string path = ProgramFolder() + "/Library/default.zqlt";
    if (!ReadGame(
            path, [] { return 1; }, game, fault))
        Complain(path, fault.text);
    return std::move(game.sheet);
}
