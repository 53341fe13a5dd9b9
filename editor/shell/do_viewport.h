// The dialog "Viewport": how much of its grid the current object shows.
#pragma once

#include "editor/shell/number_dialog.h"

enum ViewportControl : int { kViewportW = 1001, kViewportH, kViewportLabel };

class DoViewport final : public NumberDialog {
public:
    DoViewport();

private:
    bool Write(platform::FormWindow& form, std::span<const int> values) override;
};
