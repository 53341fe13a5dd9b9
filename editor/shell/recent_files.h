// The list of recently used games, kept in the settings of the user, newest first.
#pragma once

#include <string>
#include <vector>

inline constexpr int kMaxRecentFiles = 6;

std::vector<std::string> RecentFiles();

/// The one spelling of a path: absolute, without "." and "..".
std::string NormalPath(const std::string& path);

/// Puts a path first, in its normal form; the same file further down goes, and so does what no
/// longer fits.
void AddRecentFile(const std::string& path);
void RemoveRecentFile(const std::string& path);
