// A brush on a tile in the plainest words, and the panes around an edit view, which write down what
// they are asked, a letter each.
#pragma once

#include "editor/view/brush.h"
#include "editor/view/quilt_view.h"
#include "engine/dtile.h"

#include <array>
#include <string>

inline std::array<std::uint16_t*, 4> Fields(Dtile& t) { return {&t.chr, &t.fg, &t.bg, &t.attrib}; }
inline std::array<std::int32_t*, 4> Fields(Brush& b) { return {&b.chr, &b.fg, &b.bg, &b.attrib}; }

/// A field of -1 does not paint.
inline void Paint(Dtile& tile, Brush brush) {
    for (std::size_t i = 0; i < 4; ++i)
        if (const int value = *Fields(brush)[i]; value != -1)
            *Fields(tile)[i] = static_cast<std::uint16_t>(value);
}

struct HostLog : ViewHost {
    void Changed(Change what) override {
        constexpr const char* kTold[] = {"", "", "v", "tv", "t", "p", "m", "", "r"};
        told += kTold[static_cast<int>(what)];
    }
    bool EditBrush() override { return false; }
    bool RunAreaDialog(AreaDialog, TileArea&, Brush&) override { return false; }
    void EditName() override { told += 'n'; }

    std::string told;
};
