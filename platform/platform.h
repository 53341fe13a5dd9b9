// The services of a window system that belong to no single window. One instance, `vPlatform`,
// set before the application starts. All texts and paths are UTF-8.
#pragma once

#include "platform/form.h"
#include "platform/frame.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

enum class Buttons { Ok, OkCancel };
enum class Icon { None, Question, Warning, Stop };

struct FileDialog {
    std::string title;                     ///< empty for the system's own
    std::string filter;                    ///< "text|pattern|text|pattern||"
    std::string extension;                 ///< added to a typed name that has none, with its dot
    std::string path;                      ///< what stands in the name field at first
    std::vector<std::string> places = {};  ///< folders to be offered beside the system's own
};

class Platform {
public:
    virtual ~Platform() = default;

    /// Modal. True for OK, which is also the only answer of Buttons::Ok.
    virtual bool MessageBox(const std::string& text, const std::string& caption, Buttons buttons,
                            Icon icon) = 0;

    /// The path chosen, absolute; nothing on Cancel. Saving asks before a file is overwritten.
    /// Neither changes the working directory.
    virtual std::optional<std::string> OpenFileDialog(const FileDialog& dialog) = 0;
    virtual std::optional<std::string> SaveFileDialog(const FileDialog& dialog) = 0;

    /// Runs a form modally and gives the value of EndDialog.
    virtual int RunDialog(const Form& form, FormEvents& events) = 0;

    /// The settings of this user. A value that is absent, or no number where one is asked for,
    /// reads as `absent`.
    virtual std::string GetProfileString(const std::string& section, const std::string& key,
                                         const std::string& absent) = 0;
    virtual void WriteProfileString(const std::string& section, const std::string& key,
                                    const std::string& value) = 0;
    int GetProfileInt(const std::string& section, const std::string& key, int absent);
    void WriteProfileInt(const std::string& section, const std::string& key, int value);

    /// The colors of every picture shown from now on, as 0xRRGGBB.
    virtual void SetPalette(const std::array<std::uint32_t, 256>& colors) = 0;

    /// The main window, hidden and without panes. One frame at a time; `events` outlives it.
    virtual std::unique_ptr<Frame> CreateFrame(FrameEvents& events) = 0;

    /// Installed fixed-pitch font families, each once, in the system's order.
    virtual std::vector<std::string> FixedPitchFaces() = 0;

    /// Starts a program as a process of its own, which outlives this one, with that argument
    /// and working directory; false when it cannot be started. Nothing is waited for.
    virtual bool StartProgram(const std::string& program, const std::string& argument,
                              const std::string& folder) = 0;

    /// Opens a file in the desktop's own program for its kind; false when there is none.
    virtual bool ShowDocument(const std::string& path) = 0;

    /// From true to false the pointer says that work is going on; calls nest. A box or a dialog
    /// that opens meanwhile has its usual pointer.
    virtual void ShowWaitCursor(bool /*on*/) {}

    /// Sends the command to the frame's OnCommand after the present event has been handled.
    virtual void PostCommand(int command) = 0;

    /// The message loop; returns when the frame has closed.
    virtual int Run() = 0;
};

}  // namespace platform

extern platform::Platform* vPlatform;

namespace platform {

/// The pointer says during its life that work is going on: for all that can take a tenth of a
/// second.
class WaitCursor {
public:
    WaitCursor() { Show(true); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
    ~WaitCursor() { Show(false); }

private:
    static void Show(bool on) {
        if (vPlatform) vPlatform->ShowWaitCursor(on);
    }
};

}  // namespace platform
