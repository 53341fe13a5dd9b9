// The dialog "Name": the name of the current object.
#pragma once

#include "engine/dinterface.h"
#include "platform/form.h"

#include <string>

enum NameControl : int { kNameText = 1001 };

inline constexpr int kMaxNameLength = 50;

class DoName final : public platform::FormEvents {
public:
    DoName() : node(vWorld->GetCurrentObject()) {}

    /// Modal. OK writes the name, with an underscore for each blank: names are one word in
    /// selectors and files.
    void Run();

    void OnInit(platform::FormWindow& form) override;
    void OnControl(platform::FormWindow& form, int id) override;

private:
    HandleGuard node;
};
