// Archives in memory: what minizip calls instead of a file.
//
// A save composes its archive in memory and only then touches the disk; tests and fuzzers hand
// over archives that never were files, and files are read through a piece in memory. Internal to
// the zip streams.
#pragma once

#include <minizip/ioapi.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// An archive under construction. minizip goes back to complete its records, so there is a
/// position apart from the end.
struct ZipImage {
    std::string bytes;
    std::uint64_t position = 0;
    bool failed = false;  ///< out of memory, or a seek before the start
};

/// An archive to be read, of which `bytes` are at hand: all of them, which are the caller's, or a
/// piece of a file.
struct ZipSource {
    std::string_view bytes;
    std::uint64_t first = 0;  ///< where they stand in the archive
    std::uint64_t size = 0;   ///< of the archive
    std::uint64_t position = 0;
    /// Something was not all there. minizip takes the numbers of a directory that is cut off
    /// for 0, and so the archive for an empty one, unless it is told of an error.
    bool cut = false;
    int file = -1;
    std::vector<char> area;  ///< holds a file's piece
};

/// The functions for zipOpen2_64 on that image, which must outlive the handle.
zlib_filefunc64_def ImageFunctions(ZipImage& image);
/// The functions for unzOpen2_64 on that source, which must outlive the handle.
zlib_filefunc64_def SourceFunctions(ZipSource& source);
/// The same for a file, whose path unzOpen2_64 is given. It is read in large pieces, whatever is
/// asked for: minizip takes the numbers of a directory byte by byte, with a seek before each few.
zlib_filefunc64_def FileFunctions(ZipSource& source);
