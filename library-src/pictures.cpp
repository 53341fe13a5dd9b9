#include "library-src/pictures.h"

#include "library-src/png.h"

#include <cstdio>

namespace {

constexpr uint8_t kWhite = 15;
constexpr uint8_t kBlack = 255;
constexpr uint8_t kGridColor = 28;
constexpr uint8_t kLabelColor = 34;

class Canvas {
public:
    Canvas(int w, int h, const Sheet& glyphs) : picture(w, h, kBlack), sheet(glyphs) {}

    // Every set pixel of the glyph becomes a square of `scale` pixels.
    void Glyph(int glyph, int left, int top, int scale, uint8_t color) {
        for (int y = 0; y < kGlyphSize; ++y) {
            for (int x = 0; x < kGlyphSize; ++x) {
                if (GlyphPixel(sheet, glyph, x, y) == 0) continue;
                picture.Fill(left + x * scale, top + y * scale, scale, scale, color);
            }
        }
    }

    void Text(const std::string& text, int left, int top, uint8_t color) {
        for (unsigned char c : text) {
            Glyph(c, left, top, 1, color);
            left += kGlyphSize;
        }
    }

    Picture picture;

private:
    const Sheet& sheet;
};

int Luminance(const Color& color) {
    return (3 * Shown(color.red) + 6 * Shown(color.green) + Shown(color.blue)) / 10;
}

uint8_t InkOn(const Color& color) {
    constexpr int kMiddle = 110;
    return Luminance(color) > kMiddle ? kBlack : kWhite;
}

std::string Hex(int value) {
    char text[8];
    std::snprintf(text, sizeof text, "%X", static_cast<unsigned>(value));
    return text;
}

}  // namespace

std::string SheetPicture(const Glyphs& glyphs, const Palette& palette) {
    constexpr int kScale = 4;
    constexpr int kCell = kGlyphSize * kScale + 3;  // a pixel of air on both sides, and the grid
    constexpr int kLeft = 24;
    constexpr int kTop = 16;
    constexpr int kGrid = kSheetColumns * kCell + 1;
    Canvas canvas(kLeft + kGrid + 4, kTop + kGrid + 4, glyphs.sheet);
    for (int i = 0; i <= kSheetColumns; ++i) {
        canvas.picture.Fill(kLeft, kTop + i * kCell, kGrid, 1, kGridColor);
        canvas.picture.Fill(kLeft + i * kCell, kTop, 1, kGrid, kGridColor);
    }
    for (int i = 0; i < kSheetColumns; ++i) {
        int middle = i * kCell + (kCell - kGlyphSize) / 2;
        canvas.Text(Hex(i), kLeft + middle, 4, kLabelColor);
        canvas.Text(Hex(i) + "0", 4, kTop + middle, kLabelColor);
    }
    for (int n = 0; n < kGlyphCount; ++n) {
        int left = kLeft + n % kSheetColumns * kCell + 2;
        int top = kTop + n / kSheetColumns * kCell + 2;
        canvas.Glyph(n, left, top, kScale, kWhite);
    }
    return MakePng(canvas.picture, palette);
}

std::string PalettePicture(const Glyphs& glyphs, const Palette& palette) {
    constexpr int kColumns = 16;
    constexpr int kWidth = 36;
    constexpr int kHeight = 24;
    constexpr int kStrip = 20;
    constexpr int kStripLeft = 120;
    constexpr int kStripWidth = (kColumns * kWidth - kStripLeft) / 16;
    constexpr int kGap = 12;
    const int ramps = static_cast<int>(palette.ramps.size());
    const int swatches = kColorCount / kColumns * kHeight;
    Canvas canvas(kColumns * kWidth, swatches + kGap + ramps * kStrip, glyphs.sheet);
    for (int c = 0; c < kColorCount; ++c) {
        const int x = c % kColumns * kWidth;
        const int y = c / kColumns * kHeight;
        std::string number = std::to_string(c);
        int width = static_cast<int>(number.size()) * kGlyphSize;
        canvas.picture.Fill(x, y, kWidth, kHeight, static_cast<uint8_t>(c));
        canvas.Text(number, x + (kWidth - width) / 2, y + (kHeight - kGlyphSize) / 2,
                    InkOn(palette.colors[static_cast<size_t>(c)]));
    }
    int y = swatches + kGap;
    for (const Ramp& ramp : palette.ramps) {
        std::string label = std::to_string(ramp.first) + " " + ramp.name;
        canvas.Text(label, 8, y + (kStrip - kGlyphSize) / 2, kWhite);
        for (int i = 0; i < ramp.count; ++i) {
            canvas.picture.Fill(kStripLeft + i * kStripWidth, y, kStripWidth, kStrip - 2,
                                static_cast<uint8_t>(ramp.first + i));
        }
        y += kStrip;
    }
    return MakePng(canvas.picture, palette);
}
