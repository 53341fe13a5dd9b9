// The main window's menu bar as a value.
#pragma once

#include "platform/menu.h"

#include <string>
#include <vector>

/// `recent` are the paths of the recent files, newest first.
platform::Menu MakeMenuBar(const std::vector<std::string>& recent);
