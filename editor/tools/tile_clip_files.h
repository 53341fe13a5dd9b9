// The tile clipboard in files: five formats, each with another slice of a tile.
//
//   .qcf  whole tiles     .chr  glyphs, as a picture     .txt  glyphs, from a text; read only
//   .bmp  one colour      .att  attributes
//
// docs/formats.md describes them. A file is read and checked whole before it becomes the
// clipboard: one that cannot be read leaves the clipboard as it was. A file is replaced only by
// a complete new one.
#pragma once

#include "editor/view/tile_clip.h"

#include <functional>
#include <string>

enum class ClipKind { Whole, Glyphs, Foreground, Background, Attributes };

/// What the clipboard holds, by its first cell alone.
ClipKind ClipKindOf(const Dtile& first);

/// The format in which a kind is saved.
struct ClipFormat {
    const char* extension;  ///< without a dot
    const char* filter;     ///< of the file dialog
};
const ClipFormat& SaveFormat(ClipKind kind);
extern const char* const kClipLoadFilter;

/// Reads a file by its extension, compared exactly. `asForeground` is asked when the file holds
/// colours. False with the clipboard as it was: an unknown extension and what cannot be read
/// are reported; an .att or .qcf that cannot be opened, is damaged or ends early only leaves a
/// line in the trace.
bool LoadTileClip(const std::string& path, const std::function<bool()>& asForeground);

/// Writes the clipboard, which is not empty, in the format of its kind. False, with a line in
/// the trace and the old file as it was, when that fails.
bool SaveTileClip(const std::string& path);
