#include "library-src/source_text.h"

#include <charconv>
#include <fstream>
#include <sstream>

void Problems::Add(const std::filesystem::path& file, int line, const std::string& what) {
    std::string place = file.string();
    if (line > 0) place += ":" + std::to_string(line);
    list.push_back(place + ": " + what);
}

std::vector<std::string> ReadLines(const std::filesystem::path& file, Problems& problems) {
    std::vector<std::string> lines;
    std::ifstream in(file);
    if (!in) {
        problems.Add(file, 0, "cannot be read");
        return lines;
    }
    for (std::string line; std::getline(in, line);) {
        line.erase(line.find_last_not_of(" \t\r") + 1);
        lines.push_back(line);
    }
    if (in.bad()) problems.Add(file, 0, "cannot be read to its end");
    return lines;
}

bool IsComment(std::string_view line) { return line.empty() || line.front() == ';'; }

std::vector<std::string> SplitWords(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    return words;
}

int ReadNumber(const std::string& word, int low, int high, const std::string& what,
               const std::filesystem::path& file, int line, Problems& problems) {
    int value = low;
    const char* end = word.data() + word.size();
    auto [stop, error] = std::from_chars(word.data(), end, value);
    if (error == std::errc() && stop == end && value >= low && value <= high) return value;
    problems.Add(file, line,
                 what + " " + word + " is no number from " + std::to_string(low) + " to " +
                     std::to_string(high));
    return low;
}

void AddMissing(const std::vector<bool>& taken, const std::string& what,
                const std::filesystem::path& file, Problems& problems) {
    std::string missing;
    for (size_t i = 0; i < taken.size(); ++i) {
        if (!taken[i]) missing += " " + std::to_string(i);
    }
    if (!missing.empty()) problems.Add(file, 0, what + " missing:" + missing);
}
