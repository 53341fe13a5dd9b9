// The dialog "About QUILT!": name, version and keys, and the ways to the manual and the sample.
#pragma once

#include "platform/form.h"

enum AboutControl : int { kAboutText = 1001, kAboutKeys, kAboutManual, kAboutSample };

class DoAbout final : public platform::FormEvents {
public:
    /// Modal. True when the sample is to be opened.
    bool Run();

    void OnInit(platform::FormWindow& form) override;
    void OnControl(platform::FormWindow& form, int id) override;
};
