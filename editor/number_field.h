// Number fields of forms: reading them, and telling the user which numbers they take.
#pragma once

#include "platform/form.h"

#include <limits>
#include <optional>
#include <string>

/// The decimal number that is the whole of `text`; nothing unless it lies in `low` to `high`.
std::optional<int> ParseNumber(const std::string& text, int low, int high);

/// Bounds of a field that takes any number.
inline constexpr int kAnyLow = std::numeric_limits<int>::min();
inline constexpr int kAnyHigh = std::numeric_limits<int>::max();

/// A message that asks for a number in that range.
void ShowNumberRange(int low, int high);

/// The number in a field. Nothing, after the message and with the field selected, when there is
/// none in the range: a dialog then stays open.
std::optional<int> ReadNumberField(platform::FormWindow& form, int id, int low, int high);
