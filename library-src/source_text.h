// The text sources of the library: their lines, and the list of what is wrong with them.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

// What is wrong with the sources, one "file:line: what" each. An empty list means that all is well.
class Problems {
public:
    // Line 0 speaks of the file as a whole.
    void Add(const std::filesystem::path& file, int line, const std::string& what);
    bool Empty() const { return list.empty(); }
    const std::vector<std::string>& List() const { return list; }

private:
    std::vector<std::string> list;
};

// The lines of a file, without line ends and trailing blanks: line 1 is the first of the result.
// A file that cannot be read is a problem, and gives no lines.
std::vector<std::string> ReadLines(const std::filesystem::path& file, Problems& problems);

// Empty lines, and those that begin with a semicolon, say nothing.
bool IsComment(std::string_view line);

std::vector<std::string> SplitWords(const std::string& line);

// A decimal number from low to high. Anything else is a problem of that line, and gives low.
int ReadNumber(const std::string& word, int low, int high, const std::string& what,
               const std::filesystem::path& file, int line, Problems& problems);

// Says which of the 256 numbers are not taken, if any.
void AddMissing(const std::vector<bool>& taken, const std::string& what,
                const std::filesystem::path& file, Problems& problems);
