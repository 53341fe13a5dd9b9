#include "engine/zip_memory.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace {

constexpr std::size_t kPiece = 1 << 15;

ZipImage& Image(voidpf opaque) { return *static_cast<ZipImage*>(opaque); }
ZipSource& Source(voidpf opaque) { return *static_cast<ZipSource*>(opaque); }

// minizip takes any pointer but null for an open file.
voidpf Open(voidpf opaque, const void*, int) { return opaque; }
int Close(voidpf, voidpf) { return 0; }

// False for a place before the start; the end is no limit, as with files.
bool Seek(std::uint64_t& position, std::uint64_t end, ZPOS64_T offset, int origin) {
    std::uint64_t base = 0;
    if (origin == ZLIB_FILEFUNC_SEEK_CUR) base = position;
    if (origin == ZLIB_FILEFUNC_SEEK_END) base = end;
    const std::uint64_t target = base + offset;  // the offset may be a negative number's bits
    if (target > INT64_MAX) return false;
    position = target;
    return true;
}

uLong ReadImage(voidpf opaque, voidpf, void*, uLong) {
    Image(opaque).failed = true;
    return 0;
}

uLong WriteImage(voidpf opaque, voidpf, const void* data, uLong count) {
    ZipImage& image = Image(opaque);
    const auto* from = static_cast<const char*>(data);
    try {
        if (image.position > image.bytes.size()) image.bytes.resize(image.position);
        const auto over = std::min<std::uint64_t>(count, image.bytes.size() - image.position);
        std::memcpy(image.bytes.data() + image.position, from, over);
        image.bytes.append(from + over, count - over);
    } catch (const std::bad_alloc&) {
        image.failed = true;
        return 0;
    }
    image.position += count;
    return count;
}

ZPOS64_T TellImage(voidpf opaque, voidpf) { return Image(opaque).position; }

long SeekImage(voidpf opaque, voidpf, ZPOS64_T offset, int origin) {
    ZipImage& image = Image(opaque);
    if (Seek(image.position, image.bytes.size(), offset, origin)) return 0;
    image.failed = true;
    return -1;
}

int ImageFailed(voidpf opaque, voidpf) { return Image(opaque).failed; }

// False when that part of the file cannot be read or the file has none there.
bool Fetch(ZipSource& source) {
    // minizip goes on asking where a file that was cut has ended.
    if (source.file < 0 || source.position >= source.size) return false;
    source.first = source.position / kPiece * kPiece;
    std::size_t count = 0;
    while (count < kPiece && source.first + count < source.size) {
        const auto at = static_cast<off_t>(source.first + count);
        const ssize_t n = pread(source.file, source.area.data() + count, kPiece - count, at);
        if (n < 1) break;
        count += static_cast<std::size_t>(n);
    }
    source.bytes = {source.area.data(), count};
    return source.position < source.first + count;
}

uLong ReadSource(voidpf opaque, voidpf, void* data, uLong count) {
    ZipSource& source = Source(opaque);
    auto* const to = static_cast<char*>(data);
    uLong done = 0;
    while (done < count) {
        // Before the piece the distance is a huge number.
        const std::uint64_t behind = source.position - source.first;
        if (behind >= source.bytes.size()) {
            if (Fetch(source)) continue;
            source.cut = true;
            break;
        }
        const auto n = std::min<std::uint64_t>(count - done, source.bytes.size() - behind);
        std::memcpy(to + done, source.bytes.data() + behind, n);
        source.position += n;
        done += n;
    }
    return done;
}

uLong WriteSource(voidpf, voidpf, const void*, uLong) { return 0; }

ZPOS64_T TellSource(voidpf opaque, voidpf) { return Source(opaque).position; }

long SeekSource(voidpf opaque, voidpf, ZPOS64_T offset, int origin) {
    ZipSource& source = Source(opaque);
    return Seek(source.position, source.size, offset, origin) ? 0 : -1;
}

int SourceCut(voidpf opaque, voidpf) { return Source(opaque).cut; }

voidpf OpenFile(voidpf opaque, const void* path, int) {
    ZipSource& source = Source(opaque);
    source.file = open(static_cast<const char*>(path), O_RDONLY | O_CLOEXEC);
    struct stat facts = {};
    if (source.file < 0) return nullptr;
    if (fstat(source.file, &facts) == 0) source.size = static_cast<std::uint64_t>(facts.st_size);
    return opaque;
}

int CloseFile(voidpf opaque, voidpf) { return close(Source(opaque).file); }

}  // namespace

zlib_filefunc64_def ImageFunctions(ZipImage& image) {
    return {Open, ReadImage, WriteImage, TellImage, SeekImage, Close, ImageFailed, &image};
}

zlib_filefunc64_def SourceFunctions(ZipSource& source) {
    return {Open, ReadSource, WriteSource, TellSource, SeekSource, Close, SourceCut, &source};
}

zlib_filefunc64_def FileFunctions(ZipSource& source) {
    // Here and not when it is first read: an exception does not pass through minizip.
    source.area.resize(kPiece);
    return {OpenFile,   ReadSource, WriteSource, TellSource,
            SeekSource, CloseFile,  SourceCut,   &source};
}
