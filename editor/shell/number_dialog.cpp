#include "editor/shell/number_dialog.h"

#include "editor/number_field.h"
#include "engine/file_layer.h"
#include "platform/platform.h"

#include <string>
#include <vector>

using platform::FormWindow;

void NumberDialog::Run() { vPlatform->RunDialog(layout, *this); }

void NumberDialog::OnInit(FormWindow& form) {
    for (const PropertyField& field : fields)
        form.SetText(field.id, std::to_string(vWorld->GetProperty(node, field.property)));
}

bool NumberDialog::Write(FormWindow&, std::span<const int> values) {
    for (std::size_t i = 0; i < fields.size(); ++i)
        vWorld->SetProperty(node, fields[i].property, values[i]);
    return true;
}

void NumberDialog::OnControl(FormWindow& form, int id) {
    if (id == platform::kIdCancel) form.EndDialog(id);
    if (id != platform::kIdOk) return;
    std::vector<int> values;
    for (const PropertyField& field : fields) {
        const auto value = ReadNumberField(form, field.id, field.low, field.high);
        if (!value) return;
        values.push_back(*value);
    }
    if (Write(form, values)) form.EndDialog(id);
}

bool CanMakeGrid(int w, int h) {
    // Its surface takes a byte a pixel.
    return IsGridSize(w, h) && HasMemory(std::int64_t{w} * h * kTileSize * kTileSize);
}

bool CheckGridSize(FormWindow& form, int w, int h, int widthField, int heightField) {
    if (CanMakeGrid(w, h)) return true;
    vPlatform->MessageBox(
        "A grid of " + std::to_string(w) + " by " + std::to_string(h) + " tiles is too large.",
        "QUILT!", platform::Buttons::Ok, platform::Icon::Warning);
    form.SetFocus(w >= h ? widthField : heightField);
    return false;
}
