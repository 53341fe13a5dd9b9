// The second backend of the platform layer: no window system, but a script that answers.
//
// A test writes down beforehand what it expects the editor to ask and what a person would
// answer, in order. Something asked that the script does not name next fails the test and is
// answered with Cancel; what the script still names at the end fails it as well.
#pragma once

#include "platform/keys.h"
#include "platform/platform.h"
#include "tests/support/test_world.h"

#include <deque>
#include <map>

namespace platform {

/// One event of a person. After it, dialogs and all, no handle and no list may be open.
inline int vEventDepth = 0;
template <typename Act>
void Do(Act act) {
    ++vEventDepth;
    act();
    if (--vEventDepth || !vWorld) return;
    int open = 0;
    for (Handle h = kRootHandle + 1; h < kMaxHandles; ++h) open += vWorld->Node(h) != nullptr;
    EXPECT_EQ(open, 0) << "handles are open";
    EXPECT_EQ(vWorld->FindFreeHandleList(), 0) << "lists are open";
}

/// A menu in a line: "|" a separator, "!" before what is disabled, "+" before what is ticked, and
/// sub-menus in brackets.
inline std::string Outline(const Menu& menu) {
    std::string text;
    for (const MenuItem& item : menu) {
        if (!text.empty()) text += " ";
        if (item.kind == MenuItem::Kind::Separator) text += "|";
        text += (item.enabled ? "" : "!") + std::string(item.checked ? "+" : "") + item.text;
        if (item.kind == MenuItem::Kind::SubMenu) text += "(" + Outline(item.items) + ")";
    }
    return text;
}

/// Fails when the menu has no such entry, or none that can be chosen.
inline void ExpectEntry(const Menu& menu, int command) {
    const MenuItem* item = FindEntry(menu, command);
    ASSERT_TRUE(item && item->enabled) << "no menu entry " << command << " to choose";
}

class ScriptedForm;

/// What is to be asked, and what a person answers.
class Script {
public:
    ~Script() {
        for (const Step& step : steps)
            ADD_FAILURE() << "never came: " << step.kind << " \"" << step.text << "\"";
    }
    void ExpectMessage(const std::string& text, bool answer = true) {
        steps.push_back({.kind = "message", .text = text, .ok = answer});
    }
    /// `kind` is "open" or "save"; no answer cancels.
    void ExpectFile(const char* kind, std::optional<std::string> answer) {
        steps.push_back({.kind = kind, .path = std::move(answer)});
    }
    /// `choice` is what TrackPopupMenu gives; what was offered is in lastMenu.
    void ExpectMenu(int choice) { steps.push_back({.kind = "menu", .choice = choice}); }
    void ExpectDialog(const std::string& caption, std::function<void(ScriptedForm&)> person) {
        steps.push_back({.kind = "dialog", .text = caption, .person = std::move(person)});
    }
    int TrackMenu(const Menu& menu, Point corner) {
        lastMenu = menu;
        lastMenuAt = corner;
        const int choice = Take("menu", "").choice;
        if (choice) ExpectEntry(menu, choice);
        return choice;
    }

    /// From now on nothing is unexpected: what the script does not name is answered by OK, a
    /// menu or a choice of a file by Cancel, and written down here.
    bool answersAll = false;
    std::vector<std::string> asked;
    std::function<void()> paintFrame = [] {};
    Point lastMenuAt;
    Menu lastMenu;

protected:
    struct Step {
        std::string kind;  ///< "message", "open", "save", "menu" or "dialog"
        std::string text{};
        bool ok = true;
        std::optional<std::string> path{};
        int choice = 0;
        std::function<void(ScriptedForm&)> person{};
    };
    // Steps name a dialog by its caption, a message by a part of it.
    Step Take(const std::string& kind, const std::string& what) {
        // What was asked for before is painted meanwhile.
        paintFrame();
        if (!steps.empty() && steps.front().kind == kind &&
            what.find(steps.front().text) != what.npos) {
            Step step = std::move(steps.front());
            steps.pop_front();
            return step;
        }
        asked.push_back(kind + " " + what);
        EXPECT_TRUE(answersAll) << "unexpected " << asked.back();
        return {.kind = kind, .ok = answersAll};
    }

