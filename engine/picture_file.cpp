#include "engine/picture_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>

namespace {

// The largest picture with every pixel packed as badly as can be, or every number of a text.
constexpr std::uintmax_t kMaxFileBytes = std::uintmax_t{1} << 29;
constexpr std::int64_t kMaxPixels = 67'108'864;

// --- a file of Allegro's in memory -------------------------------------------------------------

struct Memory {
    std::string written;
    std::string_view source;
    std::size_t position = 0;
    bool failed = false;
};

Memory& Of(void* data) { return *static_cast<Memory*>(data); }

int Close(void*) { return 0; }
int GetByte(void* data) {
    Memory& file = Of(data);
    if (file.position >= file.source.size()) return EOF;
    return static_cast<unsigned char>(file.source[file.position++]);
}
int UngetByte(int c, void* data) {
    --Of(data).position;
    return c;
}
long Read(void* to, long count, void* data) {
    Memory& file = Of(data);
    const std::size_t n =
        std::min(static_cast<std::size_t>(std::max(count, 0L)), file.source.size() - file.position);
    std::memcpy(to, file.source.data() + file.position, n);
    file.position += n;
    return static_cast<long>(n);
}
long Write(const void* from, long count, void* data) {
    Memory& file = Of(data);
    try {
        file.written.append(static_cast<const char*>(from), static_cast<std::size_t>(count));
    } catch (const std::bad_alloc&) {
        file.failed = true;
        return 0;
    }
    return count;
}
int PutByte(int c, void* data) {
    const char byte = static_cast<char>(c);
    return Write(&byte, 1, data) == 1 ? c : EOF;
}
int Seek(void* data, int offset) {
    Memory& file = Of(data);
    const std::size_t room = file.source.size() - file.position;
    file.position += std::min(static_cast<std::size_t>(std::max(offset, 0)), room);
    return 0;
}
int AtEnd(void* data) { return Of(data).position >= Of(data).source.size(); }
int Failed(void*) { return 0; }

constexpr PACKFILE_VTABLE kMemoryFile{Close, GetByte, UngetByte, Read,  PutByte,
                                      Write, Seek,    AtEnd,     Failed};

template <typename Use>
bool WithFile(Memory& memory, Use use) {
    PACKFILE* file = pack_fopen_vtable(&kMemoryFile, &memory);
    if (!file) return false;
    use(file);
    pack_fclose(file);
    return !memory.failed;
}

// --- checks ------------------------------------------------------------------------------------

std::uint32_t Number(std::string_view bytes, std::size_t at, int size) {
    std::uint32_t value = 0;
    for (int i = size - 1; i >= 0; --i)
        value = value << 8 | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    return value;
}

bool CheckSides(std::int64_t w, std::int64_t h, std::string& why) {
    if (w >= 1 && h >= 1 && w <= kMaxPictureSide && h <= kMaxPictureSide && w * h <= kMaxPixels)
        return true;
    why = "a picture of " + std::to_string(w) + " by " + std::to_string(h) +
          " pixels cannot be taken";
    return false;
}

bool Refuse(std::string& why, const char* text) {
    why = text;
    return false;
}

// --- BMP pictures ------------------------------------------------------------------------------

constexpr const char* kCut = "it ends before its last pixel";

struct Bmp {
    std::int64_t w = 0;
    std::int64_t h = 0;
    std::uint32_t depth = 0;
    std::uint32_t packing = 0;
    std::size_t tables = 0;  ///< behind its headers
    std::size_t start = 0;   ///< of its pixels
};

// The ways of packing beside plain rows, 0.
constexpr std::uint32_t kRuns8 = 1;
constexpr std::uint32_t kRuns4 = 2;
constexpr std::uint32_t kFields = 3;
constexpr std::size_t kFieldBytes = 12;

// The only ones that load_bmp tells apart.
bool AreKnownFields(std::string_view masks, std::uint32_t depth) {
    static constexpr std::uint32_t kKnown[][4] = {{16, 0x7c00, 0x03e0, 0x001f},
                                                  {16, 0xf800, 0x07e0, 0x001f},
                                                  {32, 0xff0000, 0x00ff00, 0x0000ff}};
    return std::any_of(std::begin(kKnown), std::end(kKnown), [&](const auto& known) {
        return known[0] == depth && known[1] == Number(masks, 0, 4) &&
               known[2] == Number(masks, 4, 4) && known[3] == Number(masks, 8, 4);
    });
}

bool ReadBmpHeaders(std::string_view bytes, Bmp& bmp, std::string& why) {
    constexpr std::size_t kFileHeader = 14;
    constexpr std::size_t kShortHeader = 12;
    constexpr std::size_t kHeader = 40;
    if (bytes.size() < kFileHeader + kShortHeader || bytes.substr(0, 2) != "BM")
        return Refuse(why, "it is no BMP picture");
    bmp.start = Number(bytes, 10, 4);
    const std::size_t header = Number(bytes, 14, 4);
    if (header != kShortHeader && header != kHeader)
        return Refuse(why, "its form of BMP is not known");
    bmp.tables = kFileHeader + header;
    if (bytes.size() < bmp.tables) return Refuse(why, kCut);
    if (header == kHeader) {
        bmp.w = static_cast<std::int32_t>(Number(bytes, 18, 4));
        bmp.h = static_cast<std::int32_t>(Number(bytes, 22, 4));
        bmp.depth = Number(bytes, 28, 2);
        bmp.packing = Number(bytes, 30, 4);
    } else {
        bmp.w = Number(bytes, 18, 2);
        bmp.h = Number(bytes, 20, 2);
        bmp.depth = Number(bytes, 24, 2);
    }
    return true;
}

bool CheckForm(std::string_view bytes, const Bmp& bmp, std::string& why) {
    const std::uint32_t depth = bmp.depth;
    if (!CheckSides(bmp.w, std::abs(bmp.h), why)) return false;
    if (bmp.h < 0) return Refuse(why, "its rows run from the top down");
    if (bmp.packing > kFields) return Refuse(why, "its packing is not known");
    if (depth != 1 && depth != 4 && depth != 8 && depth != 16 && depth != 24 && depth != 32)
        return Refuse(why, "its number of bits a pixel is not known");
    if ((bmp.packing == kRuns8 && depth != 8) || (bmp.packing == kRuns4 && depth != 4))
        return Refuse(why, "its packing does not fit its bits a pixel");
    if (bmp.start < bmp.tables || bmp.start > bytes.size())
        return Refuse(why, "its pixels begin at an unlikely place");
    if (bmp.packing != kFields) return true;
    // Behind fields load_bmp takes whatever follows for the pixels.
    if (bmp.start != bmp.tables + kFieldBytes)
        return Refuse(why, "its pixels do not follow its bit fields");
    return AreKnownFields(bytes.substr(bmp.tables), depth) ||
           Refuse(why, "its bit fields are not known");
}

// Walks what load_bmp unpacks without looking where it writes, or whether there is an end.
bool CheckRuns(std::string_view packed, const Bmp& bmp, std::string& why) {
    constexpr unsigned kEndOfRow = 0, kEnd = 1, kStep = 2;
    std::int64_t x = 0;
    std::int64_t y = 0;
    for (std::size_t at = 0; at + 2 <= packed.size();) {
        std::int64_t pixels = Number(packed, at, 1);
        const std::uint32_t value = Number(packed, at + 1, 1);
        at += 2;
        if (pixels == 0 && value == kEnd) return true;
        if (pixels == 0 && value == kEndOfRow) {
            x = 0;
            if (++y >= bmp.h) return true;
            continue;
        }
        if (pixels == 0 && value == kStep) {
            if (at + 2 > packed.size()) break;
            x += Number(packed, at, 1);
            y += Number(packed, at + 1, 1);
            at += 2;
        } else if (pixels == 0) {
            pixels = value;
            const std::size_t bytes = bmp.packing == kRuns8 ? value : (value + 1) / 2;
            at += bytes + bytes % 2;
        }
        x += pixels;
        if (x > bmp.w || y > bmp.h || (y == bmp.h && pixels > 0))
            return Refuse(why, "its packed pixels lead out of it");
    }
    return Refuse(why, kCut);
}

bool CheckBmp(std::string_view bytes, std::string& why) {
    Bmp bmp;
    if (!ReadBmpHeaders(bytes, bmp, why) || !CheckForm(bytes, bmp, why)) return false;
    const std::string_view pixels = bytes.substr(bmp.start);
    if (bmp.packing == kRuns8 || bmp.packing == kRuns4) return CheckRuns(pixels, bmp, why);
    const std::int64_t row = (bmp.depth * bmp.w + 31) / 32 * 4;
    return static_cast<std::int64_t>(pixels.size()) >= row * bmp.h || Refuse(why, kCut);
}

// --- PCX pictures ------------------------------------------------------------------------------

bool CheckPcx(std::string_view bytes, std::string& why) {
    constexpr std::size_t kHeader = 128;
    if (bytes.size() < kHeader || bytes[0] != 10 || bytes[2] != 1 || bytes[3] != 8)
        return Refuse(why, "it is no PCX picture");
    const int w = static_cast<int>(Number(bytes, 8, 2)) - static_cast<int>(Number(bytes, 4, 2)) + 1;
    const int h =
        static_cast<int>(Number(bytes, 10, 2)) - static_cast<int>(Number(bytes, 6, 2)) + 1;
    if (!CheckSides(w, h, why)) return false;
    if (bytes[65] != 3) return Refuse(why, "it has no 24 bits a pixel");
    const int row = static_cast<int>(Number(bytes, 66, 2));
    if (row < w || row > w + 1) return Refuse(why, "its rows have an unlikely length");
    // The longest run of the packing is 63 bytes in two.
    const std::int64_t packed = static_cast<std::int64_t>(bytes.size() - kHeader);
    if (packed * 63 / 2 + 63 < std::int64_t{row} * 3 * h) return Refuse(why, kCut);
    return true;
}

Bitmap Checked(BITMAP* read, std::string& why) {
    if (!read) why = "it cannot be read, or there is not enough memory";
    return Bitmap(read);
}

}  // namespace

