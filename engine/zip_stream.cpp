#include "engine/zip_stream.h"

#include "engine/zip_memory.h"

#include <minizip/unzip.h>
#include <minizip/zip.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

constexpr int kAheadSize = 1 << 14;
constexpr std::size_t kGatheredSize = 1 << 16;
constexpr int kIgnoreCase = 2;          // minizip's own default depends on the system
constexpr uLong kExternalAttribs = 32;  // "archive", as a file has on its first systems

// How builds that are to give the same bytes each time say what time it is.
constexpr const char* kFixedTime = "SOURCE_DATE_EPOCH";

bool EntryTime(std::tm& when) {
    const char* fixed = std::getenv(kFixedTime);
    const std::time_t now = fixed ? std::atoll(fixed) : std::time(nullptr);
    return fixed ? gmtime_r(&now, &when) : localtime_r(&now, &when);
}

zip_fileinfo EntryRecord(unsigned long when) {
    zip_fileinfo record = {};
    std::tm local = {};
    if (when != 0 && !std::getenv(kFixedTime)) {
        record.dosDate = when;
    } else if (EntryTime(local)) {
        record.tmz_date.tm_year = local.tm_year + 1900;
        record.tmz_date.tm_mon = local.tm_mon;
        record.tmz_date.tm_mday = local.tm_mday;
        record.tmz_date.tm_hour = local.tm_hour;
        record.tmz_date.tm_min = local.tm_min;
        record.tmz_date.tm_sec = local.tm_sec;
    }
    record.external_fa = kExternalAttribs;
    return record;
}

// minizip marks entries that look like text to it, whatever it is told; ours carry no such mark.
void ClearInternalAttributes(std::string& zip) {
    constexpr std::size_t kEndRecord = 22;
    constexpr std::size_t kRecord = 46;
    const auto number = [&zip](std::size_t at, int bytes) {
        std::size_t n = 0;
        while (bytes-- > 0)
            n = n << 8 | static_cast<unsigned char>(zip[at + static_cast<std::size_t>(bytes)]);
        return n;
    };
    if (zip.size() < kEndRecord) return;
    std::size_t at = number(zip.size() - 6, 4);
    while (at + kRecord <= zip.size() && zip.compare(at, 4, "PK\1\2") == 0) {
        zip[at + 36] = zip[at + 37] = 0;
        at += kRecord + number(at + 28, 2) + number(at + 30, 2) + number(at + 32, 2);
    }
}

}  // namespace

// --- archives ----------------------------------------------------------------------------------

ZipWriter::ZipWriter(const std::string& path) : file(path, std::ios::binary | std::ios::trunc) {
    if (file) OpenImage();
}

ZipWriter::ZipWriter() { OpenImage(); }

void ZipWriter::OpenImage() {
    image = std::make_unique<ZipImage>();
    zlib_filefunc64_def functions = ImageFunctions(*image);
    handle = zipOpen2_64("memory", APPEND_STATUS_CREATE, nullptr, &functions);
}

ZipWriter::~ZipWriter() { Close(); }

bool ZipWriter::OpenEntry(const std::string& name) {
    if (!handle || entryOpen) return false;
    const zip_fileinfo record = EntryRecord(dosTime);
    entryOpen = zipOpenNewFileInZip(handle, name.c_str(), &record, nullptr, 0, nullptr, 0, nullptr,
                                    Z_DEFLATED, level) == ZIP_OK;
    return entryOpen;
}

bool ZipWriter::CloseEntry() {
    if (!entryOpen) return false;
    const bool packed = Pack();
    entryOpen = false;
    return zipCloseFileInZip(handle) == ZIP_OK && packed;
}

bool ZipWriter::Pack() {
    const auto count = static_cast<unsigned>(gathered.size());
    const bool packed = zipWriteInFileInZip(handle, gathered.data(), count) == ZIP_OK;
    gathered.clear();
    return packed;
}

// The streams write in pieces too small for a call of zlib each.
bool ZipWriter::Write(const char* data, std::size_t count) {
    if (!entryOpen) return false;
    gathered.insert(gathered.end(), data, data + count);
    return gathered.size() < kGatheredSize || Pack();
}

bool ZipWriter::Close() {
    if (!handle) return false;
    CloseEntry();
    const bool good = zipClose(handle, nullptr) == ZIP_OK;
    handle = nullptr;
    if (!good || image->failed) return false;
    ClearInternalAttributes(image->bytes);
    if (!file.is_open()) return true;
    file.write(image->bytes.data(), static_cast<std::streamsize>(image->bytes.size()));
    file.close();
    return !file.fail();
}

std::string ZipWriter::TakeBytes() {
    if (handle || !image) return {};
    return std::move(image->bytes);
}

