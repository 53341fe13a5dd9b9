#include "editor/tools/fade_library.h"

#include "engine/report.h"
#include "engine/text_scanner.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace {

using Status = TextScanner::Status;

constexpr std::size_t kMaxBlendName = 98;

// Through a stream of its own, which stays empty when what was opened cannot be read.
bool ReadWhole(const char* path, std::stringstream& text) {
    std::ifstream file(path);
    if (!file) return false;
    text << file.rdbuf();
    return true;
}

template <std::size_t Count>
bool ReadNumbers(TextScanner& scanner, std::array<std::int32_t, Count>& numbers) {
    return std::all_of(numbers.begin(), numbers.end(), [&](std::int32_t& number) {
        return scanner.Number(number) == Status::kGood;
    });
}

bool ReadRecord(TextScanner& scanner, FadeSet& set) {
    return scanner.Word(set.name) == Status::kGood && ReadNumbers(scanner, set.tiles);
}

bool ReadRecord(TextScanner& scanner, FadeBlend& blend) {
    // A line of an editor that ends lines with a carriage return as well has that on top.
    if (scanner.Line(blend.name, kMaxBlendName + 1) != Status::kGood) return false;
    if (!blend.name.empty() && blend.name.back() == '\r') blend.name.pop_back();
    if (blend.name.size() > kMaxBlendName || !ReadNumbers(scanner, blend.cells)) return false;
    for (std::int32_t& cell : blend.cells) cell = std::clamp(cell, 0, kFadePositions - 1);
    scanner.SkipLine();
    return true;
}

template <typename Record>
std::vector<Record> ReadRecords(const char* path, const char* message, const char* dialog) {
    std::vector<Record> records;
    std::stringstream text;
    if (!ReadWhole(path, text)) {
        Fatal(message, dialog, __LINE__);
        return records;
    }
    TextScanner scanner(*text.rdbuf());
    for (Record record; ReadRecord(scanner, record); record = {})
        records.push_back(std::move(record));
    return records;
}

}  // namespace

std::vector<FadeSet> LoadFadeSets(const char* dialog) {
    return ReadRecords<FadeSet>("Library/FadeSets.txt", "Unable to load Library/FadeSets.txt",
                                dialog);
}

std::vector<FadeBlend> LoadFadeBlends(const char* dialog) {
    return ReadRecords<FadeBlend>("Library/FadeBlends.txt", "Unable to load Library/FadeBlends.txt",
                                  dialog);
}
