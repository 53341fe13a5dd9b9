// The dialog "Location": position and depth of the current object.
#pragma once

#include "editor/shell/number_dialog.h"

enum LocationControl : int { kLocationX = 1001, kLocationY, kLocationZ, kLocationLabel };

class DoLocation final : public NumberDialog {
public:
    DoLocation();
};
