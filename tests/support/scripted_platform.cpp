#include "tests/support/scripted_platform.h"

#include "engine/dinterface.h"

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

int ScriptedWindow::TrackPopupMenu(const platform::Menu& menu, platform::Point corner) {
    return script.TrackMenu(menu, corner);
}

void ScriptedWindow::Paint() {
    invalidated = 0;
    if (events) script.Do([this] { events->OnDraw(*this); });
}

void ScriptedWindow::ExpectPicture(BITMAP* expected) const {
    for (int p = 0; p < w * h; ++p)
        ASSERT_EQ(PixelAt(p % w, p / w), getpixel(expected, p % w, p / w))
            << p % w << ", " << p / w;
}

void ScriptedWindow::Drag(platform::Point from, platform::Point to, bool ctrl) {
    using platform::WindowEvents;
    Send(&WindowEvents::OnLButtonDown, ctrl, from);
    if (!(from == to)) Send(&WindowEvents::OnMouseMove, ctrl, to);
    Send(&WindowEvents::OnLButtonUp, ctrl, to);
}

// --- forms -------------------------------------------------------------------------------------

namespace {

using platform::Control;
using platform::ControlKind;

// What a form's table must be, whatever form it is: each control lies inside and over no other,
// has a name, and says what it is for if anything can be done with it.
void CheckLayout(const platform::Form& form) {
    const auto meet = [](int a, int aw, int b, int bw) { return a < b + bw && b < a + aw; };
    for (const Control& c : form.controls) {
        SCOPED_TRACE(std::string(form.caption) + ": " + c.text);
        EXPECT_STRNE(c.text, "");
        EXPECT_TRUE(c.x > 0 && c.y > 0 && c.x + c.w < form.w && c.y + c.h < form.h);
        if (c.kind == ControlKind::Group) continue;
        const bool still = c.kind == ControlKind::Label || c.kind == ControlKind::Code;
        EXPECT_EQ(std::string(c.tip).empty(), still);
        for (const Control& o : form.controls)
            EXPECT_TRUE(&o == &c ||
                        (o.id != c.id && (o.kind == ControlKind::Group ||
                                          !meet(o.x, o.w, c.x, c.w) || !meet(o.y, o.h, c.y, c.h))))
                << o.text;
    }
}

}  // namespace

ScriptedForm::ScriptedForm(ScriptedPlatform& owner, const platform::Form& form,
                           platform::FormEvents& listener)
    : layout(form), events(listener), script(owner), bar(listener.FormMenu()) {
    CheckLayout(form);
    for (const Control& control : form.controls) {
        controls[control.id] = {&control, control.text, false, control.enabled, control.low};
        if (control.kind == ControlKind::Picture)
            pictures[control.id] = std::make_unique<ScriptedWindow>(
                owner, listener.PictureEvents(control.id), Size{control.w, control.h});
        if (control.kind == ControlKind::Code) codes[control.id];
    }
    events.OnInit(*this);
    events.OnFormPaint(*this);
}

const ScriptedForm::State& ScriptedForm::Get(int id) const {
    static const State none;
    auto found = controls.find(id);
    return found == controls.end() ? none : found->second;
}

ScriptedForm::State* ScriptedForm::Usable(int id) {
    State& state = controls[id];
    if (state.control && state.enabled) return &state;
    ADD_FAILURE() << "control " << id << (state.control ? " is disabled" : " does not exist");
    return nullptr;
}

std::string ScriptedForm::Look() const {
    std::string look;
    for (const Control& control : layout.controls) {
        const State& state = controls.at(control.id);
        std::string held;
        switch (control.kind) {
            case ControlKind::Edit:
            case ControlKind::NumberEdit:
            case ControlKind::ReadOnlyEdit:
                held = "'" + state.text + "'";
                break;
            case ControlKind::CheckBox:
            case ControlKind::Radio:
                held = state.checked ? "[x]" : "[ ]";
                break;
            case ControlKind::Slider:
            case ControlKind::VSlider:
                held = "=" + std::to_string(state.value);
                break;
            default:
                break;
        }
        if (!state.enabled) held = "!" + held;
        if (!held.empty()) look += (look.empty() ? "" : " ") + held;
    }
    return look;
}

