// The picture that a widget shows, as the rows of palette indices that can be seen.
//
// Between two pictures little changes as a rule: a picture is compared with the one before, and
// only what differs has to be painted. Colours come in when it is painted, straight into the
// pixels of the screen's copy, so that a picture of which all changes is gone through once.
#pragma once

#include "platform/window.h"

#include <QImage>
#include <QRect>
#include <array>
#include <cstdint>
#include <vector>

/// The colours in which pictures are shown, as 0xffRRGGBB.
extern std::array<std::uint32_t, 256> vScreenColors;

/// All places and sizes are device pixels of the widget.
class ShownPicture {
public:
    /// Takes a picture, not empty, which covers `stretched` pixels of a widget of that size from
    /// its corner on. What differs from the picture before, or all when that was shown otherwise.
    QRect Take(const platform::Rows8& picture, QSize stretched, QSize widget);
    /// Paints that part of a 32-bit image in which the picture's corner lies at `first`. What
    /// lies before the corner goes on with the picture's edge, what lies behind its end is black.
    void Paint(const QRect& part, QPoint first, QImage& to) const;

private:
    /// How `from` pixels of a picture lie on `to` of the screen, by repeating or leaving out whole
    /// ones.
    struct Stretch {
        int from = 1;
        int to = 1;

        int Source(int at) const {
            return static_cast<int>(static_cast<std::int64_t>(at) * from / to);
        }
        /// The first screen pixel that shows the picture's or one after it.
        int Shown(int source) const {
            return static_cast<int>((static_cast<std::int64_t>(source) * to + from - 1) / from);
        }
        bool operator==(const Stretch&) const = default;
    };

    /// Makes way for a picture that cannot be compared with the one before; false if it can.
    bool StartAnew(Stretch acrossNow, Stretch downNow, QSize widget);
    void PaintRow(const unsigned char* row, std::uint32_t* out, int begin, int end) const;

    Stretch across, down;
    QSize size;
    int visibleW = 0;  ///< of the widget, covered by the picture
    int visibleH = 0;
    int width = 0;                    ///< pixels of a row that are kept
    std::vector<unsigned char> rows;  ///< each once, if it is seen at all
    std::array<std::uint32_t, 256> colors{};
};
