#include "library-src/dated_archive.h"

#include "library-src/whole_file.h"

#include <minizip/zip.h>

namespace {

bool PutEntry(zipFile zip, const ArchiveEntry& entry) {
    zip_fileinfo info{};
    info.tmz_date.tm_year = 2000;
    info.tmz_date.tm_mday = 1;
    constexpr unsigned kArchiveBit = 32;
    info.external_fa = kArchiveBit;
    if (zipOpenNewFileInZip(zip, entry.name.c_str(), &info, nullptr, 0, nullptr, 0, nullptr,
                            Z_DEFLATED, Z_DEFAULT_COMPRESSION) != ZIP_OK) {
        return false;
    }
    bool written = zipWriteInFileInZip(zip, entry.bytes.data(),
                                       static_cast<unsigned>(entry.bytes.size())) == ZIP_OK;
    return zipCloseFileInZip(zip) == ZIP_OK && written;
}

}  // namespace

bool WriteDatedArchive(const std::filesystem::path& file,
                       const std::vector<ArchiveEntry>& entries) {
    zipFile zip = zipOpen(PathBeside(file).c_str(), APPEND_STATUS_CREATE);
    if (!zip) return false;
    bool good = true;
    for (const ArchiveEntry& entry : entries) good = good && PutEntry(zip, entry);
    good = zipClose(zip, nullptr) == ZIP_OK && good;
    return good && TakePlace(file);
}
