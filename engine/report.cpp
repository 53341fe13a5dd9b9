#include "engine/report.h"

#include "engine/allegro_api.h"

#include <cstdarg>
#include <cstdio>

void (*vMessageHook)(const char* text, const char* caption) = nullptr;
bool vTraceOn = false;

namespace {

// Allegro formats a trace line into 512 bytes without a bound of its own.
constexpr int kTraceLineSize = 500;
constexpr int kPlaceSize = 2000;

std::FILE* vTraceFile = nullptr;
void (*vTraceCapture)(const char* line) = nullptr;

// Registered once and for all, since Allegro opens a log file of its own in the working
// directory as soon as a line finds no handler.
int TakeTraceLine(const char* line) {
    if (vTraceCapture) vTraceCapture(line);
    if (vTraceFile) {
        std::fputs(line, vTraceFile);
        std::fflush(vTraceFile);
    }
    return 1;
}

void UpdateTrace() {
    vTraceOn = vTraceCapture || vTraceFile;
    register_trace_handler(TakeTraceLine);
}

}  // namespace

void Trace(const char* format, ...) {
    if (!vTraceOn) return;
    char line[kTraceLineSize];
    va_list args;
    va_start(args, format);
    if (std::vsnprintf(line, sizeof line, format, args) >= kTraceLineSize)
        line[kTraceLineSize - 2] = '\n';
    va_end(args);
    al_trace("%s", line);
}

void StartTrace(const char* path) {
    if (vTraceFile) std::fclose(vTraceFile);
    vTraceFile = path && *path ? std::fopen(path, "w") : nullptr;
    UpdateTrace();
}

void CaptureTrace(void (*handler)(const char* line)) {
    vTraceCapture = handler;
    UpdateTrace();
}

void ShowMessage(const char* text, const char* caption) {
    if (vMessageHook) vMessageHook(text, caption);
}

void Fatal(const char* message, const char* file, int line) {
    char place[kPlaceSize];
    if (line > 0)
        std::snprintf(place, sizeof place, "Error in %s at %i", file, line);
    else
        std::snprintf(place, sizeof place, "Error in %s", file);
    Trace("%s\n%s\n", message, place);
    ShowMessage(message, place);
}