ZipReader::ZipReader(const std::string& path) : source(std::make_unique<ZipSource>()) {
    zlib_filefunc64_def functions = FileFunctions(*source);
    handle = unzOpen2_64(path.c_str(), &functions);
}

std::unique_ptr<ZipReader> ZipReader::InMemory(std::string_view bytes) {
    std::unique_ptr<ZipReader> reader(new ZipReader);
    reader->source = std::make_unique<ZipSource>();
    reader->source->bytes = bytes;
    reader->source->size = bytes.size();
    zlib_filefunc64_def functions = SourceFunctions(*reader->source);
    reader->handle = unzOpen2_64("memory", &functions);
    return reader;
}

ZipReader::~ZipReader() { Close(); }

bool ZipReader::HasEntry(const std::string& name) {
    return handle && !entryOpen && unzLocateFile(handle, name.c_str(), kIgnoreCase) == UNZ_OK;
}

bool ZipReader::OpenEntry(const std::string& name) {
    if (entryOpen) return false;
    damaged = false;
    aheadPos = aheadEnd = 0;
    if (!HasEntry(name)) return false;
    entryOpen = unzOpenCurrentFile(handle) == UNZ_OK;
    damaged = !entryOpen;
    return entryOpen;
}

ZipReader::Facts ZipReader::EntryFacts() const {
    unz_file_info64 info = {};
    if (!entryOpen || unzGetCurrentFileInfo64(handle, &info, nullptr, 0, nullptr, 0, nullptr, 0))
        return {};
    return {info.uncompressed_size, info.dosDate};
}

int ZipReader::Read(char* buffer, int count) {
    if (!entryOpen) return -1;
    if (count < 1) return 0;
    if (aheadPos == aheadEnd) {
        const bool large = count >= kAheadSize;
        if (!large) ahead.resize(kAheadSize);
        const auto wanted = static_cast<unsigned>(large ? count : kAheadSize);
        const int n = unzReadCurrentFile(handle, large ? buffer : ahead.data(), wanted);
        // Packed data that end before the size that is stated are damaged, too.
        damaged = damaged || n < 0 || (n == 0 && unzeof(handle) != 1);
        if (n <= 0 || large) return std::max(n, -1);
        aheadPos = 0;
        aheadEnd = n;
    }
    const int n = std::min(count, aheadEnd - aheadPos);
    std::memcpy(buffer, ahead.data() + aheadPos, static_cast<std::size_t>(n));
    aheadPos += n;
    return n;
}

bool ZipReader::CloseEntry() {
    if (!entryOpen) return false;
    entryOpen = false;
    aheadPos = aheadEnd = 0;
    const bool good = unzCloseCurrentFile(handle) == UNZ_OK;
    damaged = damaged || !good;
    return good;
}

bool ZipReader::Close() {
    if (!handle) return false;
    CloseEntry();
    const bool good = unzClose(handle) == UNZ_OK;
    handle = nullptr;
    return good;
}

// --- writing -----------------------------------------------------------------------------------

ZipEntryWriteBuf::~ZipEntryWriteBuf() { CloseEntry(); }

bool ZipEntryWriteBuf::OpenEntry(ZipWriter& to, const std::string& name, std::ios::openmode mode) {
    CloseEntry();
    writer = &to;
    binary = (mode & std::ios::binary) != 0;
    open = to.IsOpen() && to.OpenEntry(name);
    if (open)
        setp(data, data + kArea);
    else
        setp(nullptr, nullptr);
    return open;
}

bool ZipEntryWriteBuf::CloseEntry() {
    if (!open) return false;
    const bool flushed = Flush();
    const bool closed = writer->CloseEntry();
    if (closed) open = false;
    return flushed && closed;
}

// In text mode a line feed becomes a pair on its way.
bool ZipEntryWriteBuf::Write(const char* text, std::ptrdiff_t count) {
    for (const char* const end = text + count; text != end;) {
        const auto left = static_cast<std::size_t>(end - text);
        const void* const found = binary ? nullptr : std::memchr(text, '\n', left);
        const char* const line = found ? static_cast<const char*>(found) : end;
        if (!writer->Write(text, static_cast<std::size_t>(line - text))) return false;
        if (found && !writer->Write("\r\n", 2)) return false;
        text = line + (found != nullptr);
    }
    return true;
}

bool ZipEntryWriteBuf::Flush() {
    if (!Write(pbase(), pptr() - pbase())) return false;
    setp(data, data + kArea);
    return true;
}

ZipEntryWriteBuf::int_type ZipEntryWriteBuf::overflow(int_type c) {
    if (!open || !Flush()) return traits_type::eof();
    if (traits_type::eq_int_type(c, traits_type::eof())) return 0;
    *pptr() = traits_type::to_char_type(c);
    pbump(1);
    return c;
}

