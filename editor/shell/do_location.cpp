#include "editor/shell/do_location.h"

#include "editor/number_field.h"

using platform::Control;
using platform::ControlKind;

namespace {

constexpr Control kControls[] = {
    {kLocationLabel, ControlKind::Label, "X Coord", 7, 9, 29, 9},
    {kLocationX, ControlKind::NumberEdit, "X Coord", 37, 7, 40, 13,
     "Column of the grid that it stands on"},
    {kLocationLabel + 1, ControlKind::Label, "Y Coord", 83, 9, 29, 9},
    {kLocationY, ControlKind::NumberEdit, "Y Coord", 113, 7, 40, 13,
     "Row of the grid that it stands on"},
    {kLocationLabel + 2, ControlKind::Label, "Z Coord", 159, 9, 29, 9},
    {kLocationZ, ControlKind::NumberEdit, "Z Coord", 189, 7, 40, 13,
     "Order among its siblings: objects with a larger z lie in front, boards behind"},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 236, 7, 36, 13, "Put it there"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 276, 7, 36, 13, "Leave it"},
};

constexpr platform::Form kForm{"Location", 319, 27, "Courier New", 8, kControls};

constexpr PropertyField kFields[] = {
    {kLocationX, kPosX, kAnyLow, kAnyHigh},
    {kLocationY, kPosY, kAnyLow, kAnyHigh},
    {kLocationZ, kPosZ, kAnyLow, kAnyHigh},
};

}  // namespace

DoLocation::DoLocation() : NumberDialog(kForm, kFields) {}
