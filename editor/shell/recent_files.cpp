#include "editor/shell/recent_files.h"

#include "platform/platform.h"

#include <algorithm>
#include <filesystem>

namespace {

constexpr const char* kSection = "Recent File List";

std::string KeyOf(std::size_t index) { return "File" + std::to_string(index + 1); }

// The list without a file, by whatever path it was entered.
std::vector<std::string> Without(const std::string& path) {
    std::vector<std::string> files = RecentFiles();
    std::erase_if(files,
                  [path = NormalPath(path)](const auto& f) { return NormalPath(f) == path; });
    return files;
}

void Store(std::vector<std::string> files) {
    files.resize(kMaxRecentFiles);
    for (std::size_t i = 0; i < files.size(); ++i)
        if (vPlatform->GetProfileString(kSection, KeyOf(i), "") != files[i])
            vPlatform->WriteProfileString(kSection, KeyOf(i), files[i]);
}

}  // namespace

std::vector<std::string> RecentFiles() {
    std::vector<std::string> files;
    for (std::size_t i = 0; i < kMaxRecentFiles; ++i) {
        std::string path = vPlatform->GetProfileString(kSection, KeyOf(i), "");
        if (!path.empty()) files.push_back(std::move(path));
    }
    return files;
}

std::string NormalPath(const std::string& path) {
    std::error_code error;
    const auto whole = std::filesystem::absolute(path, error);
    return error ? path : whole.lexically_normal().string();
}

void AddRecentFile(const std::string& path) {
    std::vector<std::string> files = Without(path);
    files.insert(files.begin(), NormalPath(path));
    Store(files);
}

void RemoveRecentFile(const std::string& path) { Store(Without(path)); }
