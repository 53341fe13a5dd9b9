#include "tool/png_file.h"

#include <png.h>

#include <array>
#include <vector>

struct PngFile::State {
    png_structp png = nullptr;
    png_infop info = nullptr;
    int scale = 1;
    bool good = false;
    std::string bytes;
    std::vector<unsigned char> row;
};

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

PngFile::PngFile(int w, int h, int scale, const RGB* palette) : state(std::make_unique<State>()) {
    State& s = *state;
    s.scale = scale;
    s.row.resize(static_cast<std::size_t>(w) * static_cast<std::size_t>(scale));
    std::array<png_color, 256> colors;
    for (std::size_t i = 0; i < colors.size(); ++i)
        colors[i] = {Wide(palette[i].r), Wide(palette[i].g), Wide(palette[i].b)};
    s.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    s.info = s.png ? png_create_info_struct(s.png) : nullptr;
    if (!s.info || setjmp(png_jmpbuf(s.png))) return;
    png_set_write_fn(s.png, &s.bytes, Append, Flush);
    png_set_user_limits(s.png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_IHDR(s.png, s.info, static_cast<png_uint_32>(w * scale),
                 static_cast<png_uint_32>(h * scale), 8, PNG_COLOR_TYPE_PALETTE, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_PLTE(s.png, s.info, colors.data(), static_cast<int>(colors.size()));
    png_set_filter(s.png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_write_info(s.png, s.info);
    s.good = true;
}

PngFile::~PngFile() { png_destroy_write_struct(&state->png, &state->info); }

void PngFile::AddRow(const unsigned char* pixels) {
    State& s = *state;
    if (!s.good) return;
    auto to = s.row.begin();
    for (; to != s.row.end(); to += s.scale, ++pixels) std::fill_n(to, s.scale, *pixels);
    if (setjmp(png_jmpbuf(s.png))) {
        s.good = false;
        return;
    }
    for (int i = 0; i < s.scale; ++i) png_write_row(s.png, s.row.data());
}

std::string PngFile::TakeBytes() {
    State& s = *state;
    if (!s.good || setjmp(png_jmpbuf(s.png))) return {};
    png_write_end(s.png, s.info);
    return std::move(s.bytes);
}
