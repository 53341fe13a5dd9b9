// The second backend of the platform layer: no window system, but a script that answers.
//
// A test writes down beforehand what it expects the editor to ask and what a person would
// answer, in order. Something asked that the script does not name next fails the test and is
// answered with Cancel; what the script still names at the end fails it as well.
#pragma once

#include "engine/bitmap.h"
#include "platform/platform.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

class ScriptedPlatform;

void ExpectNothingOpen();

/// One event of a person. After it, dialogs and all, no handle and no list may be open.
inline int vEventDepth = 0;
template <typename Act>
void Do(Act act) {
    ++vEventDepth;
    act();
    if (--vEventDepth == 0) ExpectNothingOpen();
}

class ScriptedWindow final : public platform::Window {
public:
    ScriptedWindow(ScriptedPlatform& owner, platform::WindowEvents* listener, platform::Size inside)
        : script(owner), events(listener), size(inside) {}

    platform::Size ClientSize() const override { return size; }
    void Invalidate() override { ++invalidated; }
    void SetCapture() override { captured = true; }
    void ReleaseCapture() override { captured = false; }
    platform::Point ClientToScreen(platform::Point at) const override {
        return {at.x + 1000, at.y + 1000};
    }
    void SetFocus() override { focused = true; }
    void ShowPicture(const platform::Rows8& picture, platform::Size shownAs) override;
    int TrackPopupMenu(const platform::Menu& menu, platform::Point screen) override;
    void SetName(const std::string&) override {}
    void SetDescription(const std::string& text) override { description = text; }

    /// Repaints at once and keeps what is shown.
    void Paint();
    /// One event of a person, such as Send(&WindowEvents::OnKeyDown, kKeyTab).
    template <typename... Told, typename... Given>
    void Send(void (platform::WindowEvents::*event)(Told...), Given... given) {
        Do([&] { (events->*event)(given...); });
    }
    void Key(int code) { Send(&platform::WindowEvents::OnKeyDown, code); }
    /// The left button down at one place, up at another.
    void Drag(platform::Point from, platform::Point to, bool ctrl = false);
    void Click(platform::Point at, bool ctrl = false) { Drag(at, at, ctrl); }
    /// Fails where the picture is not this one, which may be larger, or has not these pixels.
    void ExpectPicture(BITMAP* expected) const;
    void ExpectPicture(const std::function<int(int, int)>& expected) const;
    int PixelAt(int x, int y) const { return pixels[static_cast<std::size_t>(y * w + x)]; }

    ScriptedPlatform& script;
    platform::WindowEvents* events;
    platform::Size size;
    int invalidated = 0;
    bool captured = false, focused = false;
    std::string description;
    // The last picture shown: its own size, and the size on the screen.
    std::vector<unsigned char> pixels;
    int w = 0, h = 0;
    platform::Size shown;
};

/// A text control without a text.
struct ScriptedCode final : platform::CodeControl {
    std::intptr_t Send(unsigned, std::uintptr_t, std::intptr_t) override { return 0; }
};

class ScriptedForm final : public platform::FormWindow {
public:
    ScriptedForm(ScriptedPlatform& owner, const platform::Form& form,
                 platform::FormEvents& listener);

    void SetText(int id, const std::string& text) override { controls[id].text = text; }
    std::string GetText(int id) const override { return controls[id].text; }
    void SetCheck(int id, bool on) override { controls[id].checked = on; }
    bool IsChecked(int id) const override { return controls[id].checked; }
    bool IsEnabled(int id) const { return controls[id].enabled; }
    void SetValue(int id, int value) override { controls[id].value = value; }
    int GetValue(int id) const override { return controls[id].value; }
    void Enable(int id, bool on) override { controls[id].enabled = on; }
    void SetFocus(int id) override { focus = id; }
    platform::Window* Picture(int id) override { return controls[id].picture.get(); }
    platform::CodeControl* Code(int) override { return &program; }
    int TrackMenuBelow(int, const platform::Menu& menu) override;
    platform::Size ClientSize() const override { return {layout.w, layout.h}; }
    void Invalidate() override { events.OnFormPaint(*this); }
    void EndDialog(int value) override { result = value; }

