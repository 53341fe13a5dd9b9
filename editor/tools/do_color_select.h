// The dialog "Color Select": the foreground colour of the brush, by mouse or arrow keys. The
// choice is in vBrush at once and stays there, also after Cancel.
#pragma once

#include "editor/tools/color_select.h"
#include "platform/form.h"

enum ColorSelectControl : int { kColorGrid = 1001 };

class DoColorSelect final : public platform::FormEvents {
public:
    /// Modal.
    void Run();

    platform::WindowEvents* PictureEvents(int id) override;
    void OnInit(platform::FormWindow& form) override;
    bool OnFormKey(platform::FormWindow& form, int code) override;
    void OnControl(platform::FormWindow& form, int id) override;

private:
    FgColorSelect grid;
};
