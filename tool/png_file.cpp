#include "tool/png_file.h"

#include "engine/eight_bytes.h"

#include <png.h>

#include <array>
#include <utility>
#include <vector>

struct PngFile::State {
    png_structp png = nullptr;
    png_infop info = nullptr;
    int scale = 1;
    bool good = false;
    int bits = 8;                                ///< of a pixel
    int colors = 0;                              ///< in the file's palette
    std::array<unsigned char, 256> number = {};  ///< in the file's palette, of each colour
    std::string bytes;
    std::vector<unsigned char> row;     ///< with each pixel as often as the scale says
    std::vector<unsigned char> packed;  ///< the row as the file has it

    void Pack(const unsigned char* pixels);
    const unsigned char* RowOf(const unsigned char* pixels);
    void Write(const unsigned char* written);
};

// Pixels of tiles come in eights, which are often those before.
void PngFile::State::Pack(const unsigned char* pixels) {
    constexpr int kEight = 8;
    std::uint64_t last = ~LoadEight(pixels);
    std::uint64_t eight = 0;
    for (auto to = packed.begin(); to != packed.end(); pixels += kEight) {
        // What was in it leaves it at its upper end.
        if (std::exchange(last, LoadEight(pixels)) != last)
            for (int i = 0; i < kEight; ++i) eight = eight << bits | number[pixels[i]];
        for (int shift = 8 * (bits - 1); shift >= 0; shift -= 8)
            *to++ = static_cast<unsigned char>(eight >> shift);
    }
}

// A row as the file has it.
void PngFile::State::Write(const unsigned char* written) {
    if (setjmp(png_jmpbuf(png))) {
        good = false;
        return;
    }
    for (int i = 0; i < scale; ++i) png_write_row(png, written);
}

// As the file has it, until the next call.
const unsigned char* PngFile::State::RowOf(const unsigned char* pixels) {
    const unsigned char* from = pixels;
    for (auto to = row.begin(); to != row.end(); ++from)
        for (int i = 0; i < scale; ++i) *to++ = *from;
    if (scale > 1) pixels = row.data();
    if (bits == 8) return pixels;
    Pack(pixels);
    return packed.data();
}

namespace {

// libpng leaves a call that fails by a jump; no object with a destructor may be on its way.
void Append(png_structp png, png_bytep data, std::size_t count) {
    auto& bytes = *static_cast<std::string*>(png_get_io_ptr(png));
    bool appended = true;
    try {
        bytes.append(reinterpret_cast<const char*>(data), count);
    } catch (...) {
        appended = false;
    }
    if (!appended) png_error(png, "there is not enough memory");
}

void Flush(png_structp) {}

png_byte Wide(int six) { return static_cast<png_byte>(six << 2 | six >> 4); }

}  // namespace

PngFile::PngFile(int w, int h, int scale, const RGB* palette, const ColorSet& used)
    : state(std::make_unique<State>()) {
    // What a level costs more than this one, it does not win with pictures of tiles.
    constexpr int kLevel = 4;
    State& s = *state;
    s.scale = scale;
    const std::size_t length = static_cast<std::size_t>(w) * static_cast<std::size_t>(scale);
    if (scale > 1) s.row.resize(length);
    const std::size_t count = used.count();
    s.bits = count <= 2 ? 1 : count <= 4 ? 2 : count <= 16 ? 4 : 8;
    if (s.bits < 8) s.packed.resize(length / 8 * static_cast<std::size_t>(s.bits));
    std::array<png_color, 256> colors;
    for (std::size_t i = 0; i < colors.size(); ++i) {
        if (s.bits < 8 && !used[i]) continue;
        s.number[i] = static_cast<unsigned char>(s.colors);
        colors[static_cast<std::size_t>(s.colors++)] = {Wide(palette[i].r), Wide(palette[i].g),
                                                        Wide(palette[i].b)};
    }
    s.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    s.info = s.png ? png_create_info_struct(s.png) : nullptr;
    if (!s.info || setjmp(png_jmpbuf(s.png))) return;
    png_set_write_fn(s.png, &s.bytes, Append, Flush);
    png_set_user_limits(s.png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_IHDR(s.png, s.info, static_cast<png_uint_32>(w * scale),
                 static_cast<png_uint_32>(h * scale), s.bits, PNG_COLOR_TYPE_PALETTE,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_PLTE(s.png, s.info, colors.data(), s.colors);
    // Neighbours of a palette's numbers say nothing of a color: no filter suits them.
    png_set_filter(s.png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_set_compression_level(s.png, kLevel);
    png_write_info(s.png, s.info);
    s.good = true;
}

PngFile::~PngFile() { png_destroy_write_struct(&state->png, &state->info); }

void PngFile::AddRow(const unsigned char* pixels) {
    if (state->good) state->Write(state->RowOf(pixels));
}

std::string PngFile::TakeBytes() {
    State& s = *state;
    if (!s.good || setjmp(png_jmpbuf(s.png))) return {};
    png_write_end(s.png, s.info);
    return std::move(s.bytes);
}
