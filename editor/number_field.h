// Number fields of forms: reading them, and telling the user which numbers they take.
#pragma once

#include "platform/form.h"

#include <optional>
#include <string>

/// The decimal number that is the whole of `text`; nothing unless it lies in `low` to `high`.
std::optional<int> ParseNumber(const std::string& text, int low, int high);

/// A message that asks for a number in that range.
void ShowNumberRange(int low, int high);

/// The number in a field. Nothing, after the message and with the field selected, when there is
/// none in the range: a dialog then stays open.
std::optional<int> ReadNumberField(platform::FormWindow& form, int id, int low, int high);
