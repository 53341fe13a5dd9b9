#include "tests/support/plain_zip.h"

#include <gtest/gtest.h>
#include <zlib.h>

namespace {

constexpr std::uint32_t kLocal = 0x04034b50;
constexpr std::uint32_t kDirectory = 0x02014b50;
constexpr std::uint32_t kEnd = 0x06054b50;
constexpr std::size_t kLocalSize = 30;
constexpr std::size_t kDirectorySize = 46;
constexpr std::size_t kEndSize = 22;

void Put(std::string& out, std::uint64_t value, int bytes) {
    for (; bytes > 0; --bytes, value >>= 8) out += static_cast<char>(value & 255);
}

std::uint32_t Get(const std::string& in, std::size_t at, int bytes) {
    std::uint32_t value = 0;
    for (int i = bytes - 1; i >= 0; --i)
        value = value << 8 | static_cast<unsigned char>(in.at(at + static_cast<std::size_t>(i)));
    return value;
}

Bytef* Bytes(const std::string& text) {
    return reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
}

std::string Packed(const std::string& bytes, int method) {
    if (method == 0) return bytes;
    z_stream stream = {};
    deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    std::string packed(deflateBound(&stream, bytes.size()), '\0');
    stream.next_in = Bytes(bytes);
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = Bytes(packed);
    stream.avail_out = static_cast<uInt>(packed.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

std::string Unpacked(const std::string& packed, std::size_t size, int method) {
    if (method == 0) return packed;
    std::string bytes(size + 1, '\0');
    z_stream stream = {};
    inflateInit2(&stream, -MAX_WBITS);
    stream.next_in = Bytes(packed);
    stream.avail_in = static_cast<uInt>(packed.size());
    stream.next_out = Bytes(bytes);
    stream.avail_out = static_cast<uInt>(bytes.size());
    EXPECT_EQ(inflate(&stream, Z_FINISH), Z_STREAM_END);
    bytes.resize(stream.total_out);
    inflateEnd(&stream);
    return bytes;
}

std::uint32_t Checksum(const std::string& bytes) {
    return static_cast<std::uint32_t>(crc32(0, Bytes(bytes), static_cast<uInt>(bytes.size())));
}

// The part that a local header and a directory record share.
std::string Record(const PlainEntry& entry, std::size_t packedSize) {
    std::string record;
    Put(record, 20, 2);
    Put(record, 0, 2);
    Put(record, static_cast<std::uint64_t>(entry.method), 2);
    Put(record, 0x50'21'00'00, 4);  // 2020-01-01
    Put(record, Checksum(entry.bytes), 4);
    Put(record, packedSize, 4);
    Put(record, entry.bytes.size(), 4);
    Put(record, entry.name.size(), 2);
    Put(record, 0, 2);
    return record;
}

}  // namespace

std::string MakeZip(const std::vector<PlainEntry>& entries) {
    std::string zip;
    std::string directory;
    for (const PlainEntry& entry : entries) {
        const std::string packed = Packed(entry.bytes, entry.method);
        const std::string record = Record(entry, packed.size());
        Put(directory, kDirectory, 4);
        Put(directory, 20, 2);
        directory += record;
        Put(directory, 0, 10);
        Put(directory, zip.size(), 4);
        directory += entry.name;
        Put(zip, kLocal, 4);
        zip += record + entry.name + packed;
    }
    const std::size_t start = zip.size();
    zip += directory;
    Put(zip, kEnd, 4);
    Put(zip, 0, 4);
    Put(zip, entries.size(), 2);
    Put(zip, entries.size(), 2);
    Put(zip, directory.size(), 4);
    Put(zip, start, 4);
    Put(zip, 0, 2);
    return zip;
}

std::vector<PlainEntry> ReadZip(const std::string& zip) {
    std::vector<PlainEntry> entries;
    if (zip.size() < kEndSize || Get(zip, zip.size() - kEndSize, 4) != kEnd) {
        ADD_FAILURE() << "no end of directory at the end of the file";
        return entries;
    }
    const std::size_t end = zip.size() - kEndSize;
    const std::uint32_t count = Get(zip, end + 10, 2);
    std::size_t at = Get(zip, end + 16, 4);
    for (std::uint32_t i = 0; i < count; ++i) {
        EXPECT_EQ(Get(zip, at, 4), kDirectory);
        PlainEntry entry;
        entry.flags = static_cast<int>(Get(zip, at + 8, 2));
        entry.method = static_cast<int>(Get(zip, at + 10, 2));
        entry.dosDate = Get(zip, at + 12, 4);
        const std::size_t packedSize = Get(zip, at + 20, 4);
        const std::size_t nameSize = Get(zip, at + 28, 2);
        entry.extraSize = static_cast<int>(Get(zip, at + 30, 2));
        entry.commentSize = static_cast<int>(Get(zip, at + 32, 2));
        entry.internalAttribs = static_cast<int>(Get(zip, at + 36, 2));
        entry.externalAttribs = Get(zip, at + 38, 4);
        entry.name = zip.substr(at + kDirectorySize, nameSize);
        const std::size_t local = Get(zip, at + 42, 4);
        EXPECT_EQ(Get(zip, local, 4), kLocal);
        const std::size_t data =
            local + kLocalSize + Get(zip, local + 26, 2) + Get(zip, local + 28, 2);
        entry.bytes = Unpacked(zip.substr(data, packedSize), Get(zip, at + 24, 4), entry.method);
        EXPECT_EQ(Checksum(entry.bytes), Get(zip, at + 16, 4)) << entry.name;
        at += kDirectorySize + nameSize + static_cast<std::size_t>(entry.extraSize) +
              static_cast<std::size_t>(entry.commentSize);
        entries.push_back(entry);
    }
    EXPECT_EQ(at, end);
    return entries;
}
