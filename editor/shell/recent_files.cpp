#include "editor/shell/recent_files.h"

#include "platform/platform.h"

#include <algorithm>

namespace {

constexpr const char* kSection = "Recent File List";

std::string KeyOf(std::size_t index) { return "File" + std::to_string(index + 1); }

}  // namespace

std::vector<std::string> RecentFiles() {
    std::vector<std::string> files;
    for (std::size_t i = 0; i < kMaxRecentFiles; ++i) {
        std::string path = vPlatform->GetProfileString(kSection, KeyOf(i), "");
        if (!path.empty()) files.push_back(std::move(path));
    }
    return files;
}

void AddRecentFile(const std::string& path) {
    std::vector<std::string> files = RecentFiles();
    std::erase(files, path);
    files.insert(files.begin(), path);
    files.resize(std::min<std::size_t>(files.size(), kMaxRecentFiles));
    for (std::size_t i = 0; i < files.size(); ++i)
        vPlatform->WriteProfileString(kSection, KeyOf(i), files[i]);
}
