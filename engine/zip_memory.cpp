#include "engine/zip_memory.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>

namespace {

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

uLong ReadSource(voidpf opaque, voidpf, void* data, uLong count) {
    ZipSource& source = Source(opaque);
    const std::uint64_t left =
        source.bytes.size() - std::min<std::uint64_t>(source.position, source.bytes.size());
    const auto n = std::min<std::uint64_t>(count, left);
    source.cut = source.cut || n < count;
    if (n > 0) std::memcpy(data, source.bytes.data() + source.position, n);
    source.position += n;
    return static_cast<uLong>(n);
}

uLong WriteSource(voidpf, voidpf, const void*, uLong) { return 0; }

ZPOS64_T TellSource(voidpf opaque, voidpf) { return Source(opaque).position; }

long SeekSource(voidpf opaque, voidpf, ZPOS64_T offset, int origin) {
    ZipSource& source = Source(opaque);
    return Seek(source.position, source.bytes.size(), offset, origin) ? 0 : -1;
}

int SourceCut(voidpf opaque, voidpf) { return Source(opaque).cut; }

uLong ReadFile(voidpf opaque, voidpf stream, void* data, uLong count) {
    const std::size_t n = std::fread(data, 1, count, static_cast<std::FILE*>(stream));
    ZipSource& source = Source(opaque);
    source.cut = source.cut || n < count;
    return n;
}

}  // namespace

zlib_filefunc64_def ImageFunctions(ZipImage& image) {
    return {Open, ReadImage, WriteImage, TellImage, SeekImage, Close, ImageFailed, &image};
}

zlib_filefunc64_def SourceFunctions(ZipSource& source) {
    return {Open, ReadSource, WriteSource, TellSource, SeekSource, Close, SourceCut, &source};
}

zlib_filefunc64_def FileFunctions(ZipSource& source) {
    zlib_filefunc64_def functions;
    fill_fopen64_filefunc(&functions);
    functions.zread_file = ReadFile;
    functions.zerror_file = SourceCut;
    functions.opaque = &source;
    return functions;
}
