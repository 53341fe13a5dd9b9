// Archives and their entries as streams.

#include "engine/zip_stream.h"

#include "tests/support/plain_zip.h"

#include <gtest/gtest.h>

#include <random>

namespace {

constexpr auto kText = std::ios::openmode{};
constexpr auto kBinary = std::ios::binary;

// What an archive holds after `text` was written to a text or binary entry.
std::string Stored(const std::string& text, std::ios::openmode mode) {
    ZipWriter writer;
    ZipEntryOutStream out;
    out.open(writer, "entry", mode);
    out << text;
    EXPECT_TRUE(out.good() && out.close() && writer.Close());
    return ReadZip(writer.TakeBytes()).at(0).bytes;
}

// What a text entry that holds `bytes` reads as, by blocks or a character at a time, each of which
// is put back and read again.
std::string Shown(const std::string& bytes, bool byBlock) {
    const std::string zip = MakeZip({{"entry", bytes}});
    const auto reader = ZipReader::InMemory(zip);
    ZipEntryInStream in;
    in.open(*reader, "ENTRY", kText);
    EXPECT_FALSE(in.unget()) << "nothing has been read";
    in.clear();
    std::string text;
    char block[77];
    while (byBlock && in.read(block, sizeof block).gcount() > 0)
        text.append(block, static_cast<std::size_t>(in.gcount()));
    for (char c; in.get(c); text += c)
        EXPECT_TRUE(in.putback(c) && in.get() == static_cast<unsigned char>(c));
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
        for (const char* tail : {"\r\n", "\r\nend", "\r", "\r\r\n", "\rz", "\n", "\r\n\r\n"}) {
            const std::string bytes = std::string(lead, 'x') + tail;
            ASSERT_EQ(Shown(bytes, lead % 2), Replaced(bytes, "\r\n", "\n")) << lead;
            ASSERT_EQ(Stored(bytes, kText), Replaced(bytes, "\n", "\r\n")) << lead;
        }
    }
    // The same where data are unpacked in large pieces.
    std::mt19937 random(7);
    std::string bytes;
    while (bytes.size() < 300'000) bytes += "\r\nab\0\xff"[random() % 6];
    EXPECT_EQ(Shown(bytes, false), Replaced(bytes, "\r\n", "\n"));
    EXPECT_EQ(Stored(bytes, kBinary), bytes);
}

TEST(ZipStream, OneEntryIsOpenAtATime) {
    ZipWriter writer;
    ZipEntryOutStream first, second;
    first.open(writer, "one");
    first << 1;
    second.open(writer, "two");
    EXPECT_TRUE(second.fail() && !second.close());
    // The same stream again closes its entry by itself.
    first.open(writer, "three");
    first << 3;
    EXPECT_TRUE(first.close() && writer.Close());
    const std::string zip = writer.TakeBytes();
    const auto reader = ZipReader::InMemory(zip);
    ZipEntryInStream in, other;
    in.open(*reader, "three");
    other.open(*reader, "one");
    EXPECT_TRUE(other.fail());
    // In any order, and the same one again.
    for (auto [name, expected] : {std::pair{"Three", 3}, {"one", 1}, {"ONE", 1}, {"three", 3}}) {
        int number = 0;
        in.open(*reader, name);
        EXPECT_TRUE(in >> number && number == expected) << name;
    }
}
