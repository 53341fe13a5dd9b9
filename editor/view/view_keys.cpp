// The edit view's keyboard: painting, the brush keys, typing, and the properties panel's keys.

#include "editor/view/brush.h"
#include "editor/view/object_clip.h"
#include "editor/view/quilt_view.h"
#include "engine/copy_object.h"
#include "engine/dinterface.h"
#include "platform/keys.h"

#include <algorithm>

namespace {

// The brush modes in which a key acts.
constexpr unsigned In(int mode) { return 1u << mode; }
constexpr unsigned kNormal = In(kBrushNormal);
constexpr unsigned kBlender = In(kBrushBlender);
constexpr unsigned kTabs = In(kBrushTab) | In(kBrushBlenderTab);
constexpr unsigned kBrushes = kNormal | In(kBrushTab);
constexpr unsigned kBySteps = kNormal | kBlender;
constexpr unsigned kAllButText = kBySteps | kTabs;
constexpr unsigned kAlways = ~0u;

constexpr int kCtrl = platform::kWithCtrl;
constexpr int kCtrlShift = kCtrl | platform::kWithShift;

constexpr int kLastColor = 255;
constexpr int kBlank = 32;
constexpr int kTabBlanks = 3;

// The current object and the cursor's cell in its grid.
struct CursorCell {
    HandleGuard h;
    int x;
    int y;

    explicit CursorCell(platform::Point cursor)
        : h(vWorld->GetCurrentObject()), x(cursor.x), y(cursor.y) {
        vWorld->WorldToLocal(h, x, y);
    }

    int Get(Brush& tile) const {
        return vWorld->GetTile(h, x, y, tile.chr, tile.fg, tile.bg, tile.attrib);
    }
    void SetGlyph(int chr) const {
        vWorld->SetTile(h, x, y, chr, vBrush.fg, vBrush.bg, vBrush.attrib);
    }
};

}  // namespace

struct CQuiltView::KeyBinding {
    int key;
    unsigned modes;
    KeyAction action;
};

// Of both panels.
const CQuiltView::KeyBinding CQuiltView::kViewKeys[] = {
    {kCtrlShift | platform::kKeyUp, kAlways, &CQuiltView::ScrollTiles<0, -1>},
    {kCtrlShift | platform::kKeyDown, kAlways, &CQuiltView::ScrollTiles<0, 1>},
    {kCtrlShift | platform::kKeyLeft, kAlways, &CQuiltView::ScrollTiles<-1, 0>},
    {kCtrlShift | platform::kKeyRight, kAlways, &CQuiltView::ScrollTiles<1, 0>},
    {platform::kKeyF4, kAlways, &CQuiltView::CenterCursor},
};

const CQuiltView::KeyBinding CQuiltView::kPaintKeys[] = {
    {kCtrl | platform::kKeyUp, kAllButText, &CQuiltView::StretchBox<0, -1>},
    {kCtrl | platform::kKeyDown, kAllButText, &CQuiltView::StretchBox<0, 1>},
    {kCtrl | platform::kKeyLeft, kAllButText, &CQuiltView::StretchBox<-1, 0>},
    {kCtrl | platform::kKeyRight, kAllButText, &CQuiltView::StretchBox<1, 0>},
    {kCtrl | platform::kKeyApps, kAllButText, &CQuiltView::ShapesByKey},
    {platform::kKeyEscape, kAllButText, &CQuiltView::EndBox},
    {platform::kKeyUp, kAllButText, &CQuiltView::KeyUpArrow},
    {platform::kKeyDown, kAllButText, &CQuiltView::KeyDownArrow},
    {platform::kKeyLeft, kAllButText, &CQuiltView::KeyLeftArrow},
    {platform::kKeyRight, kAllButText, &CQuiltView::KeyRightArrow},
    {platform::kKeySpace, kBySteps, &CQuiltView::PaintStepOncePerVisit},
    {platform::kKeyShift, kBySteps, &CQuiltView::PenDown},
    {platform::kKeyEnter, kBySteps, &CQuiltView::Eyedropper},
    {platform::kKeyTab, kBySteps, &CQuiltView::EnterTabMode},
    {platform::kKeyTab, kTabs, &CQuiltView::LeaveTabMode},
    {platform::kKeyApps, kAllButText, &CQuiltView::ToolMenuByKey},
    {platform::kKeyHome, kAllButText, &CQuiltView::FgDown},
    {platform::kKeyEnd, kAllButText, &CQuiltView::FgUp},
    {platform::kKeyPageUp, kAllButText, &CQuiltView::BgDown},
    {platform::kKeyPageDown, kAllButText, &CQuiltView::BgUp},
    {platform::kKeyInsert, kBrushes, &CQuiltView::ChrDown},
    {platform::kKeyDelete, kBrushes, &CQuiltView::ChrUp},
    {platform::kKeyF1, kAllButText, &CQuiltView::KeyScrollBack},
    {platform::kKeyF2, kAllButText, &CQuiltView::KeyScrollForward},
};