    ScriptedWindow& Shown(int id) { return *controls[id].picture; }
    /// What a control holds: a text in quotes, a tick as [x] or [ ], a slider as =3; "!" before
    /// it when it is disabled. And what all hold that hold something, in tab order.
    std::string Held(int id) const;
    std::string Look() const;

    /// What a person does. On a control that is disabled or not there it fails the test.
    void Click(int id) { Use(id, &platform::FormEvents::OnControl); }
    void Type(int id, const std::string& text);
    void Slide(int id, int value);
    /// A key pressed; true when the form took it before its controls.
    bool Press(int code) {
        bool taken = false;
        Do([&] { taken = events.OnFormKey(*this, code); });
        return taken;
    }
    /// Chooses an entry of the form's menu bar.
    void Choose(int command);

    const platform::Form& layout;
    platform::FormEvents& events;
    int focus = 0;
    int result = 0;

private:
    struct State {
        const platform::Control* control = nullptr;
        std::string text{};
        bool checked = false, enabled = true;
        int value = 0;
        std::unique_ptr<ScriptedWindow> picture{};
    };
    void Use(int id, void (platform::FormEvents::*event)(platform::FormWindow&, int));

    ScriptedPlatform& script;
    platform::Menu bar;
    mutable std::map<int, State> controls;
    ScriptedCode program;
};

class ScriptedFrame final : public platform::Frame {
public:
    ScriptedFrame(ScriptedPlatform& owner, platform::FrameEvents& listener)
        : script(owner), events(listener) {}

    void SetCaption(const std::string& text) override { caption = text; }
    void SetMenuBar(const platform::Menu& menu) override { bar = menu; }
    void CheckMenuItem(int command, bool checked) override {
        if (auto* item = platform::FindEntry(bar, command)) item->checked = checked;
    }
    void SetIdleMessage(const std::string&) override {}
    void ShowNotice(const std::string& text) override { notice = text; }
    void ShowStatusBar(bool on) override { statusBar = on; }
    bool IsStatusBarShown() const override { return statusBar; }
    platform::Size ClientSize() const override { return {1024, 768}; }
    platform::Window* CreatePane(platform::Pane pane, platform::WindowEvents& listener) override;
    platform::FormWindow* CreateFormPane(platform::Pane pane, const platform::Form& form,
                                         platform::FormEvents& listener) override;
    void SetLeftWidth(int value) override { leftWidth = value; }
    void SetLowerHeight(int value) override { lowerHeight = value; }
    platform::Size PaneSize(platform::Pane pane) const override;
    void InvalidateAll() override;
    void SetHomeFocus(platform::Window* window) override { home = window; }
    void Show() override { shown = true; }
    void Close() override { closed = events.OnClose(); }

    /// Chooses an entry of the menu bar; one that is missing or disabled fails the test.
    void Choose(int command);
    ScriptedWindow& Edit() { return *panes.at(platform::Pane::Upper); }
    ScriptedWindow& List() { return *panes.at(platform::Pane::Left); }

    ScriptedPlatform& script;
    platform::FrameEvents& events;
    std::string caption, notice;
    platform::Menu bar;
    bool statusBar = false, shown = false, closed = false;
    int leftWidth = 0, lowerHeight = 0;
    platform::Window* home = nullptr;
    std::map<platform::Pane, std::unique_ptr<ScriptedWindow>> panes;
    std::unique_ptr<ScriptedForm> panel;
};

/// A menu in a line: "|" a separator, "!" before what is disabled, "+" before what is ticked, keys
/// behind "=", prompts in braces and sub-menus in brackets.
std::string Outline(const platform::Menu& menu);

class ScriptedPlatform final : public platform::Platform {
public:
    ScriptedPlatform() { vPlatform = this; }
    ~ScriptedPlatform() override;

