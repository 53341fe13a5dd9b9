#include "tests/robot/alarm.h"

#include <unistd.h>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/common_interface_defs.h>
#endif

namespace {

// Written before a step, read by signal handlers, which may not format.
std::array<char, 512> vWhere{};
std::uint64_t vSeed = 0;
const char* vLog = "";

void Write(const char* text) {
    // Nothing is left to be done about a failure.
    if (write(STDERR_FILENO, text, std::strlen(text)) < 0) return;
}

void TellWhere() { Write(vWhere.data()); }

void OnAlarm(int) {
    Write("finding: the step does not end\n");
    TellWhere();
#ifdef __SANITIZE_ADDRESS__
    __sanitizer_print_stack_trace();
#endif
    _exit(EXIT_FAILURE);
}

#ifndef __SANITIZE_ADDRESS__
void OnCrash(int signal) {
    Write("finding: the program crashed\n");
    TellWhere();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}
#endif

}  // namespace

void StartAlarm(std::uint64_t seed, const char* log) {
    vSeed = seed;
    vLog = log;
    std::signal(SIGALRM, OnAlarm);
#ifdef __SANITIZE_ADDRESS__
    __sanitizer_set_death_callback(TellWhere);
#else
    for (int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) std::signal(signal, OnCrash);
#endif
}

void SetAlarm(long step, unsigned seconds) {
    std::snprintf(vWhere.data(), vWhere.size(), "seed %llu, step %ld, log %s\n",
                  static_cast<unsigned long long>(vSeed), step, vLog);
    alarm(seconds);
}

void StopAlarm() { alarm(0); }
