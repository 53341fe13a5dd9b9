// What the engine tells the outside: the trace for the developer, messages for the user.
//
// The engine knows no window system. The application sets `vMessageHook` to a message box;
// tests set it to look at what was reported.
#pragma once

/// Shows a message with an OK button and returns when it has been read. Null drops messages.
/// Both texts are the engine's own and need not outlive the call.
extern void (*vMessageHook)(const char* text, const char* caption);

/// For errors after which the operation at hand is over: a trace line, and a message whose
/// caption names the place. It returns; whether the program ends is the caller's choice. `file` is
/// a source file's path from the folder of the whole program, or the text of whatever else names
/// the place. Usually called as Fatal("...", __FILE__, __LINE__).
void Fatal(const char* message, const char* file, int line);

/// A message without a place: the limits of the fixed tables.
void ShowMessage(const char* text, const char* caption);

/// Whether anything takes trace lines at present. While nothing does they are dropped before
/// they are formatted.
extern bool vTraceOn;

/// Writes one line to Allegro's trace, if anything takes it; `format` is printf's and ends in a
/// line feed. A line of more than 500 bytes is cut.
[[gnu::format(printf, 1, 2)]] void Trace(const char* format, ...);

/// Decides where trace lines go: to the file at `path` (created anew), or nowhere when it is
/// null or empty or cannot be written. To be called once, before anything is traced.
void StartTrace(const char* path);

/// Hands every trace line to `handler` until it is called with null: for tests.
void CaptureTrace(void (*handler)(const char* line));
