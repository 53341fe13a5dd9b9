#include "engine/picture_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <new>

namespace {

constexpr std::uintmax_t kMaxFileBytes = std::uintmax_t{1} << 30;
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
    Memory& file = Of(data);
    if (file.position == 0) return EOF;
    --file.position;
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

bool CheckBmp(std::string_view bytes, std::string& why) {
    constexpr std::size_t kFileHeader = 14;
    constexpr std::size_t kInfoHeader = 40;
    if (bytes.size() < kFileHeader + kInfoHeader || bytes.substr(0, 2) != "BM")
        return Refuse(why, "it is no BMP picture");
    const std::uint32_t start = Number(bytes, 10, 4);
    const std::uint32_t header = Number(bytes, 14, 4);
    if (header != kInfoHeader) return Refuse(why, "its form of BMP is not known");
    const auto w = static_cast<std::int32_t>(Number(bytes, 18, 4));
    const auto h = static_cast<std::int32_t>(Number(bytes, 22, 4));
    const std::uint32_t depth = Number(bytes, 28, 2);
    const std::uint32_t packing = Number(bytes, 30, 4);
    if (!CheckSides(w, std::abs(std::int64_t{h}), why)) return false;
    if (h < 0) return Refuse(why, "its rows run from the top down");
    if (packing != 0) return Refuse(why, "it is compressed");
    if (depth != 1 && depth != 4 && depth != 8 && depth != 24 && depth != 32)
        return Refuse(why, "its number of bits a pixel is not known");
    const std::uint64_t row = (std::uint64_t{depth} * static_cast<std::uint32_t>(w) + 31) / 32 * 4;
    const std::uint64_t colors = depth <= 8 ? std::uint64_t{4} << depth : 0;
    // Allegro reads the colours of the palette up to where the pixels begin.
    if (start < kFileHeader + kInfoHeader || start - (kFileHeader + kInfoHeader) > colors)
        return Refuse(why, "its pixels begin at an unlikely place");
    if (bytes.size() < start || bytes.size() - start < row * static_cast<std::uint32_t>(h))
        return Refuse(why, "it ends before its last pixel");
    return true;
}

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
    if (packed * 63 / 2 + 63 < std::int64_t{row} * 3 * h)
        return Refuse(why, "it ends before its last pixel");
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
