// The platform layer on Qt 6 Widgets.
#pragma once

#include "platform/platform.h"

#include <QApplication>
#include <QPointer>

class QtFrame;

class QtPlatform final : public platform::Platform {
public:
    /// Starts Qt, which takes its own options out of the arguments, and sets `vPlatform`.
    QtPlatform(int& argc, char** argv);
    ~QtPlatform() override;

    /// No box and no setting from now on: messages go to standard error. For --picture.
    void BeQuiet();
    /// Lets the main window paint itself and writes its picture to a PNG file.
    bool SavePicture(const std::string& path);

    // platform::Platform
    bool MessageBox(const std::string& text, const std::string& caption, platform::Buttons buttons,
                    platform::Icon icon) override;
    std::optional<std::string> OpenFileDialog(const platform::FileDialog& dialog) override;
    std::optional<std::string> SaveFileDialog(const platform::FileDialog& dialog) override;
    int RunDialog(const platform::Form& form, platform::FormEvents& events) override;
    std::string GetProfileString(const std::string& section, const std::string& key,
                                 const std::string& absent) override;
    void WriteProfileString(const std::string& section, const std::string& key,
                            const std::string& value) override;
    void SetPalette(const std::array<std::uint32_t, 256>& colors) override;
    std::unique_ptr<platform::Frame> CreateFrame(platform::FrameEvents& events) override;
    std::vector<std::string> FixedPitchFaces() override;
    bool StartProgram(const std::string& program, const std::string& argument,
                      const std::string& folder) override;
    bool ShowDocument(const std::string& path) override;
    void ShowWaitCursor(bool on) override;
    void PostCommand(int command) override;
    int Run() override;

private:
    QApplication app;
    QPointer<QtFrame> frame;
    bool quiet = false;
};
