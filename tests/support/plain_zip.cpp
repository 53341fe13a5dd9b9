#include "tests/support/plain_zip.h"

#include <gtest/gtest.h>
#include <zip.h>

#include <ctime>

std::string MakeZip(const std::vector<PlainEntry>& entries) {
    zip_source_t* memory = zip_source_buffer_create(nullptr, 0, 0, nullptr);
    zip_t* zip = zip_open_from_source(memory, ZIP_TRUNCATE, nullptr);
    zip_source_keep(memory);
    for (const PlainEntry& entry : entries) {
        zip_source_t* bytes = zip_source_buffer(zip, entry.bytes.data(), entry.bytes.size(), 0);
        const auto at = static_cast<zip_uint64_t>(zip_file_add(zip, entry.name.c_str(), bytes, 0));
        EXPECT_EQ(zip_set_file_compression(zip, at, entry.method, 0), 0);
        zip_file_set_comment(zip, at, "by hand", 7, 0);
        zip_file_extra_field_set(zip, at, 0x7855, 0, reinterpret_cast<const zip_uint8_t*>("them"),
                                 4, ZIP_FL_LOCAL);
    }
    EXPECT_EQ(zip_close(zip), 0);
    zip_stat_t stat;
    zip_source_stat(memory, &stat);
    std::string bytes(stat.size, '\0');
    zip_source_open(memory);
    zip_source_read(memory, bytes.data(), bytes.size());
    zip_source_close(memory);
    zip_source_free(memory);
    return bytes;
}

std::vector<PlainEntry> ReadZip(const std::string& bytes) {
    zip_source_t* memory = zip_source_buffer_create(bytes.data(), bytes.size(), 0, nullptr);
    zip_t* zip = zip_open_from_source(memory, ZIP_RDONLY | ZIP_CHECKCONS, nullptr);
    std::vector<PlainEntry> entries;
    if (!zip) ADD_FAILURE() << "no archive";
    for (zip_int64_t i = 0; zip && i < zip_get_num_entries(zip, 0); ++i) {
        const auto index = static_cast<zip_uint64_t>(i);
        zip_stat_t stat;
        zip_stat_index(zip, index, 0, &stat);
        zip_uint8_t system;
        zip_uint32_t attributes, comment;
        zip_file_get_external_attributes(zip, index, 0, &system, &attributes);
        zip_file_get_comment(zip, index, &comment, 0);
        const int extra = zip_file_extra_fields_count(zip, index, ZIP_FL_CENTRAL | ZIP_FL_LOCAL);
        entries.push_back({stat.name, std::string(stat.size, '\0'), stat.comp_method,
                           std::difftime(std::time(nullptr), stat.mtime), attributes,
                           comment + static_cast<unsigned>(extra)});
        zip_file_t* file = zip_fopen_index(zip, index, 0);
        // The read at the end is the one that looks at the checksum.
        char end;
        EXPECT_EQ(zip_fread(file, entries.back().bytes.data(), stat.size), zip_int64_t(stat.size));
        EXPECT_EQ(zip_fread(file, &end, 1), 0) << stat.name;
        zip_fclose(file);
    }
    if (zip) zip_discard(zip);
    return entries;
}

std::vector<PlainEntry> GameEntries(const std::string& text) {
    std::string pixels;
    for (int i = 0; i < 128; ++i) pixels += std::to_string(i) + " ";
    return {
        {"font.hdr", "16 8 2\r\n"}, {"font.raw", pixels}, {"game.qlt", text}, {"res.dat", "3 0"}};
}
