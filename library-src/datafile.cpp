#include "library-src/datafile.h"

namespace {

// Numbers stand in datafiles with the high byte first.
void Put16(std::string& bytes, int value) {
    bytes += static_cast<char>(value >> 8 & 255);
    bytes += static_cast<char>(value & 255);
}

void Put32(std::string& bytes, unsigned value) {
    Put16(bytes, static_cast<int>(value >> 16));
    Put16(bytes, static_cast<int>(value & 0xffff));
}

// A four-letter mark is stored as its letters.
void PutMark(std::string& bytes, const char (&mark)[5]) { bytes.append(mark, 4); }

void PutName(std::string& bytes, const std::string& name) {
    PutMark(bytes, "prop");
    PutMark(bytes, "NAME");
    Put32(bytes, static_cast<unsigned>(name.size()));
    bytes += name;
}

// An object that is stored as it is: its size stands twice, packed and unpacked.
void PutObject(std::string& bytes, const char (&type)[5], const std::string& contents) {
    PutMark(bytes, type);
    Put32(bytes, static_cast<unsigned>(contents.size()));
    Put32(bytes, static_cast<unsigned>(contents.size()));
    bytes += contents;
}

std::string BitmapObject(const Sheet& sheet) {
    constexpr int kDepth = 8;
    std::string object;
    Put16(object, kDepth);
    Put16(object, kSheetSize);
    Put16(object, kSheetSize);
    object.append(sheet.begin(), sheet.end());
    return object;
}

std::string PaletteObject(const Palette& palette) {
    std::string object;
    for (const Color& color : palette.colors) {
        for (uint8_t part : {color.red, color.green, color.blue, uint8_t{0}}) {
            object += static_cast<char>(part);
        }
    }
    return object;
}

}  // namespace

std::string MakeDatafile(const Sheet& sheet, const Palette& palette) {
    constexpr unsigned kObjects = 2;
    std::string bytes;
    PutMark(bytes, "slh.");
    PutMark(bytes, "ALL.");
    Put32(bytes, kObjects);
    PutName(bytes, "SHEET");
    PutObject(bytes, "BMP ", BitmapObject(sheet));
    PutName(bytes, "PALETTE");
    PutObject(bytes, "PAL ", PaletteObject(palette));
    return bytes;
}
