// What the dialogs of the current object's numbers have in common: fields that show properties
// when the dialog opens, and that must all hold numbers before OK writes any.
#pragma once

#include "engine/dinterface.h"
#include "platform/form.h"

#include <span>

struct PropertyField {
    int id;        ///< of a NumberEdit
    int property;  ///< of Dinterface
    int low, high;
};

class NumberDialog : public platform::FormEvents {
public:
    /// Modal.
    void Run();

    void OnInit(platform::FormWindow& form) override;
    void OnControl(platform::FormWindow& form, int id) override;

protected:
    NumberDialog(const platform::Form& table, std::span<const PropertyField> columns)
        : node(vWorld->GetCurrentObject()), layout(table), fields(columns) {}

    /// Writes the values, in the order of the fields. False leaves the dialog open.
    virtual bool Write(platform::FormWindow& form, std::span<const int> values);

    HandleGuard node;

private:
    const platform::Form& layout;
    std::span<const PropertyField> fields;
};

/// Whether the engine can make a grid of that size.
bool CanMakeGrid(int w, int h);
/// The same; when it cannot, says so and selects the field of the longer side.
bool CheckGridSize(platform::FormWindow& form, int w, int h, int widthField, int heightField);
