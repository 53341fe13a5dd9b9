#include "editor/tools/tile_clip_files.h"

#include "engine/dobject.h"
#include "engine/open_archive.h"
#include "engine/picture_file.h"
#include "engine/replace_file.h"
#include "engine/report.h"
#include "engine/text_scanner.h"

#include <algorithm>
#include <new>
#include <sstream>

const char* const kClipLoadFilter =
    "QUILT! ClipBoard Files (*.qcf)|*.qcf|Char Files (*.chr)|*.chr|Char Files (*.txt)|*.txt|"
    "Bmp Files (*.bmp)|*.bmp|Attrib Files (*.att)|*.att||";

namespace {

constexpr std::uint16_t kNoValue = 65535;
constexpr Dtile kNothing{kNoValue, kNoValue, kNoValue, kNoValue};
constexpr std::size_t kMaxTextLine = 9998;
constexpr const char* kSizeEntry = "size.hdr";
constexpr const char* kCellsEntry = "clip.dat";

using Status = TextScanner::Status;

// A clipboard that is being read.
struct Clip {
    std::int32_t w = 0;
    std::int32_t h = 0;
    std::vector<Dtile> cells;

    std::size_t Size() const { return static_cast<std::size_t>(w) * static_cast<std::size_t>(h); }
    bool SetSize(std::int32_t width, std::int32_t height) {
        w = width;
        h = height;
        return w > 0 && h > 0 && IsGridSize(w, h);
    }
};

struct Fault {
    std::string why;
    bool silent = false;  ///< for the trace only

    bool Report(const std::string& text) {
        why = text;
        return false;
    }
    bool Note(const std::string& text) {
        silent = true;
        return Report(text);
    }
    bool BadSize(const Clip& clip) {
        return Report("a size of " + std::to_string(clip.w) + " by " + std::to_string(clip.h) +
                      " cells cannot be");
    }
    bool EndsAfter(const Clip& clip) {
        return Note("it ends after " + std::to_string(clip.cells.size()) + " of " +
                    std::to_string(clip.Size()) + " cells");
    }
};

// --- reading -----------------------------------------------------------------------------------

bool ReadSize(std::streambuf& text, Clip& clip, Fault& fault) {
    TextScanner scanner(text);
    std::int32_t w = 0;
    std::int32_t h = 0;
    if (scanner.Number(w) != Status::kGood || scanner.Number(h) != Status::kGood)
        return fault.Note("two numbers for its size are expected");
    return clip.SetSize(w, h) || fault.BadSize(clip);
}

// A number of 16 bits, signed or not.
bool ReadField(TextScanner& scanner, std::uint16_t& field) {
    std::int32_t number = 0;
    if (scanner.Number(number) != Status::kGood) return false;
    if (number < INT16_MIN || number > UINT16_MAX) return false;
    field = static_cast<std::uint16_t>(number);
    return true;
}

// Cells are taken as they come: the size alone asks for no memory.
template <typename Read>
bool ReadCells(std::streambuf& text, Clip& clip, Fault& fault, Read read) {
    TextScanner scanner(text);
    while (clip.cells.size() < clip.Size()) {
        Dtile cell = kNothing;
        if (!read(scanner, cell)) return fault.EndsAfter(clip);
        clip.cells.push_back(cell);
    }
    return true;
}

bool ReadWholeTiles(const std::string& path, Clip& clip, Fault& fault) {
    std::string why;
    const std::unique_ptr<ZipReader> archive = OpenArchive(path, why);
    if (!archive) return fault.Note(why);
    const auto note = [&](const char* entry) {
        return fault.Note(std::string(entry) + ": " + why);
    };
    ZipEntryInStream in;
    if (!OpenEntry(in, *archive, kSizeEntry, kMaxNumbers, why)) return note(kSizeEntry);
    if (!ReadSize(*in.rdbuf(), clip, fault)) return false;
    constexpr std::uint64_t kFields = 4;
    if (!OpenEntry(in, *archive, kCellsEntry, kMaxNumbers + kFields * kMaxNumber * clip.Size(),
                   why))
        return note(kCellsEntry);
    const bool read = ReadCells(*in.rdbuf(), clip, fault, [](TextScanner& scanner, Dtile& cell) {
        return ReadField(scanner, cell.chr) && ReadField(scanner, cell.fg) &&
               ReadField(scanner, cell.bg) && ReadField(scanner, cell.attrib);
    });
    return FinishEntry(in, *archive, read, why) || (!why.empty() && note(kCellsEntry));
}

bool ReadAttributes(const std::string& path, Clip& clip, Fault& fault) {
    std::string bytes;
    std::string why;
    if (!ReadWholeFile(path, bytes, why)) return fault.Note(why);
    std::stringbuf text(bytes);
    return ReadSize(text, clip, fault) &&
           ReadCells(text, clip, fault, [](TextScanner& scanner, Dtile& cell) {
               return ReadField(scanner, cell.attrib);
           });
}

// Height is the number of lines, the empty one behind a last line end included; width is the
// longest. Where lines end with two characters only the line feed counts.
bool MeasureText(const std::string& text, Clip& clip, Fault& fault) {
    std::size_t longest = 0;
    std::int32_t lines = 0;
    for (std::size_t start = 0; start <= text.size(); ++lines) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        std::size_t length = end - start;
        if (length > 0 && text[end - 1] == '\r') --length;
        longest = std::max(longest, length);
        start = end + 1;
    }
    if (longest > kMaxTextLine)
        return fault.Report("a line has more than " + std::to_string(kMaxTextLine) + " characters");
    return clip.SetSize(static_cast<std::int32_t>(longest), lines) || fault.BadSize(clip);
}