bool ScriptedForm::Press(int code) {
    bool taken = false;
    script.Do([&] { taken = events.OnFormKey(*this, code); });
    return taken;
}

platform::Window* ScriptedForm::Picture(int id) {
    auto found = pictures.find(id);
    return found == pictures.end() ? nullptr : found->second.get();
}

platform::CodeControl* ScriptedForm::Code(int id) {
    auto found = codes.find(id);
    return found == codes.end() ? nullptr : &found->second;
}

int ScriptedForm::TrackMenuBelow(int id, const platform::Menu& menu) {
    EXPECT_NE(Get(id).control, nullptr) << "no control " << id << " to open a menu below";
    return script.TrackMenu(menu, {});
}

namespace {

// A failure when the menu has no such entry, or none that can be chosen.
bool CanChoose(const platform::Menu& menu, int command) {
    const platform::MenuItem* item = platform::FindEntry(menu, command);
    EXPECT_TRUE(item && item->enabled)
        << "menu entry " << command << (item ? " is disabled" : " does not exist");
    return item && item->enabled;
}

}  // namespace

void ScriptedForm::Choose(int command) {
    if (CanChoose(bar, command)) script.Do([&] { events.OnCommand(*this, command); });
}

void ScriptedForm::Click(int id) {
    State* state = Usable(id);
    if (!state) return;
    if (state->control->kind == ControlKind::CheckBox) state->checked = !state->checked;
    if (state->control->kind == ControlKind::Radio) {
        for (auto& [other, own] : controls)
            if (own.control->kind == ControlKind::Radio) own.checked = other == id;
    }
    script.Do([&] { events.OnControl(*this, id); });
}

void ScriptedForm::Type(int id, const std::string& text) {
    if (State* state = Usable(id)) {
        const bool limited = state->control->kind == ControlKind::Edit;
        const auto most = static_cast<std::size_t>(limited ? state->control->high : 0);
        state->text = most > 0 ? text.substr(0, most) : text;
        script.Do([&] { events.OnChange(*this, id); });
    }
}

void ScriptedForm::Slide(int id, int value) {
    if (State* state = Usable(id)) {
        state->value = value;
        script.Do([&] { events.OnChange(*this, id); });
    }
}

// --- the frame ---------------------------------------------------------------------------------

void ScriptedFrame::CheckMenuItem(int command, bool checked) {
    if (platform::MenuItem* item = platform::FindEntry(bar, command)) item->checked = checked;
}

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
    switch (pane) {
        case Pane::Left:
            return {200, 768};
        case Pane::Upper:
            return {820, 629};
        default:
            return {820, 135};
    }
}

void ScriptedFrame::InvalidateAll() {
    events.OnFramePaint();
    for (auto& [pane, window] : panes) window->Invalidate();
    if (panel) panel->Invalidate();
}

void ScriptedFrame::Choose(int command) {
    if (CanChoose(bar, command)) script.Do([&] { events.OnCommand(command); });
}

// --- the platform ------------------------------------------------------------------------------

ScriptedPlatform::~ScriptedPlatform() {
    for (const Step& step : steps)
        ADD_FAILURE() << "never came: " << step.kind << " \"" << step.text << "\"";
    vPlatform = nullptr;
}

void ScriptedPlatform::ExpectMessage(const std::string& text, bool answer) {
    steps.push_back({.kind = "message", .text = text, .ok = answer});
}

void ScriptedPlatform::ExpectOpenDialog(std::optional<std::string> answer) {
    steps.push_back({.kind = "open", .path = std::move(answer)});
}

void ScriptedPlatform::ExpectSaveDialog(std::optional<std::string> answer) {
    steps.push_back({.kind = "save", .path = std::move(answer)});
}

