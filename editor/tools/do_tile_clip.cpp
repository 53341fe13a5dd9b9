#include "editor/tools/do_tile_clip.h"

#include "editor/tools/tile_clip_files.h"
#include "engine/dinterface.h"
#include "platform/platform.h"

#include <algorithm>

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

// What is drawn in place of values that a cell does not hold.
constexpr int kStandInGlyph = 177;
constexpr int kStandInFg = 15;
constexpr int kStandInBg = 1;
constexpr int kNone = -1;

constexpr Control kControls[] = {
    {kClipPicture, ControlKind::Picture, "Tile clipboard", 7, 7, 157, 156,
     "The tiles of the clipboard; drag or use the arrow keys to move them"},
    {kClipSkip, ControlKind::CheckBox, "Skip 0 0 0 0 Tiles", 7, 169, 90, 10,
     "Pasting leaves out empty tiles"},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 98, 167, 30, 13, "Close, with this option"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 131, 167, 33, 13,
     "Close, with the option as it was"},
};
constexpr platform::Form kForm{"Tile ClipBoard", 171, 187, "Courier New", 8, kControls};

enum BmpControl : int { kBmpText = 1001, kForeground, kBackground };
constexpr Control kBmpControls[] = {
    {kBmpText, ControlKind::Label,
     "Do want to load this bmp as foreground color or background color info ?", 7, 7, 173, 20},
    {kForeground, ControlKind::DefaultButton, "Foreground", 32, 31, 60, 13,
     "The pixels are colors of glyphs"},
    {kBackground, ControlKind::Button, "Background", 96, 31, 60, 13,
     "The pixels are colors behind glyphs"},
};
constexpr platform::Form kBmpForm{"Load BMP As", 187, 51, "Courier New", 8, kBmpControls};

struct BmpQuestion final : platform::FormEvents {
    void OnControl(FormWindow& form, int id) override { form.EndDialog(id); }
};

}  // namespace

bool AskForForeground() {
    BmpQuestion question;
    return vPlatform->RunDialog(kBmpForm, question) == kForeground;
}

void ClipBoardViewer::Compose(BITMAP* to) {
    const Dfont& glyphs = *vWorld->GetFont();
    const int columns = std::min(vTileClipW, to->w / kTileSize - Scroll().x);
    const int rows = std::min(vTileClipH, to->h / kTileSize - Scroll().y);
    for (int y = std::max(0, -Scroll().y); y < rows; ++y) {
        for (int x = std::max(0, -Scroll().x); x < columns; ++x) {
            const Dtile& cell =
                vTileClip[static_cast<std::size_t>(y) * static_cast<std::size_t>(vTileClipW) +
                          static_cast<std::size_t>(x)];
            int fg = Signed(cell.fg);
            int bg = Signed(cell.bg);
            const bool colorless = fg == kNone && bg == kNone;
            if (fg == kNone) fg = colorless ? kStandInFg : 0;
            if (bg == kNone) bg = colorless ? kStandInBg : 0;
            const int chr = Signed(cell.chr) == kNone ? kStandInGlyph : Signed(cell.chr);
            glyphs.DrawGlyph(to, chr, fg, bg, x + Scroll().x, y + Scroll().y);
        }
    }
    if (window)
        window->SetDescription(std::to_string(vTileClipW) + " by " + std::to_string(vTileClipH) +
                               " tiles");
}

platform::Size ClipBoardViewer::ContentTiles() const { return {vTileClipW, vTileClipH}; }

void DoTileClip::Run() { vPlatform->RunDialog(kForm, *this); }

platform::Menu DoTileClip::FormMenu() {
    return {platform::SubMenu(
        "&File", {platform::Entry("&Load", kClipLoad), platform::Entry("&Save", kClipSave)})};
}

platform::WindowEvents* DoTileClip::PictureEvents(int) { return &viewer; }

void DoTileClip::OnInit(FormWindow& form) {
    viewer.Attach(form.Picture(kClipPicture));
    form.SetCheck(kClipSkip, vTileClipSkip != 0);
}

void DoTileClip::OnCommand(FormWindow&, int command) {
    if (command == kClipLoad) Load();
    if (command == kClipSave) Save();
}

void DoTileClip::Load() {
    const auto path = vPlatform->OpenFileDialog({"", kClipLoadFilter, "", ""});
    if (!path) return;
    const platform::WaitCursor wait;
    LoadTileClip(*path, AskForForeground);
    viewer.Invalidate();
}

void DoTileClip::Save() {
    if (vTileClipW == 0 || vTileClipH == 0) return;
    const ClipFormat& format = SaveFormat(ClipKindOf(vTileClip.front()));
    const auto path =
        vPlatform->SaveFileDialog({"", format.filter, std::string(".") + format.extension, ""});
    if (path) SaveTileClip(*path);
}

void DoTileClip::OnControl(FormWindow& form, int id) {
    if (id == platform::kIdOk) vTileClipSkip = form.IsChecked(kClipSkip);
    if (id == platform::kIdOk || id == platform::kIdCancel) form.EndDialog(id);
}
