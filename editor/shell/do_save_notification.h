// The notice that running a game saves it.
#pragma once

#include "platform/form.h"

enum SaveNoticeControl : int { kNoticeText = 1001, kNoticeHide = 1002 };

class DoSaveNotification final : public platform::FormEvents {
public:
    /// Shows the notice unless the user has hidden it; false when the command must end.
    static bool Confirm();

    void OnInit(platform::FormWindow& form) override;
    void OnControl(platform::FormWindow& form, int id) override;
};
