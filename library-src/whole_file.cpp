#include "library-src/whole_file.h"

#include <fstream>

std::filesystem::path PathBeside(const std::filesystem::path& file) {
    std::filesystem::path beside = file;
    beside += ".new";
    return beside;
}

bool TakePlace(const std::filesystem::path& file) {
    std::error_code error;
    std::filesystem::rename(PathBeside(file), file, error);
    return !error;
}

bool WriteWhole(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream out(PathBeside(file), std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    return out && TakePlace(file);
}

void Put16(std::string& bytes, int value) {
    bytes += static_cast<char>(value >> 8 & 255);
    bytes += static_cast<char>(value & 255);
}

void Put32(std::string& bytes, unsigned value) {
    Put16(bytes, static_cast<int>(value >> 16));
    Put16(bytes, static_cast<int>(value & 0xffff));
}
