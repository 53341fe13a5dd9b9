#include "editor/number_field.h"

#include "platform/platform.h"

#include <charconv>

std::optional<int> ParseNumber(const std::string& text, int low, int high) {
    int value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end || value < low || value > high) return std::nullopt;
    return value;
}

void ShowNumberRange(int low, int high) {
    const bool any = low == kAnyLow && high == kAnyHigh;
    const std::string range = " between " + std::to_string(low) + " and " + std::to_string(high);
    vPlatform->MessageBox("Please enter an integer" + (any ? "" : range) + ".", "QUILT!",
                          platform::Buttons::Ok, platform::Icon::Warning);
}

std::optional<int> ReadNumberField(platform::FormWindow& form, int id, int low, int high) {
    const std::optional<int> value = ParseNumber(form.GetText(id), low, high);
    if (!value) {
        ShowNumberRange(low, high);
        form.SetFocus(id);
    }
    return value;
}
