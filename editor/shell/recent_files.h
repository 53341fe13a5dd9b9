// The list of recently used games, kept in the settings of the user, newest first.
#pragma once

#include <string>
#include <vector>

inline constexpr int kMaxRecentFiles = 6;

std::vector<std::string> RecentFiles();

/// Puts a path first; the same path further down goes, and so does what no longer fits.
void AddRecentFile(const std::string& path);
