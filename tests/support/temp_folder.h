// A folder of a test's own, deleted with all that is in it.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

class TempFolder {
public:
    TempFolder() {
        std::string text = (std::filesystem::temp_directory_path() / "quilt-test-XXXXXX").string();
        path = mkdtemp(text.data());
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() {
        std::error_code error;
        std::filesystem::permissions(path, std::filesystem::perms::owner_all, error);
        std::filesystem::remove_all(path, error);
    }

    std::string operator/(const std::string& name) const { return path + "/" + name; }
    const std::string& Path() const { return path; }
    /// The names of all that is in it, in order.
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::string path;
};

inline std::string FileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// Gives the path back.
inline std::string PutFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
}
