// Zip archives of which two builds give the same bytes.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

struct ArchiveEntry {
    std::string name;
    std::string bytes;
};

// Writes the entries in their order as the editor does, but with one fixed date. False when that
// fails.
bool WriteDatedArchive(const std::filesystem::path& file, const std::vector<ArchiveEntry>& entries);
