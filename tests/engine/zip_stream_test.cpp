// Archives and their entries as streams.

#include "engine/zip_stream.h"

#include "tests/support/plain_zip.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <ctime>
#include <random>

namespace {

constexpr auto kText = std::ios::openmode{};
constexpr auto kBinary = std::ios::binary;

// What the archive holds after `text` was written to a text or binary entry.
std::string Stored(const std::string& text, std::ios::openmode mode) {
    ZipWriter writer;
    ZipEntryOutStream out;
    out.open(writer, "entry", mode);
    out << text;
    EXPECT_TRUE(out.good());
    EXPECT_TRUE(out.close());
    EXPECT_TRUE(writer.Close());
    const std::vector<PlainEntry> entries = ReadZip(writer.TakeBytes());
    return entries.empty() ? "" : entries.front().bytes;
}

// What a text or binary entry that holds `bytes` reads as, by the buffer's own block reads or
// a character at a time.
std::string Shown(const std::string& bytes, std::ios::openmode mode, bool byBlock) {
    const std::string zip = MakeZip({{"entry", bytes}});
    const auto reader = ZipReader::InMemory(zip);
    ZipEntryInStream in;
    in.open(*reader, "ENTRY", mode);
    EXPECT_TRUE(in.good());
    std::string text;
    char block[77];
    if (byBlock) {
        while (const std::streamsize n = in.rdbuf()->sgetn(block, sizeof block))
            text.append(block, static_cast<std::size_t>(n));
    } else {
        for (char c; in.get(c);) text += c;
    }
    EXPECT_TRUE(in.close());
    EXPECT_FALSE(reader->Damaged());
    return text;
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

}  // namespace

// Pairs of carriage returns and line feeds, whole and torn, at every place of the small buffer.
TEST(ZipStream, PairsSurviveEveryBoundary) {
    for (std::size_t lead = 0; lead < 210; ++lead) {
        const std::string before(lead, 'x');
        for (const char* tail : {"\r\n", "\r\nend", "\r", "\r\r\n", "\rz", "\n", "\r\n\r\n"}) {
            const std::string bytes = before + tail;
            ASSERT_EQ(Shown(bytes, kText, lead % 2), Replaced(bytes, "\r\n", "\n")) << lead;
            ASSERT_EQ(Stored(bytes, kText), Replaced(bytes, "\n", "\r\n")) << lead;
            ASSERT_EQ(Stored(bytes, kBinary), bytes) << lead;
        }
    }
    // The same where data are unpacked in large pieces.
    std::mt19937 random(7);
    std::string bytes;
    while (bytes.size() < 300'000) bytes += "\r\nab\0\xff"[random() % 6];
    EXPECT_EQ(Shown(bytes, kText, false), Replaced(bytes, "\r\n", "\n"));
    EXPECT_EQ(Shown(Stored(bytes, kBinary), kBinary, true), bytes);
}

TEST(ZipStream, ACharacterCanBePutBackWithinTheBuffer) {
    const auto zip = MakeZip({{"entry", "abc"}});
    const auto reader = ZipReader::InMemory(zip);
    ZipEntryInStream in;
    in.open(*reader, "entry");
    EXPECT_FALSE(in.unget()) << "nothing has been read";
    in.clear();
    EXPECT_EQ(in.get(), 'a');
    EXPECT_TRUE(in.putback('z'));
    EXPECT_EQ(in.get(), 'z');
    EXPECT_EQ(in.get(), 'b');
}

TEST(ZipStream, OneEntryIsOpenAtATime) {
    ZipWriter writer;
    ZipEntryOutStream first;
    ZipEntryOutStream second;
    first.open(writer, "one");
    first << "1";
    second.open(writer, "two");
    EXPECT_TRUE(second.fail());
    EXPECT_FALSE(second.close());
    EXPECT_TRUE(first.close());
    // The same stream again closes its entry by itself.
    first.open(writer, "three");
    first << 3;
    first.open(writer, "four");
    first << 4;
    first.close();
    EXPECT_TRUE(writer.Close());

    const std::string zip = writer.TakeBytes();
    const auto reader = ZipReader::InMemory(zip);
    ZipEntryInStream in;
    ZipEntryInStream other;
    in.open(*reader, "four");
    other.open(*reader, "one");
    EXPECT_TRUE(other.fail());
    // In any order, and the same one again.
    for (int round = 0; round < 2; ++round) {
        int number = 0;
        for (auto [name, expected] : {std::pair{"Three", 3}, {"FOUR", 4}, {"one", 1}}) {
            in.open(*reader, name);
            EXPECT_TRUE(in >> number) << name;
            EXPECT_EQ(number, expected);
        }
    }
}

TEST(ZipStream, EntriesCarryTheLocalTime) {
    TempFolder folder;
    const std::time_t before = std::time(nullptr);
    {
        ZipWriter writer(folder / "x.zip");
        ZipEntryOutStream out;
        out.open(writer, "entry", kBinary);
        out << "text";
    }
    const std::vector<PlainEntry> entries = ReadZip(FileBytes(folder / "x.zip"));
    ASSERT_EQ(entries.size(), 1u) << "the destructors close";
    // Two seconds are the least that an entry's time tells.
    bool now = false;
    for (std::time_t at = before - 2; at <= std::time(nullptr) + 2; ++at) {
        const std::tm* t = std::localtime(&at);
        const int date = (t->tm_year - 80) << 9 | (t->tm_mon + 1) << 5 | t->tm_mday;
        const int time = t->tm_hour << 11 | t->tm_min << 5 | t->tm_sec / 2;
        now |= entries.front().dosDate == static_cast<std::uint32_t>(date << 16 | time);
    }
    EXPECT_TRUE(now) << entries.front().dosDate;
}
