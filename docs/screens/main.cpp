// quilt-screens: takes the pictures of docs/dialogs.md. It runs the real program off screen,
// opens each dialog and saves what stands there. To be started in the program's folder, where
// Library/ stands.

#include "editor/commands.h"
#include "editor/shell/do_location.h"
#include "editor/shell/do_name.h"
#include "editor/shell/do_object_clip_board.h"
#include "editor/shell/do_save_notification.h"
#include "editor/shell/do_size.h"
#include "editor/shell/do_viewport.h"
#include "editor/shell/quilt_app.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/do_color_select.h"
#include "editor/tools/do_font_edit.h"
#include "editor/tools/do_tile_clip.h"
#include "editor/view/brush.h"
#include "editor/view/object_clip.h"
#include "editor/view/tile_clip.h"
#include "platform/qt/qt_frame.h"
#include "platform/qt/qt_platform.h"
#include "platform/qt/qt_text.h"

#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QTimer>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>

namespace {

bool vAllSaved = true;

void Save(const QPixmap& picture, const std::string& path) {
    if (picture.save(FromUtf8(path), "PNG")) return;
    std::fprintf(stderr, "%s cannot be written\n", path.c_str());
    vAllSaved = false;
}

void Settle() {
    for (int i = 0; i < 5; ++i) QApplication::processEvents();
}

// A dialog as a person sees it, under its title.
void SaveDialog(QDialog& dialog, const std::string& path) {
    Settle();
    constexpr int kTitle = 20;
    const QPixmap inside = dialog.grab();
    QPixmap whole(inside.width() + 2, inside.height() + kTitle + 1);
    whole.fill(QColor(60, 80, 120));
    QPainter painter(&whole);
    painter.setPen(Qt::white);
    painter.drawText(QRect(6, 0, whole.width(), kTitle), Qt::AlignVCenter, dialog.windowTitle());
    painter.drawPixmap(1, kTitle, inside);
    painter.end();
    Save(whole, path);
}

// Runs something that opens a dialog, takes its picture and closes it.
void TakeDialog(const std::string& path, const std::function<void()>& open) {
    QTimer::singleShot(50, [&] {
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
            SaveDialog(*dialog, path);
            // The font editor asks before it closes without OK.
            QTimer::singleShot(0, [] {
                if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
                    box->button(QMessageBox::Ok)->click();
            });
            dialog->close();
        }
    });
    open();
}

// A pop-up menu over the list, with the list behind it.
void TakeMenu(QtFrame& window, QPoint at, const std::string& path) {
    auto* list = window.findChild<QWidget*>(QStringLiteral("list"));
    QTimer::singleShot(50, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu) return;
        Settle();
        const int bottom = list->mapFromGlobal(menu->pos()).y() + menu->height();
        QPixmap picture(list->width(), bottom + 4);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        painter.drawPixmap(0, 0, list->grab());
        painter.drawPixmap(list->mapFromGlobal(menu->pos()), menu->grab());
        painter.end();
        Save(picture, path);
        menu->close();
    });
    const QPoint screen = list->mapToGlobal(at);
    QMouseEvent press(QEvent::MouseButtonPress, at, screen, Qt::RightButton, Qt::RightButton, {});
    QApplication::sendEvent(list, &press);
}

Dobject& Add(Dobject& parent, const char* name, int w, int h, int x, int y) {
    Dobject* node = parent.Spawn(vWorld->TakeId(), 0);
    node->Create(name, w, h);
    node->posx = x;
    node->posy = y;
    for (int row = 0; row < h; ++row)
        for (int column = 0; column < w; ++column) node->PutTile(column, row, 177, 53, 41, 0);
    return *node;
}

// A small world for the list to show.
Dobject& FillWorld() {
    Dobject& board = *vWorld->Root().children.front();
    board.name = "Town";
    Dobject& house = Add(board, "house", 12, 8, 10, 8);
    Add(house, "door", 2, 3, 5, 5);
    Add(house, "window", 2, 2, 2, 2).hidden = 1;
    Add(board, "boat", 6, 3, 40, 30);
    vWorld->NewBoard();
    vWorld->Root().children.back()->name = "Harbour";
    vWorld->ClickTreeList(0, 25);
    return house;
}

// Something for the clipboards to show.
void FillClipboards() {
    Dobject& house = *vWorld->Root().children.front()->children.back();
    vTileClip = house.tiles;
    vTileClipW = house.width;
    vTileClipH = house.height;
    vObjectClip->Create("boat", 6, 3);
    for (int i = 0; i < 18; ++i) vObjectClip->PutTile(i % 6, i / 6, 177, 53, 41, 0);
}

void TakeAll(CQuiltApp& app, const std::string& folder) {
    auto& window = static_cast<QtFrame&>(app.Frame().Window());
    FillWorld();
    vBrush = {2, 14, 1, 1};
    TakeDialog(folder + "dialog-brush-settings.png", [] { DoBrushSettings().Run(); });
    TakeDialog(folder + "dialog-color-select.png", [] { DoColorSelect().Run(); });
    TakeDialog(folder + "dialog-name.png", [] { DoName().Run(); });
    TakeDialog(folder + "dialog-location.png", [] { DoLocation().Run(); });
    TakeDialog(folder + "dialog-size.png", [] { DoSize().Run(); });
    TakeDialog(folder + "dialog-viewport.png", [] { DoViewport().Run(); });
    FillClipboards();
    TakeDialog(folder + "dialog-font-edit.png", [] { DoFontEdit().Run(); });
    TakeDialog(folder + "dialog-tile-clipboard.png", [] { DoTileClip().Run(); });
    TakeDialog(folder + "dialog-load-bmp-as.png", [] { AskForForeground(); });
    TakeDialog(folder + "dialog-object-clipboard.png", [] { DoObjectClipBoard().Run(); });
    TakeDialog(folder + "dialog-save-notification.png", [] { DoSaveNotification::Confirm(); });
    TakeMenu(window, {30, 15}, folder + "tree-board-menu.png");
    TakeMenu(window, {30, 25}, folder + "tree-object-menu.png");

    auto* edit = window.findChild<QWidget*>(QStringLiteral("edit"));
    const auto panel = [&] { return window.findChild<QWidget*>(QStringLiteral("panel")); };
    edit->setFocus();
    app.Frame().RedrawAll();
    Settle();
    Save(panel()->grab(), folder + "panel-paint.png");
    vPanelMode = kPanelProperties;
    app.Frame().OnCommand(kCmdShowPropertiesPanel);
    Settle();
    Save(panel()->grab(), folder + "panel-properties.png");
    Save(window.grab(), folder + "main-window.png");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const std::string folder = std::string(argv[1]) + "/";
    QtPlatform qt(argc, argv);
    CQuiltApp app;
    if (!app.InitInstance(std::filesystem::current_path().string(), "")) return 1;
    TakeAll(app, std::filesystem::absolute(folder).string());
    return vAllSaved ? 0 : 1;
}