    std::deque<Step> steps;
};

class ScriptedWindow final : public Window {
public:
    ScriptedWindow(Script& owner, WindowEvents* listener, Size inside)
        : script(owner), events(listener), size(inside) {}

    Size ClientSize() const override { return size; }
    void Invalidate() override { ++invalidated; }
    void SetCapture() override { captured = true; }
    void ReleaseCapture() override { captured = false; }
    Point ClientToScreen(Point at) const override { return {at.x + 1000, at.y + 1000}; }
    void SetFocus() override {}
    void ShowPicture(const Rows8& picture, Size shownAs) override {
        w = picture.w;
        h = picture.h;
        shown = shownAs;
        pixels.clear();
        for (int y = 0; y < h; ++y)
            pixels.insert(pixels.end(), picture.rows[y], picture.rows[y] + w);
    }
    int TrackPopupMenu(const Menu& menu, Point screen) override {
        return script.TrackMenu(menu, screen);
    }
    void SetName(const std::string&) override {}
    void SetDescription(const std::string& text) override { description = text; }

    /// Repaints at once and keeps what is shown.
    void Paint() {
        invalidated = 0;
        Do([this] { events->OnDraw(*this); });
    }
    /// One event of a person, such as Send(&WindowEvents::OnKeyDown, kKeyTab).
    template <typename... Told, typename... Given>
    void Send(void (WindowEvents::*event)(Told...), Given... given) {
        Do([&] { (events->*event)(given...); });
    }
    void Key(int code) { Send(&WindowEvents::OnKeyDown, code); }
    /// The left button down at one place, up at another; then the mouse goes on.
    void Drag(Point from, Point to, bool ctrl = false) {
        Send(&WindowEvents::OnLButtonDown, ctrl, from);
        if (from != to) Send(&WindowEvents::OnMouseMove, ctrl, to);
        Send(&WindowEvents::OnLButtonUp, ctrl, to);
        Send(&WindowEvents::OnMouseMove, ctrl, Point{7, 7});
    }
    void Click(Point at) { Drag(at, at); }
    /// Fails where the picture has not these pixels.
    void ExpectPicture(const std::function<int(int, int)>& expected) const {
        for (int p = 0; p < w * h; ++p)
            ASSERT_EQ(PixelAt(p % w, p / w), expected(p % w, p / w)) << p % w << ", " << p / w;
    }
    int PixelAt(int x, int y) const { return pixels[static_cast<std::size_t>(y * w + x)]; }

    Script& script;
    WindowEvents* events;
    Size size;
    int invalidated = 0;
    bool captured = false;
    std::string description;
    // The last picture shown: its own size, and the size on the screen.
    std::vector<unsigned char> pixels;
    int w = 0, h = 0;
    Size shown;
};

/// Its text control has no text.
class ScriptedForm final : public FormWindow, CodeControl {
public:
    ScriptedForm(Script& owner, const Form& form, FormEvents& listener)
        : layout(form), events(listener), script(owner) {
        for (const Control& control : form.controls) {
            State& state = controls[control.id];
            state = {&control, control.text, false, control.enabled, control.low};
            if (control.kind == ControlKind::Picture)
                state.picture = std::make_unique<ScriptedWindow>(
                    owner, listener.PictureEvents(control.id), Size{control.w, control.h});
        }
        events.OnInit(*this);
        events.OnFormPaint(*this);
    }

    void SetText(int id, const std::string& text) override { At(id).text = text; }
    std::string GetText(int id) const override { return At(id).text; }
    void SetCheck(int id, bool on) override { At(id).checked = on; }
    bool IsChecked(int id) const override { return At(id).checked; }
    void SetValue(int id, int value) override { At(id).value = value; }
    int GetValue(int id) const override { return At(id).value; }
    void Enable(int id, bool on) override { At(id).enabled = on; }
    void SetFocus(int id) override { focus = id; }
    Window* Picture(int id) override {
        return controls.contains(id) ? At(id).picture.get() : nullptr;
    }
    CodeControl* Code(int) override { return this; }
    std::intptr_t Send(unsigned, std::uintptr_t, std::intptr_t) override { return 0; }
    int TrackMenuBelow(int, const Menu& menu) override { return script.TrackMenu(menu, {}); }
    Size ClientSize() const override { return {layout.w, layout.h}; }
    void Invalidate() override { events.OnFormPaint(*this); }
    void EndDialog(int value) override { result = value; }

