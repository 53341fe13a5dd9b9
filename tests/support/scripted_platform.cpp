#include "tests/support/scripted_platform.h"

#include "engine/dinterface.h"

using platform::Control;
using platform::ControlKind;
using platform::Menu;
using platform::MenuItem;
using platform::Pane;
using platform::Size;

// --- windows -----------------------------------------------------------------------------------

void ScriptedWindow::ShowPicture(const platform::Rows8& picture, Size shownAs) {
    w = picture.w;
    h = picture.h;
    shown = shownAs;
    pixels.clear();
    for (int y = 0; y < h; ++y) pixels.insert(pixels.end(), picture.rows[y], picture.rows[y] + w);
}

int ScriptedWindow::TrackPopupMenu(const Menu& menu, platform::Point corner) {
    return script.TrackMenu(menu, corner);
}

void ScriptedWindow::Paint() {
    invalidated = 0;
    if (events) Do([this] { events->OnDraw(*this); });
}

void ScriptedWindow::ExpectPicture(const std::function<int(int, int)>& expected) const {
    for (int p = 0; p < w * h; ++p)
        ASSERT_EQ(PixelAt(p % w, p / w), expected(p % w, p / w)) << p % w << ", " << p / w;
}

void ScriptedWindow::ExpectPicture(BITMAP* expected) const {
    ExpectPicture([expected](int x, int y) { return getpixel(expected, x, y); });
}

void ScriptedWindow::Drag(platform::Point from, platform::Point to, bool ctrl) {
    using platform::WindowEvents;
    Send(&WindowEvents::OnLButtonDown, ctrl, from);
    if (!(from == to)) Send(&WindowEvents::OnMouseMove, ctrl, to);
    Send(&WindowEvents::OnLButtonUp, ctrl, to);
}

// --- forms -------------------------------------------------------------------------------------

