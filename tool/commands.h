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

int Info(const std::string& game, bool json);
int Render(const RenderOptions& options);
int Cat(const std::string& game);
int Repack(const std::string& from, const std::string& to);
int Check(const std::vector<std::string>& games, bool strict);

/// Says on standard error what is wrong with a file; gives kBadFile.
int Complain(const std::string& file, const std::string& what);

/// Reads a game whole, with the ids counted from 1. False, with a complaint, when it cannot be
/// read or holds no world. What the engine reports meanwhile is a complaint, too.
bool ReadWhole(const std::string& path, Game& game, TextRemarks* remarks = nullptr);

/// A text that a terminal can be shown: bytes that are no printable character of UTF-8, and
/// the backslash, as \xNN. Line feeds and tabs stay when `lines` is true.
std::string Printable(const std::string& text, bool lines = false);