const CQuiltView::KeyBinding CQuiltView::kPropertiesKeys[] = {
    {platform::kKeyUp, kAlways, &CQuiltView::KeyUpArrow},
    {platform::kKeyDown, kAlways, &CQuiltView::KeyDownArrow},
    {platform::kKeyLeft, kAlways, &CQuiltView::KeyLeftArrow},
    {platform::kKeyRight, kAlways, &CQuiltView::KeyRightArrow},
    {platform::kKeySpace, kAlways, &CQuiltView::PlaceObjectClip},
    {platform::kKeyTab, kAlways, &CQuiltView::RecolorGrid},
    {platform::kKeyEnter, kAlways, &CQuiltView::PickAtCursor},
};

std::set<int> CQuiltView::KeysOf(PanelMode panel) {
    using Bindings = std::span<const KeyBinding>;
    const auto own = panel == kPanelPaint ? Bindings(kPaintKeys) : Bindings(kPropertiesKeys);
    std::set<int> keys;
    for (const Bindings bindings : {Bindings(kViewKeys), own})
        for (const KeyBinding& binding : bindings) keys.insert(binding.key);
    return keys;
}

bool CQuiltView::RunKey(std::span<const KeyBinding> bindings, int code, unsigned mode) {
    for (const KeyBinding& binding : bindings) {
        if (binding.key != code || !(binding.modes & mode)) continue;
        (this->*binding.action)();
        Invalidate();
        return true;
    }
    return false;
}

void CQuiltView::OnKeyDown(int code) {
    const bool paint = vPanelMode == kPanelPaint;
    // Shift is then on its way to be a part of another key.
    const bool half = code == (kCtrl | platform::kKeyShift) ||
                      (vDrag.state == kKeyBox && code == platform::kKeyShift);
    if (half || RunKey(kViewKeys, code, kAlways)) return;
    using Bindings = std::span<const KeyBinding>;
    const auto own = paint ? Bindings(kPaintKeys) : Bindings(kPropertiesKeys);
    const unsigned mode = paint ? In(vBrushMode) : kAlways;
    const bool blender = paint && vBrushMode == kBrushBlender;
    const int plain = platform::PlainKey(code);
    // A key that is not another one with Ctrl is itself with Ctrl, too.
    if (!RunKey(own, code, mode) && code != plain) RunKey(own, plain, mode);
    if (blender) RememberVisit(plain);
}

// The Blender steps once for a visit to a tile, so that a held key does not run through all its
// shades. Whatever else is pressed, a move included, ends the visit.
void CQuiltView::RememberVisit(int code) {
    const bool steps = code == platform::kKeySpace || code == platform::kKeyShift;
    vLast = steps ? std::optional(vCursor) : std::nullopt;
}

void CQuiltView::OnKeyUp(int code) {
    if (vPanelMode == kPanelPaint && code == platform::kKeyShift) vPenDown = 0;
}

// --- painting ----------------------------------------------------------------------------------

void CQuiltView::Stamp() { CursorCell(vCursor).SetGlyph(vBrush.chr); }

void CQuiltView::BlendStep() {
    const CursorCell cell(vCursor);
    Brush tile;
    if (cell.Get(tile)) cell.SetGlyph(NextBlendChar(tile.chr));
}

void CQuiltView::PaintStep() {
    if (vBrushMode == kBrushBlender || vBrushMode == kBrushBlenderTab)
        BlendStep();
    else
        Stamp();
}

void CQuiltView::PaintStepOncePerVisit() {
    const bool stepped = vBrushMode == kBrushBlender && vLast == vCursor;
    if (!stepped) PaintStep();
}

void CQuiltView::PenDown() {
    PaintStepOncePerVisit();
    vPenDown = 1;
}

void CQuiltView::MoveCursor(int dx, int dy) {
    EndBox();
    vCursor = vCursor + platform::Point{dx, dy};
    if (vPanelMode != kPanelPaint) return;
    if (vPenDown || (In(vBrushMode) & kTabs)) PaintStep();
}

void CQuiltView::Eyedropper() {
    if (CursorCell(vCursor).Get(vBrush)) host.Changed(Change::Brush);
}

void CQuiltView::SetBrushMode(BrushMode mode) {
    vBrushMode = mode;
    host.Changed(Change::BrushMode);
}

void CQuiltView::EnterTabMode() {
    vPenDown = 0;
    PaintStep();
    SetBrushMode(vBrushMode == kBrushNormal ? kBrushTab : kBrushBlenderTab);
}

void CQuiltView::LeaveTabMode() {
    SetBrushMode(vBrushMode == kBrushTab ? kBrushNormal : kBrushBlender);
}

// --- boxes and the view ------------------------------------------------------------------------

template <int dx, int dy>
void CQuiltView::StretchBox() {
    if (vDrag.state != kKeyBox) vDrag = {.state = kKeyBox, .anchor = vCursor};
    vDrag.anchor = vDrag.anchor + platform::Point{dx, dy};
}