// The characters flow into the grid without regard to the lines; the last one fills the rest.
bool ReadTextGlyphs(const std::string& path, Clip& clip, Fault& fault) {
    std::string text;
    std::string why;
    if (!ReadWholeFile(path, text, why)) return fault.Report(why);
    if (!MeasureText(text, clip, fault)) return false;
    Dtile cell = kNothing;
    for (const char c : text) {
        if (TextScanner::IsSpace(static_cast<unsigned char>(c))) continue;
        if (clip.cells.size() == clip.Size()) break;
        cell.chr = static_cast<unsigned char>(c);
        clip.cells.push_back(cell);
    }
    if (clip.cells.empty()) return fault.Report("it holds no characters");
    clip.cells.resize(clip.Size(), cell);
    return true;
}

// The pixels of a picture, one for each cell.
template <typename Put>
bool TakePixels(BITMAP* picture, Clip& clip, Fault& fault, Put put) {
    if (!clip.SetSize(picture->w, picture->h)) return fault.BadSize(clip);
    clip.cells.assign(clip.Size(), kNothing);
    for (int i = 0; i < static_cast<int>(clip.Size()); ++i)
        put(clip.cells[static_cast<std::size_t>(i)],
            getpixel(picture, i % picture->w, i / picture->w));
    return true;
}

bool ReadGlyphPicture(const std::string& path, Clip& clip, Fault& fault) {
    std::string bytes;
    if (!ReadWholeFile(path, bytes, fault.why, "\n")) return false;
    const Bitmap picture = ReadPcx24(bytes, fault.why);
    return picture && TakePixels(picture.get(), clip, fault, [](Dtile& cell, int pixel) {
               cell.chr = static_cast<std::uint16_t>(pixel & 0xffff);
           });
}

bool ReadColorPicture(const std::string& path, Clip& clip, Fault& fault,
                      const std::function<bool()>& asForeground) {
    std::string bytes;
    if (!ReadWholeFile(path, bytes, fault.why, "BM")) return false;
    const Bitmap picture = ReadBmp(bytes, fault.why);
    if (!picture) return false;
    const auto plane = asForeground() ? &Dtile::fg : &Dtile::bg;
    return TakePixels(picture.get(), clip, fault, [plane](Dtile& cell, int pixel) {
        cell.*plane = static_cast<std::uint16_t>(pixel);
    });
}

bool ReadClip(const std::string& path, const std::string& extension, Clip& clip, Fault& fault,
              const std::function<bool()>& asForeground) {
    if (extension == "txt") return ReadTextGlyphs(path, clip, fault);
    if (extension == "att") return ReadAttributes(path, clip, fault);
    if (extension == "chr") return ReadGlyphPicture(path, clip, fault);
    if (extension == "qcf") return ReadWholeTiles(path, clip, fault);
    return ReadColorPicture(path, clip, fault, asForeground);
}

bool IsKnown(const std::string& extension) {
    constexpr const char* kKnown[] = {"txt", "att", "chr", "qcf", "bmp"};
    return std::find(std::begin(kKnown), std::end(kKnown), extension) != std::end(kKnown);
}

// --- writing -----------------------------------------------------------------------------------

const Dtile& CellAt(int x, int y) {
    return vTileClip[static_cast<std::size_t>(y) * static_cast<std::size_t>(vTileClipW) +
                     static_cast<std::size_t>(x)];
}

template <typename Pixel>
Bitmap MakePicture(int depth, Pixel pixel) {
    Bitmap picture(create_bitmap_ex(depth, vTileClipW, vTileClipH));
    for (int y = 0; picture && y < vTileClipH; ++y)
        for (int x = 0; x < vTileClipW; ++x) putpixel(picture.get(), x, y, pixel(CellAt(x, y)));
    return picture;
}