// What is larger than the put area goes past it.
std::streamsize ZipEntryWriteBuf::xsputn(const char* text, std::streamsize count) {
    if (count <= kArea) return std::streambuf::xsputn(text, count);
    return open && Flush() && Write(text, count) ? count : 0;
}

int ZipEntryWriteBuf::sync() { return open && Flush() ? 0 : -1; }

void ZipEntryOutStream::open(ZipWriter& to, const std::string& name, std::ios::openmode mode) {
    const bool good = buffer.OpenEntry(to, name, mode);
    clear(good ? goodbit : failbit);
}

// --- reading -----------------------------------------------------------------------------------

ZipEntryReadBuf::~ZipEntryReadBuf() { CloseEntry(); }

bool ZipEntryReadBuf::OpenEntry(ZipReader& from, const std::string& name, std::ios::openmode mode) {
    CloseEntry();
    reader = &from;
    binary = (mode & std::ios::binary) != 0;
    heldReturn = false;
    setg(nullptr, nullptr, nullptr);
    open = from.IsOpen() && from.OpenEntry(name);
    return open;
}

bool ZipEntryReadBuf::CloseEntry() {
    if (!open) return false;
    open = false;
    setg(nullptr, nullptr, nullptr);
    return reader->CloseEntry();
}

// Up to `room` characters as the stream shows them; 0 at the end.
int ZipEntryReadBuf::Fill(char* to, int room) {
    for (;;) {
        int count = heldReturn ? 1 : 0;
        if (heldReturn) to[0] = '\r';
        const int n = reader->Read(to + count, room - count);
        heldReturn = false;
        if (n < 1) return count;
        count += n;
        if (binary) return count;
        if (to[count - 1] == '\r') {
            heldReturn = true;
            --count;
        }
        // Nothing follows the last character, or the held carriage return does: no pair.
        char* const end = to + count;
        char* out = to;
        for (const char* in = to; in != end;) {
            const void* const found = std::memchr(in, '\r', static_cast<std::size_t>(end - in));
            const char* const back = found ? static_cast<const char*>(found) : end;
            out = std::copy(in, back, out);
            in = back;
            if (in != end && (in + 1 == end || in[1] != '\n')) *out++ = '\r';
            in += in != end;
        }
        if (out != to) return static_cast<int>(out - to);
    }
}

ZipEntryReadBuf::int_type ZipEntryReadBuf::underflow() {
    if (!open) return traits_type::eof();
    if (gptr() < egptr()) return traits_type::to_int_type(*gptr());
    const auto keep = std::min<std::ptrdiff_t>(kKeep, gptr() - eback());
    if (keep > 0) std::memmove(data, gptr() - keep, static_cast<std::size_t>(keep));
    char* start = data + keep;
    const int count = Fill(start, kArea - static_cast<int>(keep));
    setg(start, start, start + count);
    return count < 1 ? traits_type::eof() : traits_type::to_int_type(*start);
}

ZipEntryReadBuf::int_type ZipEntryReadBuf::pbackfail(int_type c) {
    if (gptr() == eback()) return traits_type::eof();
    gbump(-1);
    if (traits_type::eq_int_type(c, traits_type::eof())) return 0;
    *gptr() = traits_type::to_char_type(c);
    return c;
}

std::streamsize ZipEntryReadBuf::xsgetn(char* to, std::streamsize count) {
    constexpr std::streamsize kLargest = 1 << 30;
    std::streamsize done = 0;
    while (done < count) {
        const std::streamsize here = std::min<std::streamsize>(egptr() - gptr(), count - done);
        if (here > 0) {
            std::memcpy(to + done, gptr(), static_cast<std::size_t>(here));
            gbump(static_cast<int>(here));
            done += here;
            continue;
        }
        if (open && count - done >= kArea) {
            const int n = Fill(to + done, static_cast<int>(std::min(count - done, kLargest)));
            if (n < 1) break;
            done += n;
            // What can be put back is the end of it.
            const int keep = std::min(n, kKeep);
            std::memcpy(data, to + done - keep, static_cast<std::size_t>(keep));
            setg(data, data + keep, data + keep);
            continue;
        }
        const int_type c = uflow();
        if (traits_type::eq_int_type(c, traits_type::eof())) break;
        to[done++] = traits_type::to_char_type(c);
    }
    return done;
}

void ZipEntryInStream::open(ZipReader& from, const std::string& name, std::ios::openmode mode) {
    const bool good = buffer.OpenEntry(from, name, mode);
    clear(good ? goodbit : failbit);
}
