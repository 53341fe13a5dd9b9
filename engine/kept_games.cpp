#include "engine/kept_games.h"

#include "engine/dinterface.h"
#include "engine/replace_file.h"
#include "engine/report.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;

constexpr const char* kExtension = ".zqlt";
constexpr const char* kSession = ".session-";
constexpr const char* kUntitled = "Untitled";

// FNV-1a over what is written.
class DigestBuffer final : public std::streambuf {
public:
    std::uint64_t value = 14695981039346656037u;

    void Add(const char* text, std::streamsize count) {
        for (std::streamsize i = 0; i < count; ++i)
            value = (value ^ static_cast<unsigned char>(text[i])) * 1099511628211u;
    }

protected:
    int_type overflow(int_type c) override {
        const char byte = traits_type::to_char_type(c);
        Add(&byte, 1);
        return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char* text, std::streamsize count) override {
        Add(text, count);
        return count;
    }
};

std::uint64_t WorldDigest() {
    return ContentDigest(vWorld->GetFont()->Sheet(), vWorld->Root(), vWorld->videoMode,
                         vWorld->windowed);
}

// What is missing in an archive stays as it was, so it is no difference.
bool IsContentOf(const std::string& path) {
    Game game;
    GameFault fault;
    const IdSource none = [] { return 0; };
    if (!ReadGame(path, none, game, fault)) return false;
    BITMAP* sheet = game.sheet ? game.sheet.get() : vWorld->GetFont()->Sheet();
    return WorldDigest() == ContentDigest(sheet, game.root,
                                          game.videoMode.value_or(vWorld->videoMode),
                                          game.windowed.value_or(vWorld->windowed));
}

// Games of one name in two folders are two games.
std::string GameName(const std::string& path) {
    const fs::path file(path);
    if (path.empty() || path == kNewGame) return kUntitled;
    DigestBuffer mark;
    const std::string place = file.parent_path().string();
    mark.Add(place.data(), static_cast<std::streamsize>(place.size()));
    std::ostringstream name;
    name << file.stem().string() << '-' << std::hex << (mark.value & 0xffffff);
    return name.str();
}

std::string Moment() {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    char text[32] = "";
    if (localtime_r(&now, &local)) std::strftime(text, sizeof text, "%Y-%m-%d_%H.%M.%S", &local);
    return text;
}

}  // namespace

std::string KeptFolder() {
    const char* data = std::getenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    if (data && *data == '/') return (fs::path(data) / "Tessel Works/QUILT!/kept").string();
    if (!home || !*home) return {};
    return (fs::path(home) / ".local/share/Tessel Works/QUILT!/kept").string();
}

std::vector<KeptGame> ListKept(const std::string& folder) {
    std::vector<KeptGame> games;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const std::string stem = entry.path().stem().string();
        const std::size_t blank = stem.rfind(' ');
        if (entry.path().extension() != kExtension || blank == std::string::npos) continue;
        games.push_back({entry.path().string(), stem.substr(0, blank), stem.substr(blank + 1),
                         entry.file_size(error)});
    }
    std::sort(games.begin(), games.end(), [](const KeptGame& a, const KeptGame& b) {
        return std::tie(a.moment, a.path) > std::tie(b.moment, b.path);
    });
    return games;
}

std::uint64_t ContentDigest(BITMAP* sheet, const Dobject& root, std::int32_t videoMode,
                            std::int32_t windowed) {
    DigestBuffer digest;
    std::ostream out(&digest);
    out << videoMode << ' ' << windowed << ' ' << sheet->w << ' ' << sheet->h << '\n';
    for (int y = 0; y < sheet->h; ++y)
        digest.Add(reinterpret_cast<const char*>(sheet->line[y]), sheet->w);
    for (const auto& board : root.children) {
        constexpr bool kRows = false;
        constexpr bool kPlaced = false;
        WriteCollapsed(*board, out, kRows, kPlaced);
    }
    return digest.value;
}

KeptGames::KeptGames(std::string kept) : folder(std::move(kept)) {
    if (folder.empty()) return;
    std::error_code error;
    fs::create_directories(folder, error);
    sessionPath = folder + "/" + kSession + std::to_string(getpid());
    constexpr mode_t kPrivate = 0600;
    sessionFile = open(sessionPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kPrivate);
    if (sessionFile < 0 || flock(sessionFile, LOCK_EX | LOCK_NB) != 0)
        Trace("nothing can be kept in %s\n", folder.c_str());
}

KeptGames::~KeptGames() { EndSession(); }

