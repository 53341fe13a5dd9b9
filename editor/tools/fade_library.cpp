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

// What ended the reading before the file did.
struct Fault {
    int line = 0;
    std::string text;
};

std::string Why(Status status) {
    switch (status) {
        case Status::kNoNumber:
            return "a number belongs here";
        case Status::kTooLarge:
            return "a number is too large";
        case Status::kTooLong:
            return "a name is too long";
        default:
            // The file ends inside a record: what there is of it is dropped.
            return {};
    }
}

template <std::size_t Count>
Status ReadNumbers(TextScanner& scanner, std::array<std::int32_t, Count>& numbers) {
    for (std::int32_t& number : numbers)
        if (const Status status = scanner.Number(number); status != Status::kGood) return status;
    return Status::kGood;
}

bool ReadRecord(TextScanner& scanner, FadeSet& set, Fault& fault) {
    Status status = scanner.Word(set.name);
    if (status == Status::kGood) status = ReadNumbers(scanner, set.tiles);
    fault = {scanner.LineNumber(), Why(status)};
    return status == Status::kGood;
}

bool ReadRecord(TextScanner& scanner, FadeBlend& blend, Fault& fault) {
    fault.line = scanner.LineNumber();
    // A line of an editor that ends lines with a carriage return as well has that on top.
    Status status = scanner.Line(blend.name, kMaxBlendName + 1);
    if (!blend.name.empty() && blend.name.back() == '\r') blend.name.pop_back();
    if (blend.name.size() > kMaxBlendName) status = Status::kTooLong;
    if (status == Status::kGood) {
        status = ReadNumbers(scanner, blend.cells);
        const bool blank = blend.name.find_first_not_of(" \t") == std::string::npos;
        if (status == Status::kNoNumber && blank) {
            fault.text = "this line is blank, and the name of a blend belongs here";
            return false;
        }
        fault.line = scanner.LineNumber();
    }
    fault.text = Why(status);
    if (status != Status::kGood) return false;
    for (std::int32_t& cell : blend.cells) cell = std::clamp(cell, 0, kFadePositions - 1);
    scanner.SkipLine();
    return true;
}

template <typename Record>
std::vector<Record> ReadRecords(const std::string& path, const char* dialog) {
    std::vector<Record> records;
    std::stringstream text;
    if (!ReadWhole(path.c_str(), text)) {
        Fatal(("Unable to load " + path).c_str(), dialog, __LINE__);
        return records;
    }
    TextScanner scanner(*text.rdbuf());
    Fault fault;
    for (Record record; ReadRecord(scanner, record, fault); record = {})
        records.push_back(std::move(record));
    if (!fault.text.empty()) {
        const std::string place = path + ", line " + std::to_string(fault.line);
        Fatal((place + ": " + fault.text + ".\nWhat stands in front of it can be used.").c_str(),
              dialog, __LINE__);
    }
    return records;
}

}  // namespace

std::vector<FadeSet> LoadFadeSets(const char* dialog) {
    return ReadRecords<FadeSet>("Library/FadeSets.txt", dialog);
}

std::vector<FadeBlend> LoadFadeBlends(const char* dialog) {
    return ReadRecords<FadeBlend>("Library/FadeBlends.txt", dialog);
}
