#include "platform/platform.h"

#include <charconv>

platform::Platform* vPlatform = nullptr;

namespace platform {

int Platform::GetProfileInt(const std::string& section, const std::string& key, int absent) {
    const std::string text = GetProfileString(section, key, "");
    int value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc{} && stop == end && !text.empty() ? value : absent;
}

void Platform::WriteProfileInt(const std::string& section, const std::string& key, int value) {
    WriteProfileString(section, key, std::to_string(value));
}

}  // namespace platform
