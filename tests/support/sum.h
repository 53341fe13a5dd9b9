// A sum that stands in a test for an outcome too long to be written there.
#pragma once

#include <zlib.h>
#include <string_view>

/// Of these bytes behind those that gave the sum `before`.
inline unsigned long SumOf(std::string_view bytes, unsigned long before = 0) {
    return crc32_z(before, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size());
}
