#include "tests/tool/plain_png.h"

#include <gtest/gtest.h>
#include <zlib.h>

namespace {

std::uint32_t Big(const std::string& bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes.at(at + i));
    return value;
}

}  // namespace

PlainPng ReadPng(const std::string& bytes) {
    PlainPng png;
    std::string packed;
    bool ended = false;
    if (bytes.rfind("\x89PNG\r\n\x1a\n", 0) != 0) {
        ADD_FAILURE() << "no PNG file";
        return png;
    }
    for (std::size_t at = 8; at + 12 <= bytes.size() && !ended;) {
        const std::size_t size = Big(bytes, at);
        const std::string kind = bytes.substr(at + 4, 4);
        const std::string data = bytes.substr(at + 8, size);
        if (kind == "IHDR") {
            png.w = static_cast<int>(Big(data, 0));
            png.h = static_cast<int>(Big(data, 4));
            EXPECT_EQ(data.substr(8), std::string("\x08\x03\0\0\0", 5));
        }
        if (kind == "PLTE") png.palette = data;
        if (kind == "IDAT") packed += data;
        ended = kind == "IEND";
        at += size + 12;
    }
    EXPECT_TRUE(ended);
    const auto row = static_cast<std::size_t>(png.w) + 1;
    std::string rows(row * static_cast<std::size_t>(png.h), '\0');
    uLongf size = rows.size();
    EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(rows.data()), &size,
                         reinterpret_cast<const Bytef*>(packed.data()), packed.size()),
              Z_OK);
    EXPECT_EQ(size, rows.size());
    for (std::size_t at = 0; at < rows.size(); at += row) {
        EXPECT_EQ(rows[at], 0) << "a filtered row";
        png.pixels += rows.substr(at + 1, row - 1);
    }
    return png;
}
