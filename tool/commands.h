// The commands of quilt-tool. Each gives the exit status.
#pragma once

#include "engine/game_archive.h"

#include <string>
#include <vector>

inline constexpr int kGood = 0;
inline constexpr int kBadFile = 1;
inline constexpr int kWrongCall = 2;

struct RenderOptions {
    std::string game;
    std::string picture;
    std::string board;  ///< empty: the first
    int scale = 1;
};

inline constexpr int kAlike = 0;  ///< of diff and merge
inline constexpr int kDifferent = 1;
inline constexpr int kTrouble = 2;

struct DiffOptions {
    std::vector<std::string> files;  ///< two, or what git hands to a program that compares
    bool git = false;
    bool quiet = false;
    bool stat = false;
    bool json = false;
    bool values = false;  ///< in JSON: with all that is needed to make the one of the other
    std::string picture;  ///< empty: none
    std::string board;    ///< empty: all
};

struct MergeOptions {
    std::string base;
    std::string ours;
    std::string theirs;
    std::string out;
    std::string name;  ///< of the file that the others are versions of, if they have other names
    bool favorTheirs = false;
    bool marks = false;
};

int Diff(const DiffOptions& options);
int Merge(const MergeOptions& options);
int Repair(const std::string& broken, const std::string& out);
int GitSetup(bool print);
int Info(const std::string& game, bool json);
int Render(const RenderOptions& options);
int Cat(const std::string& game, bool rows);
int Repack(const std::string& from, const std::string& to);
/// Lists the kept games, of one game or of all; with `to` writes the one of that number there.
int Kept(const std::string& game, int number, const std::string& to);
int Check(const std::vector<std::string>& games, bool strict);

/// Says on standard error what is wrong with a file; gives kBadFile.
int Complain(const std::string& file, const std::string& what);

/// Reads a game whole, with the ids counted from 1. False, with a complaint, when it cannot be
/// read or holds no world. What the engine reports meanwhile is a complaint, too.
bool ReadWhole(const std::string& path, Game& game, TextRemarks* remarks = nullptr);

/// Reads a game, or an object file as a world with one board and no sheet. `name` is what the
/// file is called where it belongs; /dev/null, and an empty file when `maybeEmpty`, are a world
/// without boards.
bool ReadEither(const std::string& path, const std::string& name, bool maybeEmpty, Game& game,
                bool& object);

/// Writes a game, a large one with quick packing, or the first board as an object file. False,
/// with a complaint.
bool WriteEither(const std::string& path, Game& game, bool object);

/// Puts the bytes in the place of the file at `path`. False, with a complaint: also when there are
/// none, for which `why` is the reason; if there is no reason, memory was short.
bool WriteBytes(const std::string& path, const std::string& bytes, std::string why = {});

/// A sheet for a game that has lost its own: the default one. Null when that cannot be read.
Bitmap UsualSheet();

/// All of a file; false, with a complaint.
bool ReadBytes(const std::string& path, std::string& bytes);

/// A text that a terminal can be shown: bytes that are no printable character of UTF-8, and
/// the backslash, as \xNN. Line feeds and tabs stay when `lines` is true.
std::string Printable(const std::string& text, bool lines = false);