ScriptedForm::ScriptedForm(ScriptedPlatform& owner, const platform::Form& form,
                           platform::FormEvents& listener)
    : layout(form), events(listener), script(owner), bar(listener.FormMenu()) {
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

std::string ScriptedForm::Held(int id) const {
    using enum ControlKind;
    const State& state = controls.at(id);
    const ControlKind kind = state.control->kind;
    std::string held = state.enabled ? "" : "!";
    if (kind == Edit || kind == NumberEdit || kind == ReadOnlyEdit) held += "'" + state.text + "'";
    if (kind == CheckBox || kind == Radio) held += state.checked ? "[x]" : "[ ]";
    if (kind == Slider || kind == VSlider) held += "=" + std::to_string(state.value);
    return held;
}

std::string ScriptedForm::Look() const {
    std::string look;
    for (const Control& control : layout.controls)
        if (const std::string held = Held(control.id); !held.empty())
            look += (look.empty() ? "" : " ") + held;
    return look;
}

int ScriptedForm::TrackMenuBelow(int, const Menu& menu) { return script.TrackMenu(menu, {}); }

void ScriptedForm::Choose(int command) {
    if (ScriptedPlatform::CanChoose(bar, command)) Do([&] { events.OnCommand(*this, command); });
}

void ScriptedForm::Use(int id, void (platform::FormEvents::*event)(platform::FormWindow&, int)) {
    State& state = controls[id];
    if (!state.control || !state.enabled) {
        ADD_FAILURE() << "control " << id << " is disabled or does not exist";
        return;
    }
    if (state.control->kind == ControlKind::CheckBox) state.checked = !state.checked;
    if (state.control->kind == ControlKind::Radio)
        for (const Control& other : layout.controls)
            if (other.kind == ControlKind::Radio) controls[other.id].checked = other.id == id;
    Do([&] { (events.*event)(*this, id); });
}

void ScriptedForm::Type(int id, const std::string& text) {
    const Control* control = controls[id].control;
    const bool limited = control && control->kind == ControlKind::Edit && control->high > 0;
    controls[id].text = limited ? text.substr(0, static_cast<std::size_t>(control->high)) : text;
    Use(id, &platform::FormEvents::OnChange);
}

void ScriptedForm::Slide(int id, int value) {
    const Control* control = controls[id].control;
    controls[id].value = control ? std::clamp(value, control->low, control->high) : value;
    Use(id, &platform::FormEvents::OnChange);
}

// --- the frame ---------------------------------------------------------------------------------

platform::Window* ScriptedFrame::CreatePane(Pane pane, platform::WindowEvents& listener) {
    auto& window = panes[pane];
    window = std::make_unique<ScriptedWindow>(script, &listener, PaneSize(pane));
    return window.get();
}

platform::FormWindow* ScriptedFrame::CreateFormPane(Pane, const platform::Form& form,
                                                    platform::FormEvents& listener) {
    panel = std::make_unique<ScriptedForm>(script, form, listener);
    return panel.get();
}

Size ScriptedFrame::PaneSize(Pane pane) const {
    if (pane == Pane::Left) return {200, 768};
    return {820, pane == Pane::Upper ? 629 : 135};
}

void ScriptedFrame::InvalidateAll() {
    events.OnFramePaint();
    for (auto& [pane, window] : panes) window->Invalidate();
    if (panel) panel->Invalidate();
}

void ScriptedFrame::Choose(int command) {
    if (ScriptedPlatform::CanChoose(bar, command)) Do([&] { events.OnCommand(command); });
}

// --- the platform ------------------------------------------------------------------------------

std::string Outline(const Menu& menu) {
    std::string text;
    for (const MenuItem& item : menu) {
        if (!text.empty()) text += " ";
        if (item.kind == MenuItem::Kind::Separator) text += "|";
        text += (item.enabled ? "" : "!") + std::string(item.checked ? "+" : "") + item.text;
        if (!item.key.empty()) text += "=" + item.key;
        if (!item.prompt.empty()) text += "{" + item.prompt + "}";
        if (item.kind == MenuItem::Kind::SubMenu) text += "(" + Outline(item.items) + ")";
    }
    return text;
}

ScriptedPlatform::~ScriptedPlatform() {
    for (const Step& step : steps)
        ADD_FAILURE() << "never came: " << step.kind << " \"" << step.text << "\"";
    vPlatform = nullptr;
}

// Steps name a dialog by its caption, a message by a part of it.
std::optional<ScriptedPlatform::Step> ScriptedPlatform::Take(const std::string& kind,
                                                             const std::string& what) {
    const auto fits = [&](const Step& step) {
        if (step.kind != kind) return false;
        return kind == "dialog" ? what == step.text : what.find(step.text) != std::string::npos;
    };
    if (!steps.empty() && fits(steps.front())) {
        Step step = std::move(steps.front());
        steps.pop_front();
        return step;
    }
    if (answersAll) {
        asked.push_back(kind + " " + what);
        return Step{.kind = kind,
                    .person = [](ScriptedForm& form) { form.Click(platform::kIdOk); }};
    }
    ADD_FAILURE() << "unexpected " << kind << " \"" << what << "\"";
    return std::nullopt;
}

// What is open is a place that a probe does not get. The first slot is the root's for good.
void ExpectNothingOpen() {
    if (!vWorld) return;
    constexpr int kProbes = 64;
    static std::deque<Dobject> probes;
    for (int i = static_cast<int>(probes.size()); i < kProbes; ++i) probes.emplace_back(-1000 - i);
    int last = 0;
    for (Dobject& probe : probes) last = vWorld->AddHandle(&probe);
    EXPECT_EQ(last, kProbes) << "handles are open";
    for (Handle h = 1; h <= last; ++h)
        if (vWorld->GetId(h) <= -1000) vWorld->ReleaseHandle(h);
    EXPECT_EQ(vWorld->FindFreeHandleList(), 0) << "lists are open";
}

bool ScriptedPlatform::MessageBox(const std::string& text, const std::string&,
                                  platform::Buttons buttons, platform::Icon) {
    const auto step = Take("message", text);
    return step && (buttons == platform::Buttons::Ok || step->ok);
}

std::optional<std::string> ScriptedPlatform::AskForFile(const char* kind,
                                                        const platform::FileDialog& dialog) {
    lastFileDialog = dialog;
    const auto step = Take(kind, "");
    return step ? step->path : std::nullopt;
}

// What was asked for before a dialog or a menu opens is painted while it is up.
void ScriptedPlatform::PaintFrame() {
    if (!frame) return;
    for (auto& [pane, window] : frame->panes) window->invalidated = 0;
}

int ScriptedPlatform::RunDialog(const platform::Form& form, platform::FormEvents& events) {
    PaintFrame();
    ScriptedForm window(*this, form, events);
    const auto step = Take("dialog", form.caption);
    if (!step) return platform::kIdCancel;
    step->person(window);
    EXPECT_NE(window.result, 0) << form.caption << " was left open";
    return window.result;
}

// A failure when the menu has no such entry, or none that can be chosen.
bool ScriptedPlatform::CanChoose(const Menu& menu, int command) {
    const MenuItem* item = platform::FindEntry(menu, command);
    EXPECT_TRUE(item && item->enabled) << "no menu entry " << command << " to choose";
    return item && item->enabled;
}

int ScriptedPlatform::TrackMenu(const Menu& menu, platform::Point corner) {
    PaintFrame();
    lastMenu = menu;
    lastMenuAt = corner;
    const auto step = Take("menu", menu.empty() ? "" : menu.front().text);
    if (step && step->choice) CanChoose(menu, step->choice);
    return step ? step->choice : 0;
}

std::string ScriptedPlatform::GetProfileString(const std::string& section, const std::string& entry,
                                               const std::string& absent) {
    const auto found = settings.find(section + "/" + entry);
    return found == settings.end() ? absent : found->second;
}

std::unique_ptr<platform::Frame> ScriptedPlatform::CreateFrame(platform::FrameEvents& events) {
    auto made = std::make_unique<ScriptedFrame>(*this, events);
    frame = made.get();
    return made;
}