    ScriptedWindow& Shown(int id) { return *At(id).picture; }
    /// What a control holds: a text in quotes, a tick as [x] or [ ], a slider as =3; "!" before
    /// it when it is disabled.
    std::string Held(int id) const {
        using enum ControlKind;
        const State& state = At(id);
        const ControlKind kind = state.control->kind;
        const std::string held = state.enabled ? "" : "!";
        if (kind == Edit || kind == NumberEdit || kind == ReadOnlyEdit)
            return held + "'" + state.text + "'";
        if (kind == CheckBox || kind == Radio) return held + (state.checked ? "[x]" : "[ ]");
        if (kind == Slider || kind == VSlider) return held + "=" + std::to_string(state.value);
        return held;
    }
    /// What all hold that hold something, in tab order, a blank behind each.
    std::string Look() const {
        std::string look;
        for (const Control& control : layout.controls)
            if (const std::string held = Held(control.id); !held.empty()) look += held + " ";
        return look;
    }

    // What a person does. On a control that is disabled it fails the test.
    void Click(int id) { Use(id, &FormEvents::OnControl); }
    void Type(int id, std::string text) {
        const Control& control = *At(id).control;
        if (control.kind == ControlKind::Edit && control.high)
            text.resize(std::min(text.size(), static_cast<std::size_t>(control.high)));
        SetText(id, text);
        Use(id, &FormEvents::OnChange);
    }
    void Slide(int id, int value) {
        SetValue(id, std::clamp(value, At(id).control->low, At(id).control->high));
        Use(id, &FormEvents::OnChange);
    }
    /// A key pressed; true when the form took it before its controls.
    bool Press(int code) {
        bool taken = false;
        Do([&] { taken = events.OnFormKey(*this, code); });
        return taken;
    }
    /// Chooses an entry of the form's menu bar.
    void Choose(int command) {
        ExpectEntry(events.FormMenu(), command);
        Do([&] { events.OnCommand(*this, command); });
    }

    const Form& layout;
    FormEvents& events;
    int focus = 0, result = 0;

private:
    struct State {
        const Control* control;
        std::string text;
        bool checked, enabled;
        int value;
        std::unique_ptr<ScriptedWindow> picture{};
    };
    State& At(int id) const { return controls.at(id); }
    void Use(int id, void (FormEvents::*event)(FormWindow&, int)) {
        State& state = At(id);
        ASSERT_TRUE(state.enabled) << "control " << id << " is disabled";
        if (state.control->kind == ControlKind::CheckBox) state.checked = !state.checked;
        if (state.control->kind == ControlKind::Radio)
            for (auto& [other, radio] : controls)
                if (radio.control->kind == ControlKind::Radio) radio.checked = other == id;
        Do([&] { (events.*event)(*this, id); });
    }

    Script& script;
    mutable std::map<int, State> controls;
};

class ScriptedFrame final : public Frame {
public:
    ScriptedFrame(Script& owner, FrameEvents& listener) : script(owner), events(listener) {
        script.paintFrame = [this] {
            for (auto& [pane, window] : panes) window->invalidated = 0;
        };
    }
    ~ScriptedFrame() override {
        script.paintFrame = [] {};
    }

