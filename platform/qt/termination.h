// The ends of the program that no menu asks for.
#pragma once

#include <functional>

/// Both run on the user interface's thread: `keep` when the desktop's session is about to end,
/// which the user may still call off; `leave` when a signal (SIGTERM, SIGHUP, SIGINT) ends the
/// program, which it does after that. To be called once.
void OnTermination(std::function<void()> keep, std::function<void()> leave);
