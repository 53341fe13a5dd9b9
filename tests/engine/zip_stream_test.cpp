// Archives and their entries as streams.

#include "engine/zip_stream.h"

#include "tests/support/plain_zip.h"

#include <gtest/gtest.h>

#include <random>
#include <regex>

namespace {

// What an archive holds after `text` was written to a text or binary entry.
std::string Stored(const std::string& text, std::ios::openmode mode) {
    ZipWriter writer;
    ZipEntryOutStream out;
    for (const char* name : {"other", "entry"}) out.open(writer, name, mode);
    out << text;
    EXPECT_TRUE(out.good() && out.close() && writer.Close());
    return ReadZip(writer.TakeBytes()).at(1).bytes;
}

// What a text entry that holds `bytes` reads as, by blocks or a character at a time, each of which
// is put back and read again.
std::string Shown(const std::string& bytes, bool byBlock) {
    const std::string zip = MakeZip({{"other", "x"}, {"entry", bytes}});
    const auto reader = ZipReader::InMemory(zip);
    ZipEntryInStream in;
    for (const char* name : {"other", "ENTRY", "Entry"}) in.open(*reader, name);
    EXPECT_FALSE(in.unget()) << "nothing has been read";
    in.clear();
    std::string text;
    char block[177];
    while (byBlock && in.read(block, sizeof block).gcount() > 0)
        text.append(block, static_cast<std::size_t>(in.gcount()));
    for (char c; in.get(c); text += c)
        EXPECT_TRUE(in.putback(c) && in.get() == static_cast<unsigned char>(c));
    EXPECT_TRUE(in.close());
    return text;
}

}  // namespace

// Pairs of carriage returns and line feeds, whole and torn, at every place of the small buffer
// and where data are unpacked in large pieces.
TEST(ZipStream, PairsSurviveEveryBoundary) {
    std::mt19937 random(7);
    for (std::size_t n = 0; n < 900; ++n) {
        std::string text(n % 210, 'x');
        for (auto k = n < 899 ? random() % 6 : 300'000; k > 0; --k)
            text += "\r\nab\0\xff\r\n"[random() % 8];
        ASSERT_EQ(Shown(text, n % 2), regex_replace(text, std::regex("\r\n"), "\n")) << n;
        ASSERT_EQ(Stored(text, std::ios::out), regex_replace(text, std::regex("\n"), "\r\n")) << n;
        ASSERT_EQ(Stored(text, std::ios::binary), text) << n;
    }
}
