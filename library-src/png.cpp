#include "library-src/png.h"

#include "library-src/whole_file.h"

#include <zlib.h>

namespace {

const Bytef* Data(const std::string& bytes) { return reinterpret_cast<const Bytef*>(bytes.data()); }

void PutChunk(std::string& png, const std::string& type, const std::string& contents) {
    Put32(png, static_cast<unsigned>(contents.size()));
    std::string checked = type + contents;
    png += checked;
    Put32(png, static_cast<unsigned>(crc32(0, Data(checked), static_cast<uInt>(checked.size()))));
}

std::string Compressed(const std::string& bytes) {
    uLongf size = compressBound(bytes.size());
    std::string packed(size, '\0');
    compress2(reinterpret_cast<Bytef*>(packed.data()), &size, Data(bytes), bytes.size(),
              Z_BEST_COMPRESSION);
    packed.resize(size);
    return packed;
}

}  // namespace

Picture::Picture(int w, int h, uint8_t color)
    : width(w), height(h), pixels(static_cast<size_t>(w) * static_cast<size_t>(h), color) {}

void Picture::Put(int x, int y, uint8_t color) {
    pixels[static_cast<size_t>(y * width + x)] = color;
}

void Picture::Fill(int x, int y, int w, int h, uint8_t color) {
    for (int row = y; row < y + h; ++row) {
        for (int column = x; column < x + w; ++column) Put(column, row, color);
    }
}

std::string MakePng(const Picture& picture, const Palette& palette) {
    std::string header;
    Put32(header, static_cast<unsigned>(picture.width));
    Put32(header, static_cast<unsigned>(picture.height));
    header += {8, 3, 0, 0, 0};  // 8 bits, by palette, in plain rows

    std::string colors;
    for (const Color& color : palette.colors) {
        for (uint8_t part : {color.red, color.green, color.blue}) {
            colors += static_cast<char>(Shown(part));
        }
    }

    std::string rows;
    for (auto row = picture.pixels.begin(); row != picture.pixels.end(); row += picture.width) {
        rows += '\0';  // no filter
        rows.append(row, row + picture.width);
    }

    std::string png = "\x89PNG\r\n\x1a\n";
    PutChunk(png, "IHDR", header);
    PutChunk(png, "PLTE", colors);
    PutChunk(png, "IDAT", Compressed(rows));
    PutChunk(png, "IEND", "");
    return png;
}