std::string GlyphBytes() {
    const Bitmap picture =
        MakePicture(24, [](const Dtile& cell) { return Signed(cell.chr) & 0xffffff; });
    return picture ? MakePcx(picture.get(), vWorld->GetFont()->GetPalette()) : std::string();
}

std::string ColorBytes(std::uint16_t Dtile::*plane) {
    const Bitmap picture = MakePicture(8, [plane](const Dtile& c) { return c.*plane & 0xff; });
    return picture ? MakeBmp(picture.get(), vWorld->GetFont()->GetPalette()) : std::string();
}

std::string SizeLine() {
    return std::to_string(vTileClipW) + ' ' + std::to_string(vTileClipH) + '\n';
}

std::string AttributeBytes() {
    std::string text = SizeLine();
    for (int y = 0; y < vTileClipH; ++y) {
        for (int x = 0; x < vTileClipW; ++x)
            (text += std::to_string(Signed(CellAt(x, y).attrib))) += ' ';
        text += '\n';
    }
    return text;
}

std::string WholeBytes() {
    ZipWriter archive;
    ZipEntryOutStream out;
    out.open(archive, kSizeEntry);
    out << SizeLine();
    bool good = out.good() && out.close();
    out.open(archive, kCellsEntry);
    for (int y = 0; y < vTileClipH; ++y) {
        for (int x = 0; x < vTileClipW; ++x) {
            const Dtile& cell = CellAt(x, y);
            out << Signed(cell.chr) << ' ' << Signed(cell.fg) << ' ' << Signed(cell.bg) << ' '
                << Signed(cell.attrib) << ' ';
        }
    }
    good = out.good() && out.close() && good;
    return archive.Close() && good ? archive.TakeBytes() : std::string();
}

std::string ClipBytes() {
    switch (ClipKindOf(vTileClip.front())) {
        case ClipKind::Glyphs:
            return GlyphBytes();
        case ClipKind::Foreground:
            return ColorBytes(&Dtile::fg);
        case ClipKind::Background:
            return ColorBytes(&Dtile::bg);
        case ClipKind::Attributes:
            return AttributeBytes();
        default:
            return WholeBytes();
    }
}

}  // namespace

ClipKind ClipKindOf(const Dtile& first) {
    const bool chr = first.chr != kNoValue;
    const bool fg = first.fg != kNoValue;
    const bool bg = first.bg != kNoValue;
    const bool attrib = first.attrib != kNoValue;
    if (chr + fg + bg + attrib != 1) return ClipKind::Whole;
    if (chr) return ClipKind::Glyphs;
    if (fg) return ClipKind::Foreground;
    return bg ? ClipKind::Background : ClipKind::Attributes;
}

const ClipFormat& SaveFormat(ClipKind kind) {
    static constexpr ClipFormat kWhole{"qcf", "QUILT! ClipBoard Files (*.qcf)|*.qcf||"};
    static constexpr ClipFormat kGlyphs{"chr", "Char Files (*.chr)|*.chr||"};
    static constexpr ClipFormat kColor{"bmp", "Bmp Files (*.bmp)|*.bmp||"};
    static constexpr ClipFormat kAttributes{"att", "Attrib Files (*.att)|*.att||"};
    switch (kind) {
        case ClipKind::Glyphs:
            return kGlyphs;
        case ClipKind::Foreground:
        case ClipKind::Background:
            return kColor;
        case ClipKind::Attributes:
            return kAttributes;
        default:
            return kWhole;
    }
}

bool LoadTileClip(const std::string& path, const std::function<bool()>& asForeground) {
    const std::string extension = get_extension(path.c_str());
    if (!IsKnown(extension)) {
        constexpr int kPlace = 235;
        Fatal("Test", extension.c_str(), kPlace);
        return false;
    }
    Clip clip;
    Fault fault;
    bool read = false;
    try {
        read = ReadClip(path, extension, clip, fault, asForeground);
    } catch (const std::bad_alloc&) {
        fault.Report("there is not enough memory");
    }
    if (read) {
        vTileClip = std::move(clip.cells);
        vTileClipW = clip.w;
        vTileClipH = clip.h;
        return true;
    }
    const std::string text = path + " could not be loaded.\n" + fault.why;
    if (fault.silent)
        Trace("%s\n", text.c_str());
    else
        Fatal(text.c_str(), path.c_str(), 0);
    return false;
}

bool SaveTileClip(const std::string& path) {
    const std::string bytes = ClipBytes();
    std::string why = path + " could not be saved: there is not enough memory.";
    const bool saved = !bytes.empty() && ReplaceFile(path, bytes, why);
    if (!why.empty()) Trace("%s\n", why.c_str());
    return saved;
}
