// Opening an archive that may be none.
#pragma once

#include "engine/zip_stream.h"

#include <memory>
#include <string>

inline constexpr const char* kNoArchive = "it is no game archive, or its end is missing";

/// Null, with the reason as the end of a sentence, when there is no archive at that path.
std::unique_ptr<ZipReader> OpenArchive(const std::string& path, std::string& why);
