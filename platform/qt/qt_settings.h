// The settings of the present user.
#pragma once

#include <optional>
#include <string>

std::optional<std::string> ReadSetting(const std::string& section, const std::string& key);
void WriteSetting(const std::string& section, const std::string& key, const std::string& value);