void KeptGames::EndSession() {
    if (sessionFile < 0) return;
    unlink(sessionPath.c_str());
    close(std::exchange(sessionFile, -1));
}

std::string KeptGames::TakeLost() {
    std::string lost;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const std::string path = entry.path().string();
        if (!entry.path().filename().string().starts_with(kSession) || path == sessionPath)
            continue;
        const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (file < 0) continue;
        // A run that goes on has its own locked.
        if (flock(file, LOCK_EX | LOCK_NB) == 0) {
            std::ifstream in(path);
            std::string digest, kept;
            // By the moment, which stands last in the name.
            const auto moment = [](const std::string& place) {
                const std::string name = fs::path(place).stem();
                return name.substr(name.rfind(' ') + 1);
            };
            if (std::getline(in, digest) && std::getline(in, kept) && fs::exists(kept, error) &&
                (lost.empty() || moment(kept) > moment(lost)))
                lost = kept;
            unlink(path.c_str());
        }
        close(file);
    }
    return lost;
}

// A name that is free; empty when nothing is kept.
std::string KeptGames::PlaceFor(const std::string& path) const {
    if (sessionFile < 0) return {};
    const std::string begin = folder + "/" + GameName(path) + " " + Moment();
    std::string place = begin + kExtension;
    constexpr int kMostInASecond = 1000;
    for (int n = 2; access(place.c_str(), F_OK) == 0 && n < kMostInASecond; ++n)
        place = begin + "-" + std::to_string(n + kMostInASecond).substr(1) + kExtension;
    return place;
}

void KeptGames::Trim(const std::string& game) const {
    std::size_t ofGame = 0;
    std::uintmax_t bytes = 0;
    for (const KeptGame& kept : ListKept(folder)) {
        ofGame += kept.game == game;
        bytes += kept.bytes;
        if (bytes > kMostBytes || (kept.game == game && ofGame > kMostOfAGame))
            unlink(kept.path.c_str());
    }
}

void KeptGames::KeepFile(const std::string& path) {
    std::error_code error;
    const std::string place = PlaceFor(path);
    if (place.empty() || !fs::is_regular_file(path, error)) return;
    // The save puts a new file in the place of the old one, which a link keeps as it was.
    const std::string real = fs::canonical(path, error).string();
    if (link(real.c_str(), place.c_str()) != 0 && !fs::copy_file(path, place, error))
        Trace("%s could not be kept: %s\n", path.c_str(), error.message().c_str());
    Trim(GameName(path));
}

void KeptGames::Write(const std::string& origin, bool session) {
    if (origin.empty()) return;
    const std::string digest = std::to_string(WorldDigest());
    std::ifstream in(sessionPath);
    std::string newest;
    if (session && std::getline(in, newest) && newest == digest) return;
    if (IsContentOf(origin)) return;
    const std::string place = PlaceFor(origin);
    if (place.empty()) return;
    std::string why;
    const std::string bytes = ComposeGame(vWorld->GetFont()->Sheet(), vWorld->Root(),
                                          vWorld->videoMode, vWorld->windowed, why);
    if (bytes.empty() || !ReplaceFile(place, bytes, why)) {
        Trace("%s could not be kept: %s\n", place.c_str(), why.c_str());
        return;
    }
    Trim(GameName(origin));
    if (!session) return;
    const std::string record = digest + "\n" + place + "\n";
    if (ftruncate(sessionFile, 0) != 0 ||
        pwrite(sessionFile, record.data(), record.size(), 0) != static_cast<ssize_t>(record.size()))
        Trace("%s could not be written\n", sessionPath.c_str());
}

void KeptGames::KeepWorld(const std::string& origin) {
    if (sessionFile < 0 || !vWorld) return;
    Write(origin, false);
    Forget();
}

void KeptGames::KeepNowAndThen(const std::string& origin) {
    const auto now = std::chrono::steady_clock::now();
    if (sessionFile < 0 || now - last < kEvery) return;
    last = now;
    // The child's child works on as long as it takes, and nobody has to wait for it.
    const pid_t child = fork();
    if (child == 0) {
        if (fork() == 0) {
            StartTrace(nullptr);
            Write(origin, true);
        }
        _exit(0);
    }
    if (child > 0) waitpid(child, nullptr, 0);
}

void KeptGames::Forget() {
    last = std::chrono::steady_clock::now();
    if (sessionFile >= 0 && ftruncate(sessionFile, 0) != 0)
        Trace("%s could not be emptied\n", sessionPath.c_str());
}
