#include "library-src/glyph_source.h"

#include <algorithm>
#include <map>

namespace {

constexpr int kInk = 15;

size_t PixelIndex(int glyph, int x, int y) {
    int left = glyph % kSheetColumns * kGlyphSize;
    int top = glyph / kSheetColumns * kGlyphSize;
    return static_cast<size_t>((top + y) * kSheetSize + left + x);
}

// Reads one file into the glyphs; `taken` holds the numbers that have been drawn so far.
class GlyphFile {
public:
    GlyphFile(const std::filesystem::path& path, Glyphs& into, std::vector<bool>& numbers,
              Problems& faults)
        : file(path), glyphs(into), taken(numbers), problems(faults) {}

    void Read() {
        for (const std::string& text : ReadLines(file, problems)) {
            ++line;
            std::vector<std::string> words = SplitWords(text);
            if (IsComment(text)) {
                EndPicture();
            } else if (words[0] == "glyph") {
                EndPicture();
                Header(words);
            } else if (words[0] == "pixel") {
                EndPicture();
                Pixel(words);
            } else {
                Row(text);
            }
        }
        ++line;
        EndPicture();
    }

private:
    void Header(const std::vector<std::string>& words) {
        if (words.size() < 3) return Fault("a glyph has a number and a name");
        number = ReadNumber(words[1], 0, kGlyphCount - 1, "glyph", file, line, problems);
        headerLine = line;
        row = 0;
        size_t at = static_cast<size_t>(number);
        if (taken[at]) Fault("glyph " + words[1] + " has been drawn before");
        taken[at] = true;
        std::string& name = glyphs.names[at];
        name = words[2];
        for (size_t i = 3; i < words.size(); ++i) name += " " + words[i];
    }

    void Pixel(const std::vector<std::string>& words) {
        if (words.size() != 3 || words[1].size() != 1 ||
            !std::isalpha(static_cast<unsigned char>(words[1][0]))) {
            return Fault("a pixel has a letter and a value");
        }
        values[words[1][0]] = ReadNumber(words[2], 1, 255, "pixel value", file, line, problems);
    }

    void Row(const std::string& text) {
        if (number < 0) return Fault("a row of pixels outside a glyph");
        if (text.size() != kGlyphSize) {
            Fault("a row of " + std::to_string(text.size()) + " pixels, not 8");
        } else if (row < kGlyphSize) {
            for (int x = 0; x < kGlyphSize; ++x) Put(x, text[static_cast<size_t>(x)]);
        }
        ++row;
    }

    void Put(int x, char letter) {
        auto value = values.find(letter);
        if (value == values.end()) {
            return Fault(std::string("pixel ") + letter + " has no value");
        }
        glyphs.sheet[PixelIndex(number, x, row)] = static_cast<uint8_t>(value->second);
    }

    void EndPicture() {
        if (number >= 0 && row != kGlyphSize) {
            problems.Add(
                file, headerLine,
                "glyph " + std::to_string(number) + " has " + std::to_string(row) + " rows, not 8");
        }
        number = -1;
    }

    void Fault(const std::string& what) { problems.Add(file, line, what); }

    const std::filesystem::path& file;
    Glyphs& glyphs;
    std::vector<bool>& taken;
    Problems& problems;
    std::map<char, int> values{{'.', 0}, {'#', kInk}};
    int line = 0;
    int headerLine = 0;
    int number = -1;  // the glyph whose rows are being read, or -1
    int row = 0;
};

}  // namespace

uint8_t GlyphPixel(const Sheet& sheet, int glyph, int x, int y) {
    return sheet[PixelIndex(glyph, x, y)];
}

Glyphs ReadGlyphs(const std::filesystem::path& folder, Problems& problems) {
    Glyphs glyphs;
    std::vector<bool> taken(kGlyphCount);
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        if (entry.path().extension() == ".txt") files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    for (const auto& file : files) GlyphFile(file, glyphs, taken, problems).Read();
    AddMissing(taken, "glyphs", folder, problems);
    return glyphs;
}
