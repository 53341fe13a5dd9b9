// Opening an archive that may be none, and entries of it that may be too much.
#pragma once

#include "engine/zip_stream.h"

#include <cstdint>
#include <memory>
#include <string>

inline constexpr const char* kNoArchive = "it is no game archive, or its end is missing";

/// Null, with the reason as the end of a sentence, when there is no archive at that path.
std::unique_ptr<ZipReader> OpenArchive(const std::string& path, std::string& why);

/// Most bytes of an entry: of a few numbers, for each number beside those, of a text.
inline constexpr std::uint64_t kMaxNumbers = 1 << 16;
inline constexpr std::uint64_t kMaxNumber = 16;
inline constexpr std::uint64_t kMaxText = std::uint64_t{1} << 31;

inline constexpr const char* kNoEntry = "there is no such entry";

/// Opens an entry; false, with the reason, when there is none or it has more bytes than `limit`.
bool OpenEntry(ZipEntryInStream& in, ZipReader& archive, const std::string& name,
               std::uint64_t limit, std::string& why, std::ios::openmode mode = std::ios::in);
/// Closes it. When what was read so far was `good`, the rest is unpacked, since the checksum is
/// compared at the end. Gives `good`, or false with the reason when the data are damaged or go on
/// for long.
bool FinishEntry(ZipEntryInStream& in, ZipReader& archive, bool good, std::string& why);
