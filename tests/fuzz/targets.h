// What the fuzzers run and the replay test repeats: each takes any bytes and ends the program
// by abort() when something that must always hold does not.
#pragma once

#include <cstddef>
#include <cstdint>

/// Starts Allegro and makes a world, once; to be called in the folder that holds Library/.
void StartTargets();

/// The bytes as a game archive: read, composed anew, and read again.
void FuzzArchive(const std::uint8_t* data, std::size_t size);
/// The bytes as a game's text: read, drawn, written and read again.
void FuzzText(const std::uint8_t* data, std::size_t size);
/// The first byte as the number of a node, the rest as a selector seen from it.
void FuzzSelector(const std::uint8_t* data, std::size_t size);

/// The bytes as a file of the tile clipboard: loaded, saved in the format of its kind, and loaded
/// again. A picture of colours is taken as the foreground.
void FuzzQcf(const std::uint8_t* data, std::size_t size);
void FuzzChr(const std::uint8_t* data, std::size_t size);
void FuzzTxt(const std::uint8_t* data, std::size_t size);
void FuzzAtt(const std::uint8_t* data, std::size_t size);
void FuzzBmp(const std::uint8_t* data, std::size_t size);
/// The bytes as an object file "fuzz.zobj": imported, exported and imported again.
void FuzzZobj(const std::uint8_t* data, std::size_t size);

/// The bytes as a damaged archive: what is saved of them can be composed and read.
void FuzzRepair(const std::uint8_t* data, std::size_t size);

/// What every target checks by: aborts with the text when it does not hold.
void Require(bool holds, const char* what);
