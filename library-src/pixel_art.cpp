#include "library-src/pixel_art.h"

#include <cctype>
#include <map>

namespace {

constexpr int kInk = 15;
constexpr int kLastNumber = 255;

class ArtReader {
public:
    ArtReader(const std::filesystem::path& path, const std::string& head, int size,
              const std::function<void(int, const std::string&, int)>& onBegin,
              const std::function<void(int, int, int, int)>& onPixel, Problems& faults)
        : file(path), word(head), side(size), begin(onBegin), put(onPixel), problems(faults) {}

    void Read() {
        for (const std::string& text : ReadLines(file, problems)) {
            ++line;
            const std::vector<std::string> words = SplitWords(text);
            if (IsComment(text)) {
                EndPicture();
            } else if (words[0] == word) {
                EndPicture();
                Head(words);
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
    void Head(const std::vector<std::string>& words) {
        if (words.size() < 3) return Fault("a " + word + " has a number and a name");
        number = ReadNumber(words[1], 0, kLastNumber, word, file, line, problems);
        headLine = line;
        row = 0;
        std::string name = words[2];
        for (size_t i = 3; i < words.size(); ++i) name += " " + words[i];
        begin(number, name, line);
    }

    void Pixel(const std::vector<std::string>& words) {
        if (words.size() != 3 || words[1].size() != 1 ||
            !std::isalpha(static_cast<unsigned char>(words[1][0]))) {
            return Fault("a pixel has a letter and a value");
        }
        values[words[1][0]] = ReadNumber(words[2], 1, 255, "pixel value", file, line, problems);
    }

    void Row(const std::string& text) {
        if (number < 0) return Fault("a row of pixels outside a " + word);
        if (text.size() != static_cast<size_t>(side)) {
            Fault("a row of " + std::to_string(text.size()) + " pixels, not " +
                  std::to_string(side));
        } else if (row < side) {
            for (int x = 0; x < side; ++x) Put(x, text[static_cast<size_t>(x)]);
        }
        ++row;
    }

    void Put(int x, char letter) {
        const auto value = values.find(letter);
        if (value == values.end()) return Fault(std::string("pixel ") + letter + " has no value");
        put(number, x, row, value->second);
    }

    void EndPicture() {
        if (number >= 0 && row != side) {
            problems.Add(file, headLine,
                         word + " " + std::to_string(number) + " has " + std::to_string(row) +
                             " rows, not " + std::to_string(side));
        }
        number = -1;
    }

    void Fault(const std::string& what) { problems.Add(file, line, what); }

    const std::filesystem::path& file;
    const std::string& word;
    const int side;
    const std::function<void(int, const std::string&, int)>& begin;
    const std::function<void(int, int, int, int)>& put;
    Problems& problems;
    std::map<char, int> values{{'.', 0}, {'#', kInk}};
    int line = 0;
    int headLine = 0;
    int number = -1;  // of the picture whose rows are being read, or -1
    int row = 0;
};

}  // namespace

void ReadPixelArt(const std::filesystem::path& file, const std::string& word, int side,
                  const std::function<void(int, const std::string&, int)>& begin,
                  const std::function<void(int, int, int, int)>& put, Problems& problems) {
    ArtReader(file, word, side, begin, put, problems).Read();
}
