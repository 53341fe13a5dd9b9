// Putting a complete new file in the place of an old one.
#pragma once

#include <string>
#include <string_view>

/// Makes `bytes` the contents of the file at `path`, through vFiles: they are written to a file
/// beside it, flushed to the disk, read back and compared, and renamed over it. At every moment
/// the path holds all of the old file or all of the new one. A symbolic link is followed, and
/// an old file's permissions are kept; a hard link to it is not.
///
/// False, with the old file as it was and nothing left beside it, when that failed; `why` then
/// says what failed and what the user can do, in whole sentences. After true `why` is empty, or
/// a warning that the disk has not confirmed the new name.
bool ReplaceFile(const std::string& path, std::string_view bytes, std::string& why);
