#include "platform/platform.h"

platform::Platform* vPlatform = nullptr;
