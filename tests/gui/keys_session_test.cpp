// A whole session without a mouse: from the empty board to a saved game.

#include "editor/script/do_programming.h"
#include "editor/shell/do_name.h"
#include "editor/shell/panel_ids.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/view/brush.h"
#include "engine/game_archive.h"
#include "tests/gui/main_window.h"

#include <QMimeData>
#include <QPushButton>

namespace {

class Keys : public MainWindow {
protected:
    // To whatever has the keyboard, shortcuts first.
    void Hit(std::initializer_list<Qt::Key> keys, Qt::KeyboardModifiers with = {}) {
        for (const Qt::Key key : keys) QTest::keyClick(window->windowHandle(), key, with);
        Settle();
        window->activateWindow();
        Settle();
    }
    void HitRepeatedly(Qt::Key key, int times, Qt::KeyboardModifiers with = {}) {
        for (int i = 0; i < times; ++i) QTest::keyClick(window->windowHandle(), key, with);
    }
    // Adds a node through the menu of the selected row.
    void Add(const std::vector<std::string>& path, const QString& name, Qt::Key menuKey,
             Qt::KeyboardModifiers with = {}) {
        person.ChooseInMenu(path);
        person.OnDialog([name](QDialog& dialog) {
            QTest::keyClicks(dialog.focusWidget(), name);
            Key(dialog, Qt::Key_Return);
        });
        Hit({menuKey}, with);
    }
    QRgb RingAbove(const QWidget& pane) {
        const QPoint above = pane.mapTo(window, QPoint(9, -1));
        return window->grab().toImage().pixel(above);
    }
};

}  // namespace

