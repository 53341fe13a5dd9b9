// The selected node in figures: name, location, size and viewport.
#pragma once

#include "editor/tools/picture_control.h"

class PropViewer final : public PictureControl {
public:
    void OnDraw(platform::Window& own) override;
};
