// The dialog "Size": the grid of the current object and, if wanted, its viewport with it.
#pragma once

#include "editor/shell/number_dialog.h"

enum SizeControl : int { kSizeW = 1001, kSizeH, kSizeChangeView, kSizeLabel };

class DoSize final : public NumberDialog {
public:
    DoSize();

    void OnInit(platform::FormWindow& form) override;

private:
    bool Write(platform::FormWindow& form, std::span<const int> values) override;
};
