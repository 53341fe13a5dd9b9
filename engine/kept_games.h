// The net under an editor that asks nothing: copies of games, kept in a folder of the user's data,
// from which what was replaced, dropped or lost in a crash can be opened again.
//
// Nothing here fails an operation of the user: what cannot be kept costs a line in the trace.
#pragma once

#include "engine/game_archive.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

/// $XDG_DATA_HOME or ~/.local/share, and from there "Tessel Works/QUILT!/kept".
std::string KeptFolder();

struct KeptGame {
    std::string path;
    std::string game;    ///< the game's name, and a mark of the folder that it lies in
    std::string moment;  ///< local time, "2026-11-25_13.24.05"
    std::uintmax_t bytes = 0;
};
/// Newest first; empty when there is no such folder.
std::vector<KeptGame> ListKept(const std::string& folder);

/// The same for worlds that are the same game: text, font and settings. Where the boards lie is
/// left out, because to show one moves all.
std::uint64_t ContentDigest(BITMAP* sheet, const Dobject& root, std::int32_t videoMode,
                            std::int32_t windowed);

/// One run of the editor. `origin` is always the file that the world in vWorld came from or was
/// last saved to; the world is dropped unkept when its content is that of this file.
class KeptGames {
public:
    /// With an empty folder nothing is kept.
    explicit KeptGames(std::string folder);
    KeptGames(const KeptGames&) = delete;
    KeptGames& operator=(const KeptGames&) = delete;
    ~KeptGames();

    const std::string& Folder() const { return folder; }
    /// The newest game that a run which came to no end had kept, told once; else empty.
    std::string TakeLost();
    /// To be called before a save replaces the file.
    void KeepFile(const std::string& path);
    /// To be called before another world takes the place of this one, and at the end.
    void KeepWorld(const std::string& origin);
    /// To be called often: keeps the world when kEvery has passed since the last time, in a
    /// process of its own, so that nobody waits.
    void KeepNowAndThen(const std::string& origin);
    /// The world is safe in its file.
    void Forget();
    /// This run has come to its end: nothing of it is lost, and nothing is kept any more.
    void EndSession();

    static constexpr std::chrono::minutes kEvery{3};
    static constexpr std::size_t kMostOfAGame = 20;
    static constexpr std::uintmax_t kMostBytes = std::uintmax_t{1} << 30;
    /// When the world was kept last, or this run began.
    std::chrono::steady_clock::time_point last = std::chrono::steady_clock::now();

private:
    std::string PlaceFor(const std::string& path) const;
    void Trim(const std::string& game) const;
    void Write(const std::string& origin, bool session);

    std::string folder;
    int sessionFile = -1;  ///< locked while this run goes on; digest and path of what is kept
    std::string sessionPath;
};
