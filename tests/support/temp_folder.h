// A folder of its own for a test, gone with all in it when the test ends.
#pragma once

#include <string>

class TempFolder {
public:
    TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder();

    const std::string& Path() const { return path; }
    std::string File(const std::string& name) const { return path + "/" + name; }
    /// Writes a file into the folder and gives its path.
    std::string Write(const std::string& name, const std::string& bytes) const;

private:
    std::string path;
};
