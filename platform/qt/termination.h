// The ends of the program that no menu asks for.
#pragma once

#include <functional>

/// Runs `act` on the user interface's thread when the desktop's session ends, and when a signal
/// (SIGTERM, SIGHUP, SIGINT) ends the program, which it does after that. Once.
void OnTermination(std::function<void()> act);