TEST_F(Keys, MakeAGameFromNothing) {
    Start();
    const QRgb ring = window->palette().color(QPalette::Highlight).rgb();
    EXPECT_EQ(QApplication::focusWidget(), edit);
    EXPECT_EQ(RingAbove(*edit), ring);

    // The brush, from the panel.
    Hit({Qt::Key_F6});
    EXPECT_EQ(QApplication::focusWidget(), &Control(kBrushPreview));
    EXPECT_NE(RingAbove(*edit), ring);
    Hit({Qt::Key_Tab});
    Hit({Qt::Key_Tab}, Qt::ShiftModifier);
    Hit({Qt::Key_Tab}, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), &Control(kScrollForward)) << "Tab goes round";
    Hit({Qt::Key_Escape});
    EXPECT_EQ(QApplication::focusWidget(), edit);
    for (const Qt::Key opens : {Qt::Key_Space, Qt::Key_Return}) {
        Hit({Qt::Key_F6});
        Control(kBrushPreview).setFocus();
        person.OnDialog([](QDialog& dialog) {
            Key(dialog, Qt::Key_Right);
            Key(dialog, Qt::Key_Return);
        });
        Hit({opens});
        EXPECT_EQ(QApplication::focusWidget(), edit);
    }
    EXPECT_EQ(vBrush.chr, 3);

    // A box that is filled, and a line.
    HitRepeatedly(Qt::Key_Right, 10);
    HitRepeatedly(Qt::Key_Down, 8);
    HitRepeatedly(Qt::Key_Right, 4, Qt::ControlModifier);
    HitRepeatedly(Qt::Key_Up, 2, Qt::ControlModifier);
    Settle();
    EXPECT_TRUE(edit->accessibleDescription().endsWith(QLatin1String("box of 5 x 3")));
    person.OnMenu([this](QMenu& menu) {
        EXPECT_EQ(menu.pos(), edit->mapToGlobal(QPoint(15 * 8, 7 * 8)));
        Press(menu, Qt::Key_Down);
        Press(menu, Qt::Key_Return);
    });
    Hit({Qt::Key_Menu});
    const platform::Point from = app->Frame().EditView().Cursor();
    EXPECT_EQ(from, (platform::Point{10, 8})) << "the box goes from the cursor";
    HitRepeatedly(Qt::Key_Left, 5, Qt::ControlModifier);
    HitRepeatedly(Qt::Key_Down, 5, Qt::ControlModifier);
    person.ChooseInMenu({"&Line", "&Fill"});
    Hit({Qt::Key_Menu}, Qt::ControlModifier);
    // A box that is given up; then the menu is the cursor's alone.
    for (const Qt::Key ends : {Qt::Key_Escape, Qt::Key_Down}) {
        HitRepeatedly(Qt::Key_Left, 3, Qt::ControlModifier);
        Hit({ends});
        person.ChooseInMenu({"&Fill"});
        Hit({Qt::Key_Menu});
    }

    // The view: a tile back and forth, and to the cursor.
    Hit({Qt::Key_Right, Qt::Key_Right, Qt::Key_Up}, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(app->Frame().EditView().Scroll(), (platform::Point{-2, 1}));
    Hit({Qt::Key_F4});
    EXPECT_LT((At(10, 9) - edit->rect().center()).manhattanLength(), 17);

    // The list: a second board, an object on it, its script.
    Hit({Qt::Key_F6}, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), list);
    Add({"&Add", "&Board"}, QStringLiteral("second"), Qt::Key_Menu);
    Hit({Qt::Key_Up, Qt::Key_Down, Qt::Key_Down});
    Add({"&Add", "&Object"}, QStringLiteral("thing"), Qt::Key_F10, Qt::ShiftModifier);
    Hit({Qt::Key_Home, Qt::Key_End});
    person.AnswerBox("Delete Object?", false);
    Hit({Qt::Key_Delete});
    person.OnDialog([](QDialog& dialog) {
        Type(*dialog.focusWidget(), QStringLiteral("@thing"));
        Press(*dialog.focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
        while (dialog.focusWidget() != &In(dialog, platform::kIdOk)) Key(dialog, Qt::Key_Tab);
        Key(dialog, Qt::Key_Return);
    });
    Hit({Qt::Key_Return});
    Hit({Qt::Key_Return}, Qt::ControlModifier);
    EXPECT_EQ(vPanelMode, kPanelProperties);
    Hit({Qt::Key_PageUp, Qt::Key_Escape});
    EXPECT_EQ(QApplication::focusWidget(), edit);
    person.AnswerFileDialog(temp / "keys");
    Hit({Qt::Key_S}, Qt::ControlModifier);

    Game game;
    GameFault fault;
    int nextId = 1;
    ASSERT_TRUE(ReadGame(
        temp / "keys.zqlt", [&] { return nextId++; }, game, fault))
        << fault.text;
    ASSERT_EQ(game.root.children.size(), 2u);
    Dobject& first = *game.root.children.front();
    const Dobject& second = *game.root.children.back();
    std::set<std::pair<int, int>> painted;
    for (int i = 0; i < 80 * 60; ++i)
        if (first.GetTile(i % 80, i / 80)->chr == 3) painted.insert({i % 80, i / 80});
    std::set<std::pair<int, int>> wanted{{10, 9}};
    for (int i = 0; i < 15; ++i) wanted.insert({10 + i % 5, 6 + i / 5});
    for (int i = 0; i < 6; ++i) wanted.insert({10 - i, 8 + i});
    EXPECT_EQ(painted, wanted);
    ASSERT_EQ(second.children.size(), 1u);
    EXPECT_EQ(second.children.front()->name, "thing");
    EXPECT_EQ(second.children.front()->script.substr(0, 6), "@thing");
}

TEST_F(Keys, KeepTheSelectedRowInSight) {
    Start("Library/samples/lamplight.zqlt");
    window->resize(700, 350);
    list->setFocus();
    for (const Qt::Key go : {Qt::Key_End, Qt::Key_Up, Qt::Key_PageUp, Qt::Key_Home}) {
        Hit({go});
        EXPECT_FALSE(list->accessibleDescription().contains(QLatin1String("not among"))) << go;
    }
}

// What is dropped on the window: a game opens, an object shows in its dialog, all else is told.
TEST_F(Keys, NeedNotFindAFileThatIsDropped) {
    Start("Library/samples/lamplight.zqlt");
    ASSERT_TRUE(vWorld->Export(HandleGuard(vWorld->GetCurrentObject()), temp / "title.ZOBJ"));
    const auto drop = [&](const std::string& path) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
        QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window, &enter);
        QDropEvent event({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window, &event);
        Settle();
    };
    person.OnDialog([](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle().toStdString(), "Object ClipBoard");
        dialog.close();
    });
    drop(temp / "title.ZOBJ");
    person.AnswerBox("one game (.zqlt) or object file");
    drop(SOURCE_FOLDER "/README.md");
    drop("Library/default.zqlt");
    EXPECT_TRUE(window->windowTitle().startsWith(QLatin1String("default.zqlt")));
}