void CQuiltView::ToolMenuByKey() {
    const bool box = vDrag.state == kKeyBox;
    if (!box && !(In(vBrushMode) & kBySteps)) return;
    if (!box) vDrag.anchor = vCursor;
    RunToolMenu(CornerOf(vDrag.anchor));
}

void CQuiltView::ShapesByKey() {
    if (vDrag.state != kKeyBox) return ToolMenuByKey();
    // The two points show while the menu is up.
    vDrag.state = kDragPoints;
    Invalidate();
    RunMenu(vPrimMenu, CornerOf(vDrag.anchor));
}

template <int dx, int dy>
void CQuiltView::ScrollTiles() {
    vScroll = vScroll - platform::Point{dx, dy};
}

void CQuiltView::CenterCursor() {
    const platform::Size client = window->ClientSize();
    vScroll = platform::Point{static_cast<int>(client.w / Scale() / 2),
                              static_cast<int>(client.h / Scale() / 2)} -
              vCursor;
}

// --- the brush ---------------------------------------------------------------------------------

void CQuiltView::StepBrush(std::int32_t& field, int step, int last) {
    if (step < 0 ? field > 0 : field < last) field += step;
    host.Changed(Change::Brush);
}

// A sprite brush has no foreground to step.
void CQuiltView::FgDown() {
    if (vBrush.fg != kSpriteMark) StepBrush(vBrush.fg, -1, 0);
}
void CQuiltView::FgUp() {
    if (vBrush.fg != kSpriteMark) StepBrush(vBrush.fg, 1, kLastColor);
}
void CQuiltView::BgDown() { StepBrush(vBrush.bg, -1, 0); }
void CQuiltView::BgUp() { StepBrush(vBrush.bg, 1, kLastColor); }
void CQuiltView::ChrDown() { StepBrush(vBrush.chr, -1, 0); }
void CQuiltView::ChrUp() { StepBrush(vBrush.chr, 1, vWorld->GetFont()->GlyphCount() - 1); }
void CQuiltView::KeyScrollBack() { ScrollBack(); }
void CQuiltView::KeyScrollForward() { ScrollForward(); }

// --- the properties panel's keys ---------------------------------------------------------------

void CQuiltView::PlaceObjectClip() {
    const Dobject* clip = FreshObjectClip();
    if (!clip) return;
    const CursorCell cell(vCursor);
    Dobject* under = vWorld->Node(cell.h);
    Dobject* copy = under ? CopyObject(*under, *clip) : nullptr;
    if (!copy) return;
    copy->posx = cell.x;
    copy->posy = cell.y;
    host.Changed(Change::List);
}

void CQuiltView::RecolorGrid() {
    const HandleGuard h(vWorld->GetCurrentObject());
    const Dobject* node = vWorld->Node(h);
    if (!node || node->tiles.empty()) return;
    const Dtile first = node->tiles.front();
    if (std::any_of(node->tiles.begin(), node->tiles.end(),
                    [&](const Dtile& tile) { return tile != first; }))
        return;
    SaveBrush();
    vBrush = {Signed(first.chr), Signed(first.fg), Signed(first.bg), Signed(first.attrib)};
    if (host.EditBrush()) {
        for (int y = 0; y < node->height; ++y)
            for (int x = 0; x < node->width; ++x)
                vWorld->SetTile(h, x, y, vBrush.chr, vBrush.fg, vBrush.bg, vBrush.attrib);
    }
    RestoreBrush();
}

void CQuiltView::PickAtCursor() { Pick(CornerOf(vCursor)); }

// --- typing ------------------------------------------------------------------------------------

void CQuiltView::TypeTile(int ch) {
    const CursorCell cell(vCursor);
    cell.SetGlyph(ch);
    ++vCursor.x;
    if (cell.x + 1 < vWorld->GetProperty(cell.h, kWidth)) return;
    vCursor.x -= cell.x + 1;
    ++vCursor.y;
    if (cell.y + 1 >= vWorld->GetProperty(cell.h, kHeight)) vCursor.y -= cell.y + 1;
}

void CQuiltView::TypeEnter() {
    vCursor.x = vTextMargin;
    ++vCursor.y;
    const CursorCell cell(vCursor);
    if (cell.y >= vWorld->GetProperty(cell.h, kHeight)) vCursor.y -= cell.y;
}

void CQuiltView::TypeBackspace() {
    if (vCursor.x > vTextMargin) --vCursor.x;
}

void CQuiltView::OnChar(int ch) {
    if (vPanelMode != kPanelPaint || vBrushMode != kBrushText) return;
    switch (ch) {
        case platform::kKeyEnter:
            TypeEnter();
            break;
        case platform::kKeyBackspace:
            TypeBackspace();
            break;
        case platform::kKeyTab:
            for (int i = 0; i < kTabBlanks; ++i) TypeTile(kBlank);
            break;
        case platform::kKeyEscape:
            break;
        default:
            TypeTile(ch);
            break;
    }
    Invalidate();
}