Bitmap ReadBmp(std::string_view bytes, std::string& why) {
    if (!CheckBmp(bytes, why)) return nullptr;
    Memory memory;
    memory.source = bytes;
    BITMAP* picture = nullptr;
    WithFile(memory, [&](PACKFILE* file) { picture = load_bmp_pf(file, nullptr); });
    return Checked(picture, why);
}

Bitmap ReadPcx24(std::string_view bytes, std::string& why) {
    if (!CheckPcx(bytes, why)) return nullptr;
    constexpr int kPcxDepth = 24;
    constexpr int kUsualDepth = 8;
    Memory memory;
    memory.source = bytes;
    BITMAP* picture = nullptr;
    set_color_depth(kPcxDepth);
    WithFile(memory, [&](PACKFILE* file) { picture = load_pcx_pf(file, nullptr); });
    set_color_depth(kUsualDepth);
    return Checked(picture, why);
}

std::string MakeBmp(BITMAP* picture, const RGB* palette) {
    Memory memory;
    const bool good = WithFile(memory, [&](PACKFILE* f) { save_bmp_pf(f, picture, palette); });
    return good ? std::move(memory.written) : std::string();
}

std::string MakePcx(BITMAP* picture, const RGB* palette) {
    Memory memory;
    const bool good = WithFile(memory, [&](PACKFILE* f) { save_pcx_pf(f, picture, palette); });
    return good ? std::move(memory.written) : std::string();
}

bool ReadWholeFile(const std::string& path, std::string& bytes, std::string& why,
                   std::string_view start) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return Refuse(why, "there is no such file");
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error || size > kMaxFileBytes) return Refuse(why, "it is too large");
    std::ifstream in(path, std::ios::binary);
    std::string first(std::min<std::uintmax_t>(start.size(), size), '\0');
    if (in.read(first.data(), static_cast<std::streamsize>(first.size())) && first != start)
        return Refuse(why, "it is no picture of this kind");
    try {
        in.seekg(0);
        bytes.resize(size);
        in.read(bytes.data(), static_cast<std::streamsize>(size));
    } catch (const std::bad_alloc&) {
        return Refuse(why, "there is not enough memory for it");
    }
    if (in && !in.bad()) return true;
    why = std::string("it cannot be read: ") + std::strerror(errno);
    return false;
}
