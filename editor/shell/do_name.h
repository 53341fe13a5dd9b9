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
    /// selectors and files. A name that is too long for the field, or no UTF-8, stays as it is
    /// unless it is edited.
    void Run();

    void OnInit(platform::FormWindow& form) override;
    void OnControl(platform::FormWindow& form, int id) override;

private:
    HandleGuard node;
    std::string shown;  ///< what the field made of the name
};