void ScriptedPlatform::ExpectMenu(std::vector<std::string> texts, int choice) {
    steps.push_back({.kind = "menu", .texts = std::move(texts), .choice = choice});
}

void ScriptedPlatform::ExpectDialog(const std::string& caption,
                                    std::function<void(ScriptedForm&)> person) {
    steps.push_back({.kind = "dialog", .text = caption, .person = std::move(person)});
}

std::optional<ScriptedPlatform::Step> ScriptedPlatform::Take(const std::string& kind,
                                                             const std::string& what) {
    if (answersAll && (steps.empty() || steps.front().kind != kind)) {
        asked.push_back(kind + " " + what);
        return Step{.kind = kind, .text = what, .person = [](ScriptedForm& form) {
                        form.Click(platform::kIdOk);
                    }};
    }
    if (steps.empty() || steps.front().kind != kind) {
        ADD_FAILURE() << "unexpected " << kind << " \"" << what << "\"";
        return std::nullopt;
    }
    Step step = std::move(steps.front());
    steps.pop_front();
    return step;
}

void ScriptedPlatform::Pump() {
    while (!posted.empty()) {
        const int command = posted.front();
        posted.pop_front();
        Do([&] { frame->events.OnCommand(command); });
    }
}

// What is open is a place that a probe does not get. The first slot is the root's for good.
void ScriptedPlatform::ExpectNothingOpen() {
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

bool ScriptedPlatform::MessageBox(const std::string& text, const std::string& caption,
                                  platform::Buttons buttons, platform::Icon) {
    lastCaption = caption;
    const auto step = Take("message", text);
    if (!step) return false;
    EXPECT_NE(text.find(step->text), std::string::npos) << text << " lacks " << step->text;
    return buttons == platform::Buttons::Ok || step->ok;
}

std::optional<std::string> ScriptedPlatform::OpenFileDialog(const platform::FileDialog& dialog) {
    lastFileDialog = dialog;
    const auto step = Take("open", dialog.path);
    return step ? step->path : std::nullopt;
}

std::optional<std::string> ScriptedPlatform::SaveFileDialog(const platform::FileDialog& dialog) {
    lastFileDialog = dialog;
    const auto step = Take("save", dialog.path);
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
    EXPECT_EQ(step->text, form.caption);
    step->person(window);
    EXPECT_NE(window.result, 0) << form.caption << " was left open";
    return window.result;
}

int ScriptedPlatform::TrackMenu(const platform::Menu& menu, platform::Point corner) {
    PaintFrame();
    lastMenu = menu;
    lastMenuAt = corner;
    const auto step = Take("menu", menu.empty() ? "" : menu.front().text);
    if (!step) return 0;
    if (!step->texts.empty()) {
        std::vector<std::string> texts;
        for (const auto& item : menu)
            texts.push_back(item.kind == platform::MenuItem::Kind::Separator ? "-" : item.text);
        EXPECT_EQ(texts, step->texts);
    }
    if (step->choice) CanChoose(menu, step->choice);
    return step->choice;
}

int ScriptedPlatform::GetProfileInt(const std::string& section, const std::string& entry,
                                    int absent) {
    auto found = settings.find({section, entry});
    return found == settings.end() ? absent : std::stoi(found->second);
}

std::string ScriptedPlatform::GetProfileString(const std::string& section, const std::string& entry,
                                               const std::string& absent) {
    auto found = settings.find({section, entry});
    return found == settings.end() ? absent : found->second;
}

void ScriptedPlatform::WriteProfileInt(const std::string& section, const std::string& entry,
                                       int value) {
    settings[{section, entry}] = std::to_string(value);
}

void ScriptedPlatform::WriteProfileString(const std::string& section, const std::string& entry,
                                          const std::string& value) {
    settings[{section, entry}] = value;
}

std::unique_ptr<platform::Frame> ScriptedPlatform::CreateFrame(platform::FrameEvents& events) {
    auto made = std::make_unique<ScriptedFrame>(*this, events);
    frame = made.get();
    return made;
}
