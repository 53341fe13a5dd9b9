#include "docs/screens/album.h"

#include "editor/shell/do_about.h"
#include "editor/shell/do_location.h"
#include "editor/shell/do_name.h"
#include "editor/shell/do_object_clip_board.h"
#include "editor/shell/do_save_notification.h"
#include "editor/shell/do_size.h"
#include "editor/shell/do_viewport.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/do_color_select.h"
#include "editor/tools/do_font_edit.h"
#include "editor/tools/do_tile_clip.h"
#include "editor/tools/fade_dialog.h"
#include "editor/tools/open_area_dialog.h"
#include "editor/view/brush.h"
#include "editor/view/object_clip.h"
#include "editor/view/selection.h"
#include "editor/view/tile_clip.h"

#include <QSlider>

namespace {

// The boat in both clipboards.
void FillClipboards(Studio& studio) {
    studio.Select("Harbour", "boat");
    const HandleGuard boat(vWorld->GetCurrentObject());
    const Dobject& node = *vWorld->Node(boat);
    vTileClip = node.tiles;
    vTileClipW = node.width;
    vTileClipH = node.height;
    vObjectClip->EraseAll();
    vObjectClip->Create(node.name, node.width, node.height);
    vObjectClip->tiles = node.tiles;
    vObjectClip->RedrawTiles();
}

// A slider moved as by hand.
std::function<void(QDialog&)> Slide(int id, int value) {
    return [=](QDialog& dialog) {
        if (auto* slider = dialog.findChild<QSlider*>(QString::number(id))) slider->setValue(value);
    };
}

void TakeAreaDialogs(Studio& studio) {
    studio.Select("Harbour");
    constexpr int kMiddleBlend = 6;
    vBrush = {1, 53, 41, 0};
    const auto take = [&](const char* name, AreaDialog dialog,
                          const std::function<void(QDialog&)>& act = {}) {
        studio.camera.TakeDialog(
            name, [=] { OpenAreaDialog(dialog, vArea, vBrush); }, act);
    };
    take("dialog-fade.png", AreaDialog::Fade, Slide(kFadeBlendSlider, kMiddleBlend));
    take("dialog-distance.png", AreaDialog::Distance);
    take("dialog-slime.png", AreaDialog::Slime);
    take("dialog-speckle.png", AreaDialog::Speckle);
    take("dialog-filter.png", AreaDialog::Filter);
}

}  // namespace

void TakeDialogs(Studio& studio) {
    TakeAreaDialogs(studio);
    Camera& camera = studio.camera;
    studio.Select("Harbour", "keeper");
    camera.TakeDialog("dialog-about.png", [] { DoAbout().Run(); });
    camera.TakeDialog("dialog-name.png", [] { DoName().Run(); });
    camera.TakeDialog("dialog-location.png", [] { DoLocation().Run(); });
    studio.Select("Cave");
    camera.TakeDialog("dialog-size.png", [] { DoSize().Run(); });
    camera.TakeDialog("dialog-viewport.png", [] { DoViewport().Run(); });
    vBrush = {132, -2, 0, 1};
    camera.TakeDialog("dialog-brush-settings.png", [] { DoBrushSettings().Run(); });
    camera.TakeDialog("dialog-font-edit.png", [] { DoFontEdit().Run(); });
    vBrush = {2, 71, 57, 1};
    camera.TakeDialog("dialog-color-select.png", [] { DoColorSelect().Run(); });
    FillClipboards(studio);
    camera.TakeDialog("dialog-tile-clipboard.png", [] { DoTileClip().Run(); });
    camera.TakeDialog("dialog-load-bmp-as.png", [] { AskForForeground(); });
    camera.TakeDialog("dialog-object-clipboard.png", [] { DoObjectClipBoard().Run(); });
    camera.TakeDialog("dialog-save-notification.png", [] { DoSaveNotification::Confirm(); });
}
