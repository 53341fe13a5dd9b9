// A zip writer and reader of the tests' own, on zlib alone, so that what the engine writes is
// judged by another program, and so that archives can be made that it never writes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct PlainEntry {
    std::string name;
    std::string bytes;
    int method = 8;  ///< 8 deflated, 0 stored

    // Only looked at, not written.
    int flags = 0;
    std::uint32_t dosDate = 0;
    std::uint32_t externalAttribs = 0;
    int internalAttribs = 0;
    int extraSize = 0;
    int commentSize = 0;
};

std::string MakeZip(const std::vector<PlainEntry>& entries);

/// The entries in the order of the archive's directory, whose end must be the file's end.
/// Empty, with a test failure, when something does not fit.
std::vector<PlainEntry> ReadZip(const std::string& zip);
