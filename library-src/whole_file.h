// Writing an output so that a half-written one is never taken for a finished one.
#pragma once

#include <filesystem>
#include <string>

// Where an output is written before it takes its place.
std::filesystem::path PathBeside(const std::filesystem::path& file);

// Moves what stands at PathBeside to the file itself. False when that fails.
bool TakePlace(const std::filesystem::path& file);

// Writes the bytes as the whole of the file. False when that fails.
bool WriteWhole(const std::filesystem::path& file, const std::string& bytes);

// Big-endian numbers, as datafiles and PNG pictures store them.
void Put16(std::string& bytes, int value);
void Put32(std::string& bytes, unsigned value);
