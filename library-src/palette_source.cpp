#include "library-src/palette_source.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kTop = 255;
constexpr int kTopStep = 63;

using Rgb = std::array<int, 3>;

Color ToSteps(const std::array<double, 3>& parts) {
    auto step = [](double part) {
        return static_cast<uint8_t>(std::lround(part * kTopStep / kTop));
    };
    return {step(parts[0]), step(parts[1]), step(parts[2])};
}

// The colour at `place`, 0 to 1, of the way through the controls.
Color Blend(const std::vector<Rgb>& controls, double place) {
    double along = place * static_cast<double>(controls.size() - 1);
    size_t from = std::min(static_cast<size_t>(along), controls.size() - 2);
    double part = along - static_cast<double>(from);
    std::array<double, 3> mix{};
    for (size_t i = 0; i < mix.size(); ++i) {
        mix[i] = controls[from][i] + (controls[from + 1][i] - controls[from][i]) * part;
    }
    return ToSteps(mix);
}

class PaletteFile {
public:
    PaletteFile(const std::filesystem::path& path, Problems& faults)
        : file(path), problems(faults), taken(kColorCount) {}

    Palette Read() {
        for (const std::string& text : ReadLines(file, problems)) {
            ++line;
            if (IsComment(text)) continue;
            std::vector<std::string> words = SplitWords(text);
            if (words[0] == "color") {
                One(words);
            } else if (words[0] == "ramp") {
                Run(words);
            } else {
                Fault(words[0] + " is neither color nor ramp");
            }
        }
        AddMissing(taken, "colours", file, problems);
        return palette;
    }

private:
    void One(const std::vector<std::string>& words) {
        if (words.size() != 6) return Fault("a color has a number, a name and three parts");
        int number = Number(words[1], 0, kColorCount - 1, "colour");
        Rgb rgb = Parts(words, 3);
        Put(number, ToSteps({double(rgb[0]), double(rgb[1]), double(rgb[2])}));
    }

    void Run(const std::vector<std::string>& words) {
        constexpr size_t kHead = 4;
        if (words.size() < kHead + 6 || (words.size() - kHead) % 3 != 0) {
            return Fault("a ramp has a first number, a count, a name and two or more colours");
        }
        int first = Number(words[1], 0, kColorCount - 2, "colour");
        int count = Number(words[2], 2, kColorCount - first, "count");
        std::vector<Rgb> controls;
        for (size_t at = kHead; at < words.size(); at += 3) controls.push_back(Parts(words, at));
        for (int i = 0; i < count; ++i) Put(first + i, Blend(controls, double(i) / (count - 1)));
        palette.ramps.push_back({first, count, words[3]});
    }

    Rgb Parts(const std::vector<std::string>& words, size_t at) {
        Rgb rgb{};
        for (size_t i = 0; i < rgb.size(); ++i) {
            rgb[i] = Number(words[at + i], 0, kTop, "part of a colour");
        }
        return rgb;
    }

    void Put(int number, Color color) {
        size_t at = static_cast<size_t>(number);
        if (taken[at]) Fault("colour " + std::to_string(number) + " has been given before");
        taken[at] = true;
        palette.colors[at] = color;
    }

    int Number(const std::string& word, int low, int high, const std::string& what) {
        return ReadNumber(word, low, high, what, file, line, problems);
    }

    void Fault(const std::string& what) { problems.Add(file, line, what); }

    const std::filesystem::path& file;
    Problems& problems;
    std::vector<bool> taken;
    Palette palette;
    int line = 0;
};

}  // namespace

Palette ReadPalette(const std::filesystem::path& file, Problems& problems) {
    return PaletteFile(file, problems).Read();
}
