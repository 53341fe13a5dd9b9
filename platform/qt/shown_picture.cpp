#include "platform/qt/shown_picture.h"

#include <algorithm>
#include <cstring>

std::array<std::uint32_t, 256> vScreenColors{};

namespace {

constexpr std::uint32_t kBlack = 0xff000000;

// The first and, counted from the end, the last of `count` bytes that differ; they do differ.
int FirstDifference(const unsigned char* a, const unsigned char* b, int count) {
    int at = 0;
    for (; at + 8 <= count && std::memcmp(a + at, b + at, 8) == 0; at += 8) {
    }
    while (at < count && a[at] == b[at]) ++at;
    return at;
}
int LastDifference(const unsigned char* a, const unsigned char* b, int count) {
    for (; count >= 8 && std::memcmp(a + count - 8, b + count - 8, 8) == 0; count -= 8) {
    }
    while (count > 0 && a[count - 1] == b[count - 1]) --count;
    return count - 1;
}

}  // namespace

bool ShownPicture::StartAnew(Stretch acrossNow, Stretch downNow, QSize widget) {
    if (size == widget && across == acrossNow && down == downNow && colors == vScreenColors)
        return false;
    size = widget;
    across = acrossNow;
    down = downNow;
    colors = vScreenColors;
    visibleW = std::min(across.to, size.width());
    visibleH = std::min(down.to, size.height());
    const bool seen = visibleW > 0 && visibleH > 0;
    width = seen ? across.Source(visibleW - 1) + 1 : 0;
    rows.assign(static_cast<std::size_t>(seen ? std::min(visibleH, down.from) : 0) *
                    static_cast<std::size_t>(width),
                0);
    return true;
}

QRect ShownPicture::Take(const platform::Rows8& picture, QSize stretched, QSize widget) {
    const bool all =
        StartAnew({picture.w, stretched.width()}, {picture.h, stretched.height()}, widget);
    const auto bytes = static_cast<std::size_t>(width);
    QRect changed;
    unsigned char* known = rows.data();
    // Only what shows is compared: of a picture shown at half its size every second row.
    for (int y = 0; y < visibleH && bytes > 0; known += width) {
        const int source = down.Source(y);
        const int end = std::min(down.Shown(source + 1), visibleH);
        const unsigned char* row = picture.rows[source];
        if (all || std::memcmp(known, row, bytes) != 0) {
            const int left = across.Shown(all ? 0 : FirstDifference(known, row, width));
            const int right = across.Shown(all ? width : LastDifference(known, row, width) + 1);
            std::memcpy(known, row, bytes);
            if (left < right) changed |= QRect(left, y, std::min(right, visibleW) - left, end - y);
        }
        y = end;
    }
    return all ? QRect(QPoint(), size) : changed;
}

void ShownPicture::PaintRow(const unsigned char* row, std::uint32_t* out, int begin,
                            int end) const {
    const int edge = std::min(0, end);
    const int last = std::max(begin, visibleW);
    if (begin < edge) std::fill(out + begin, out + edge, colors[row[0]]);
    if (last < end) std::fill(out + last, out + end, kBlack);
    begin = std::max(begin, 0);
    end = std::min(end, visibleW);
    if (across.from == across.to)
        for (int x = begin; x < end; ++x) out[x] = colors[row[x]];
    else if (across.from == 2 * across.to)
        for (int x = begin; x < end; ++x) out[x] = colors[row[2 * x]];
    else
        for (int x = begin; x < end; ++x) out[x] = colors[row[across.Source(x)]];
}

void ShownPicture::Paint(const QRect& part, QPoint first, QImage& to) const {
    const int begin = part.left() - first.x();
    const int end = begin + part.width();
    const std::uint32_t* before = nullptr;
    int rowBefore = 0;
    for (int screenY = part.top(); screenY <= part.bottom(); ++screenY) {
        auto* out = reinterpret_cast<std::uint32_t*>(to.scanLine(screenY)) + first.x();
        const int y = std::max(screenY - first.y(), 0);
        // Rows that are left out are not kept, and rows that are repeated are kept once.
        const int row = y < visibleH && width > 0 ? std::min(y, down.Source(y)) : -1;
        if (before && row == rowBefore)
            std::copy(before + begin, before + end, out + begin);
        else if (row < 0)
            std::fill(out + begin, out + end, kBlack);
        else
            PaintRow(rows.data() + std::size_t(row) * std::size_t(width), out, begin, end);
        before = out;
        rowBefore = row;
    }
}
