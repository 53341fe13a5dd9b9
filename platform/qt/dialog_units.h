// Dialog units: the measure in which forms are drawn, bound to the size of their font.
#pragma once

#include <QFont>
#include <QRect>
#include <QSize>
#include <cmath>

/// The form's font: a fixed-pitch one in place of a family that is not installed.
QFont FormFont(const char* family, int points);

/// Layout pixels of four units across and eight down: the font's mean character width and its
/// line height, but no less than the font for which the forms were drawn has.
QSize BaseUnits(const QFont& font);

inline int Across(double units, const QSize& base) {
    return static_cast<int>(std::lround(units * base.width() / 4));
}
inline int Down(double units, const QSize& base) {
    return static_cast<int>(std::lround(units * base.height() / 8));
}
