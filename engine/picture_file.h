// BMP and PCX pictures, by Allegro's own readers and writers over memory.
//
// Allegro's readers believe a file's sizes. What they are given here has been checked against
// the bytes that are there, and forms that they cannot read safely are refused.
#pragma once

#include "engine/bitmap.h"

#include <string>
#include <string_view>

/// Largest side of a picture that is read, in pixels.
inline constexpr int kMaxPictureSide = 32767;

/// A BMP picture at 8 bits: one of another depth in the nearest colours of the current palette,
/// one of 8 bits with its own pixel values. Null with the reason when it cannot be read.
Bitmap ReadBmp(std::string_view bytes, std::string& why);
/// A PCX picture at 24 bits. Null with the reason when it cannot be read.
Bitmap ReadPcx24(std::string_view bytes, std::string& why);

/// The bytes of a picture file; empty when there is no memory for it.
std::string MakeBmp(BITMAP* picture, const RGB* palette);
std::string MakePcx(BITMAP* picture, const RGB* palette);

/// All bytes of a file. False with the reason when it cannot be read or is larger than what a
/// picture can take, or, unread, when it does not begin with `start`.
bool ReadWholeFile(const std::string& path, std::string& bytes, std::string& why,
                   std::string_view start = {});