    void SetCaption(const std::string& text) override { caption = text; }
    void SetMenuBar(const Menu& menu) override { bar = menu; }
    void CheckMenuItem(int command, bool checked) override {
        if (auto* item = FindEntry(bar, command)) item->checked = checked;
    }
    void SetIdleMessage(const std::string&) override {}
    void ShowNotice(const std::string& text) override { notice = text; }
    void ShowStatusBar(bool on) override { statusBar = on; }
    bool IsStatusBarShown() const override { return statusBar; }
    Size ClientSize() const override { return {1024, 768}; }
    Window* CreatePane(Pane pane, WindowEvents& listener) override {
        panes[pane] = std::make_unique<ScriptedWindow>(script, &listener, PaneSize(pane));
        return panes[pane].get();
    }
    FormWindow* CreateFormPane(Pane, const Form& form, FormEvents& listener) override {
        panel = std::make_unique<ScriptedForm>(script, form, listener);
        return panel.get();
    }
    void SetLeftWidth(int) override {}
    void SetLowerHeight(int) override {}
    Size PaneSize(Pane pane) const override {
        return pane == Pane::Left ? Size{200, 768} : Size{820, pane == Pane::Upper ? 629 : 135};
    }
    void InvalidateAll() override {
        events.OnFramePaint();
        for (auto& [pane, window] : panes) window->Invalidate();
        if (panel) panel->Invalidate();
    }
    void SetHomeFocus(Window*) override {}
    void Show() override {}
    void Close() override { closed = events.OnClose(); }

    /// Chooses an entry of the menu bar; one that is missing or disabled fails the test.
    void Choose(int command) {
        ExpectEntry(bar, command);
        Do([&] { events.OnCommand(command); });
    }
    ScriptedWindow& Edit() { return *panes.at(Pane::Upper); }
    ScriptedWindow& List() { return *panes.at(Pane::Left); }

    Script& script;
    FrameEvents& events;
    std::string caption, notice;
    Menu bar;
    bool statusBar = false, closed = false;
    std::map<Pane, std::unique_ptr<ScriptedWindow>> panes;
    std::unique_ptr<ScriptedForm> panel;
};

class ScriptedPlatform final : public Platform, public Script {
public:
    ScriptedPlatform() { vPlatform = this; }
    ~ScriptedPlatform() override { vPlatform = nullptr; }

    bool MessageBox(const std::string& text, const std::string&, Buttons buttons, Icon) override {
        return Take("message", text).ok || buttons == Buttons::Ok;
    }
    std::optional<std::string> OpenFileDialog(const FileDialog&) override {
        return Take("open", "").path;
    }
    std::optional<std::string> SaveFileDialog(const FileDialog&) override {
        return Take("save", "").path;
    }
    int RunDialog(const Form& form, FormEvents& events) override {
        const Step step = Take("dialog", form.caption);
        ScriptedForm window(*this, form, events);
        step.person ? step.person(window) : window.Click(step.ok ? kIdOk : kIdCancel);
        EXPECT_NE(window.result, 0) << form.caption << " was left open";
        return window.result;
    }
    std::string GetProfileString(const std::string& section, const std::string& entry,
                                 const std::string& absent) override {
        return settings.try_emplace(section + entry, absent).first->second;
    }
    void WriteProfileString(const std::string& section, const std::string& entry,
                            const std::string& value) override {
        settings[section + entry] = value;
    }
    void SetPalette(const std::array<std::uint32_t, 256>&) override {}
    std::unique_ptr<Frame> CreateFrame(FrameEvents& events) override {
        auto made = std::make_unique<ScriptedFrame>(*this, events);
        frame = made.get();
        return made;
    }
    void PostCommand(int command) override { posted.push_back(command); }
    /// Carries out what was posted.
    int Run() override {
        for (; !posted.empty(); posted.pop_front())
            Do([&] { frame->events.OnCommand(posted.front()); });
        return 0;
    }
    std::vector<std::string> FixedPitchFaces() override { return {"Mono", "R&D Mono", "Mono"}; }
    bool StartProgram(const std::string& program, const std::string& argument,
                      const std::string& folder) override {
        started.push_back({program, argument, folder});
        return true;
    }
    bool ShowDocument(const std::string& path) override { return path.ends_with(".html"); }

    ScriptedFrame* frame = nullptr;
    std::vector<std::array<std::string, 3>> started;  ///< program, argument, folder

private:
    std::deque<int> posted;
    std::map<std::string, std::string> settings;
};

}  // namespace platform
