// A whole session without a mouse: from the empty board to a saved game.

#include "editor/shell/do_object_clip_board.h"
#include "tests/gui/main_window.h"

#include <QMimeData>

TEST_F(MainWindow, KeysMakeAGameFromNothing) {
    Start();
    // The brush, from the panel, where Tab goes round.
    Hit({Qt::Key_F6, Qt::Key_Tab});
    Hit({Qt::Key_Tab, Qt::Key_Tab}, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), &Control(kScrollForward));
    Hit({Qt::Key_Tab});
    person.OnDialog([](QDialog& d) { Key(d, {Qt::Key_Right, Qt::Key_Down, Qt::Key_Return}); });
    Hit({Qt::Key_Space});
    EXPECT_EQ(vBrush.chr, 18);

    // A line along a box.
    Hit(std::vector(4, Qt::Key_Right), Qt::ControlModifier);
    Hit(std::vector(4, Qt::Key_Down), Qt::ControlModifier);
    EXPECT_TRUE(edit->accessibleDescription().endsWith(QLatin1String("box of 5 x 5")));
    person.ChooseInMenu({"&Line", "&Fill"});
    Hit({Qt::Key_Menu}, Qt::ControlModifier);

    // The list: a second board, an object on it, its script.
    Hit({Qt::Key_F6}, Qt::ShiftModifier);
    person.ChooseInMenu({"&Add", "&Board"});
    person.OnDialog(Named(QStringLiteral("second")));
    Hit({Qt::Key_Menu});
    Hit({Qt::Key_End});
    person.ChooseInMenu({"&Add", "&Object"});
    person.OnDialog(Named(QStringLiteral("thing")));
    Hit({Qt::Key_F10}, Qt::ShiftModifier);
    Hit({Qt::Key_End});
    person.OnDialog([](QDialog& dialog) {
        Type(*dialog.focusWidget(), QStringLiteral("@thing"));
        PressOk(dialog);
    });
    Hit({Qt::Key_Return});
    Hit({Qt::Key_Escape});
    EXPECT_EQ(QApplication::focusWidget(), edit);
    person.AnswerFileDialog(temp / "keys");
    Hit({Qt::Key_S}, Qt::ControlModifier);

    Reopen(temp / "keys.zqlt");
    for (int i = 0; i < 25; ++i)
        EXPECT_EQ(Board().GetTile(i % 5, i / 5)->chr == 18, i % 6 == 0) << i;
    const Dobject& thing = *vWorld->Root().children.back()->children.front();
    EXPECT_EQ(thing.name + thing.script.substr(0, 6), "thing@thing");
}

// What is dropped on the window: a game opens, an object shows in its dialog, all else is told.
TEST_F(MainWindow, FilesAreDroppedOnIt) {
    Start("Library/samples/lamplight.zqlt");
    ASSERT_TRUE(vWorld->Export(HandleGuard(vWorld->GetCurrentObject()), temp / "title.ZOBJ"));
    const auto drop = [&](const std::string& path) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
        QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window, &enter);
        QDropEvent event({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window, &event);
        EXPECT_TRUE(enter.isAccepted() && event.isAccepted()) << path;
        Settle();
    };
    person.OnDialog([](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle().toStdString(), "Object ClipBoard");
        EXPECT_TRUE(In(dialog, kObjectPicture).focusPolicy() & Qt::TabFocus);
        dialog.close();
    });
    drop(temp / "title.ZOBJ");
    person.AnswerBox("one game (.zqlt) or object file");
    drop(SOURCE_FOLDER "/README.md");
    ClickOnPanel(kSaveBackup);
    Hit({Qt::Key_Right}, Qt::ControlModifier);
    drop("Library/default.zqlt");
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return !edit->accessibleDescription().contains(QLatin1String("box")); }));
    EXPECT_FALSE(Control(kRestoreBackup).isEnabled());
    EXPECT_TRUE(window->windowTitle().startsWith(QLatin1String("default.zqlt")));
}
