// Zip archives, and their entries as standard streams.
//
// One ZipWriter or ZipReader stands for one archive and outlives the streams on it. One entry
// is open at a time. Nothing here throws or shows a message: failure shows in the results and
// in the streams' state. A stream on an archive that did not open fails like any other.
//
// In text mode (no std::ios::binary) lines end with CR LF in the archive and with LF for the
// caller; a CR without an LF passes both ways.
#pragma once

#include "engine/open_buffer.h"

#include <cstdint>
#include <fstream>
#include <ios>
#include <istream>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

struct ZipImage;
struct ZipSource;

class ZipWriter {
public:
    /// An archive at that path, in place of any file there from this moment on; it is composed
    /// in memory and written by Close. What must not be lost goes to disk by ReplaceFile instead.
    explicit ZipWriter(const std::string& path);
    /// An archive in memory, for TakeBytes.
    ZipWriter();
    ZipWriter(const ZipWriter&) = delete;
    ZipWriter& operator=(const ZipWriter&) = delete;
    ~ZipWriter();  ///< closes

    bool IsOpen() const { return handle != nullptr; }
    /// Starts an entry, deflated at the writer's level and dated with its moment.
    bool OpenEntry(const std::string& name);
    /// The moment of the entries to come, as archives write it; 0 for now. SOURCE_DATE_EPOCH wins.
    void SetTime(unsigned long when) { dosTime = when; }
    /// zlib's level for the entries to come, its default unless set.
    void SetLevel(int to) { level = to; }
    bool CloseEntry();  ///< no entry is open afterwards, whatever the result
    /// Small pieces are gathered: whether the last of them could be packed shows in CloseEntry.
    bool Write(const char* data, std::size_t count);
    /// Writes the directory of the archive; without it there is no archive.
    bool Close();
    /// The whole archive, once closed; of a writer in memory.
    std::string TakeBytes();

private:
    void OpenImage();
    bool Pack();

    std::ofstream file;  ///< where the finished image goes, if there is a path
    std::unique_ptr<ZipImage> image;
    void* handle = nullptr;
    bool entryOpen = false;
    std::vector<char> gathered;  ///< of the open entry, not yet packed
    unsigned long dosTime = 0;
    int level = -1;
};

class ZipReader {
public:
    explicit ZipReader(const std::string& path);
    /// An archive in memory; the bytes must outlive the reader.
    static std::unique_ptr<ZipReader> InMemory(std::string_view bytes);
    ZipReader(const ZipReader&) = delete;
    ZipReader& operator=(const ZipReader&) = delete;
    ~ZipReader();  ///< closes

    bool IsOpen() const { return handle != nullptr; }
    /// Looks for the name without regard to upper and lower case, while no entry is open.
    bool HasEntry(const std::string& name);
    /// Opens what HasEntry finds; false too when it is damaged.
    bool OpenEntry(const std::string& name);
    /// Bytes read, 0 at the end of the entry, -1 on failure.
    int Read(char* buffer, int count);
    /// What the archive says of the open entry; no more than `size` bytes are unpacked from it.
    struct Facts {
        std::uint64_t size = 0;  ///< unpacked, in bytes
        unsigned long dosTime = 0;
    };
    Facts EntryFacts() const;
    /// False also when the entry was read to its end and its checksum does not fit.
    bool CloseEntry();
    bool Close();
    /// Whether the data of the last entry opened could not be unpacked or, after CloseEntry,
    /// did not fit their checksum.
    bool Damaged() const { return damaged; }

private:
    ZipReader() = default;

    std::unique_ptr<ZipSource> source;
    void* handle = nullptr;
    bool entryOpen = false;
    bool damaged = false;
    // The streams read in pieces too small for zlib's fast path; this is unpacked ahead.
    std::vector<char> ahead;
    int aheadPos = 0;
    int aheadEnd = 0;
};

class ZipEntryWriteBuf : public std::streambuf {
public:
    ZipEntryWriteBuf() = default;
    ~ZipEntryWriteBuf() override;

    bool OpenEntry(ZipWriter& to, const std::string& name, std::ios::openmode mode);
    bool CloseEntry();

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize count) override;
    int sync() override;

private:
    static constexpr int kArea = 100;

    bool Write(const char* text, std::ptrdiff_t count);
    bool Flush();

    bool open = false;
    char data[kArea];
    bool binary = false;
    ZipWriter* writer = nullptr;
};

class ZipEntryReadBuf : public OpenBuffer {
public:
    ZipEntryReadBuf() = default;
    ~ZipEntryReadBuf() override;

    bool OpenEntry(ZipReader& from, const std::string& name, std::ios::openmode mode);
    bool CloseEntry();

protected:
    int_type pbackfail(int_type c) override;
    int_type underflow() override;
    std::streamsize xsgetn(char* to, std::streamsize count) override;

private:
    static constexpr int kArea = 100;
    static constexpr int kKeep = 10;

    int Fill(char* to, int room);

    bool open = false;
    ZipReader* reader = nullptr;
    char data[kArea];
    bool binary = false;
    bool heldReturn = false;  ///< a carriage return at a read's end: its pair may follow
};

class ZipEntryOutStream : public std::ostream {
public:
    ZipEntryOutStream() : std::ostream(nullptr) { rdbuf(&buffer); }
    ~ZipEntryOutStream() override = default;

    /// Starts an entry, after closing the one this stream had. Fail bit on failure.
    void open(ZipWriter& to, const std::string& name, std::ios::openmode mode = std::ios::out);
    /// True when everything reached the archive. The state must be cleared before the stream
    /// is used again by anything but open.
    bool close() { return buffer.CloseEntry(); }

private:
    ZipEntryWriteBuf buffer;
};

class ZipEntryInStream : public std::istream {
public:
    ZipEntryInStream() : std::istream(nullptr) { rdbuf(&buffer); }
    ~ZipEntryInStream() override = default;

    /// Opens an entry, after closing the one this stream had. Fail bit on failure.
    void open(ZipReader& from, const std::string& name, std::ios::openmode mode = std::ios::in);
    /// As CloseEntry of ZipReader; false too when nothing was open.
    bool close() { return buffer.CloseEntry(); }

private:
    ZipEntryReadBuf buffer;
};
