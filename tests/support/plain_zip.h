// Zip archives by a library that the engine does not use: so that what the engine writes is judged
// by another program, and so that archives can be made that it never writes.
#pragma once

#include <string>
#include <vector>

struct PlainEntry {
    std::string name, bytes;
    int method = 8;  ///< 8 deflated, 0 stored
    /// Only looked at: the age in seconds when it was read, the attributes, and the bytes of extra
    /// fields and comment.
    double age = 0;
    unsigned attributes = 0, extra = 0;
};

/// At least one entry. Each has a comment and a field of its own kind, as other programs write
/// them.
std::string MakeZip(const std::vector<PlainEntry>& entries);

/// The entries in the order of the archive's directory, their checksums seen to. Empty, with a
/// test failure, when something does not fit.
std::vector<PlainEntry> ReadZip(const std::string& zip);

/// The entries of a game around a text: a sheet of 16 by 8 pixels of ascending values, mode 3.
std::vector<PlainEntry> GameEntries(const std::string& text);