    // --- the script ---
    void ExpectMessage(const std::string& text, bool answer = true) {
        steps.push_back({.kind = "message", .text = text, .ok = answer});
    }
    void ExpectOpenDialog(std::optional<std::string> answer) {
        steps.push_back({.kind = "open", .path = std::move(answer)});
    }
    void ExpectSaveDialog(std::optional<std::string> answer) {
        steps.push_back({.kind = "save", .path = std::move(answer)});
    }
    /// `choice` is what TrackPopupMenu gives; what was offered is in lastMenu.
    void ExpectMenu(int choice) { steps.push_back({.kind = "menu", .choice = choice}); }
    void ExpectDialog(const std::string& caption, std::function<void(ScriptedForm&)> person) {
        steps.push_back({.kind = "dialog", .text = caption, .person = std::move(person)});
    }

    /// From now on nothing is unexpected: what the script does not name is answered by OK, a
    /// menu or a choice of a file by Cancel, and written down here.
    bool answersAll = false;
    std::vector<std::string> asked;

    /// Carries out what was posted.
    void Pump() {
        for (; !posted.empty(); posted.pop_front())
            Do([&] { frame->events.OnCommand(posted.front()); });
    }

    // --- platform::Platform ---
    bool MessageBox(const std::string& text, const std::string& caption, platform::Buttons buttons,
                    platform::Icon icon) override;
    std::optional<std::string> OpenFileDialog(const platform::FileDialog& dialog) override {
        return AskForFile("open", dialog);
    }
    std::optional<std::string> SaveFileDialog(const platform::FileDialog& dialog) override {
        return AskForFile("save", dialog);
    }
    int RunDialog(const platform::Form& form, platform::FormEvents& events) override;
    int GetProfileInt(const std::string& section, const std::string& entry, int absent) override {
        return std::stoi(GetProfileString(section, entry, std::to_string(absent)));
    }
    std::string GetProfileString(const std::string& section, const std::string& entry,
                                 const std::string& absent) override;
    void WriteProfileInt(const std::string& section, const std::string& entry, int value) override {
        settings[section + "/" + entry] = std::to_string(value);
    }
    void WriteProfileString(const std::string& section, const std::string& entry,
                            const std::string& value) override {
        settings[section + "/" + entry] = value;
    }
    void SetPalette(const std::array<std::uint32_t, 256>& colors) override { palette = colors; }
    std::unique_ptr<platform::Frame> CreateFrame(platform::FrameEvents& events) override;
    void PostCommand(int command) override { posted.push_back(command); }
    int Run() override { return 0; }
    std::vector<std::string> FixedPitchFaces() override { return faces; }
    bool StartProgram(const std::string& program, const std::string& argument,
                      const std::string& folder) override {
        started.push_back({program, argument, folder});
        return true;
    }

    bool ShowDocument(const std::string&) override { return true; }
    int TrackMenu(const platform::Menu& menu, platform::Point screen);
    static bool CanChoose(const platform::Menu& menu, int command);

    ScriptedFrame* frame = nullptr;
    platform::Point lastMenuAt;
    platform::Menu lastMenu;
    platform::FileDialog lastFileDialog;
    std::array<std::uint32_t, 256> palette{};
    std::vector<std::string> faces{"Courier New", "Mono"};
    std::vector<std::array<std::string, 3>> started;  ///< program, argument, folder

private:
    struct Step {
        std::string kind;  ///< "message", "open", "save", "menu" or "dialog"
        std::string text{};
        bool ok = true;
        std::optional<std::string> path{};
        int choice = 0;
        std::function<void(ScriptedForm&)> person{};
    };
    std::optional<Step> Take(const std::string& kind, const std::string& what);
    std::optional<std::string> AskForFile(const char* kind, const platform::FileDialog& dialog);
    void PaintFrame();

    std::deque<Step> steps;
    std::deque<int> posted;
    std::map<std::string, std::string> settings;
};
