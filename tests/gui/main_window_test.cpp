// What the real window alone shows: which control hears a key, menus and dialogs by keys, and what
// the window system adds of its own.

#include "tests/gui/main_window.h"

#include "editor/shell/do_location.h"
#include "editor/shell/do_name.h"
#include "editor/tools/do_font_edit.h"

#include <QMimeData>
#include <QSlider>

TEST_F(MainWindow, KeysReachWhatTheyBelongTo) {
    Start();
    const auto isBack = [this] { return QApplication::focusWidget() == edit; };
    // A field does not keep the keys of the menu bar.
    Control(kStepX).setFocus();
    person.OnDialog([](QDialog& dialog) { dialog.close(); });
    Hit({Qt::Key_C}, Qt::ControlModifier);

    // The letters of the menu bar are its own.
    edit->setFocus();
    for (const Qt::Key letter : {Qt::Key_F, Qt::Key_S, Qt::Key_V, Qt::Key_H}) {
        person.OnMenu([letter](QMenu& menu) {
            EXPECT_EQ(menu.title().at(1).unicode(), letter);
            menu.close();
        });
        Hit({letter}, Qt::AltModifier);
        Press(*window->menuBar(), Qt::Key_Escape);
        EXPECT_TRUE(QTest::qWaitFor(isBack));
        if (letter == Qt::Key_S) ClickOnPanel(kToProperties);
    }

    // The letter that is underlined presses a button; it shows that it is pressed before it acts.
    // What is refused is selected, so that typing takes its place.
    person.OnDialog([this](QDialog& dialog) {
        Fill(dialog, kLocationZ, QStringLiteral("2147483648"));
        person.AnswerBox("Please enter an integer.");
        Key(dialog, {Qt::Key_Return});
        Type(*dialog.focusWidget(), QStringLiteral("3"));
        Click(In(dialog, platform::kIdOk), {5, 5});
    });
    QTest::keyClick(window->windowHandle(), Qt::Key_L, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Board().posz == 3; }));
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor(isBack));
    EXPECT_EQ(std::ranges::count(QApplication::allWidgets(), "panel", &QWidget::objectName), 1);
}

TEST_F(MainWindow, FilesAreChosenInDialogs) {
    Start();
    const auto texts = window->findChild<QStatusBar*>()->findChildren<QLabel*>();
    // A lock's state is that before the key; its own key turns it.
    const std::tuple<int, unsigned, QString> keys[] = {
        {Qt::Key_A, 2, "CAP"}, {Qt::Key_CapsLock, 18, "NUM"}, {Qt::Key_ScrollLock, 0, "SCRL"}};
    for (const auto& [code, state, lit] : keys) {
        QKeyEvent event(QEvent::KeyPress, code, {}, 0, 0, state);
        QApplication::sendEvent(window->windowHandle(), &event);
        QString shown;
        for (auto* text : texts.mid(1)) shown += text->isEnabled() ? text->text() : QString();
        EXPECT_EQ(shown, lit);
    }
    EXPECT_EQ((vPlatform->WriteProfileInt("a", "b", 7), vPlatform->GetProfileInt("a", "b", 0)), 7);
    person.AnswerBox("short");
    vPlatform->MessageBox("short", std::string(40, 'W'), platform::Buttons::Ok, {});
    person.AnswerFileDialog(temp / "game");
    Choose("&File", "Save &As...");
    const std::string path = temp / "game.zqlt", saved = FileBytes(path);
    EXPECT_TRUE(texts[0]->text().contains(QLatin1String("game.zqlt: 1 board")));
    window->menuBar()->actions()[2]->menu()->show();
    EXPECT_TRUE(texts[0]->text().startsWith(QLatin1String("Use"))) << "until the next menu";
    window->menuBar()->actions()[2]->menu()->close();
    // Overwriting asks, and so does closing.
    PutFile(path, "no archive");
    person.OnDialog([&](QDialog& dialog) {
        person.OnDialog([](QDialog& box) { box.reject(); });
        Person::AnswerWith(dialog, path);
        dialog.reject();
    });
    Choose("&File", "Save &As...");
    EXPECT_EQ(FileBytes(path), "no archive");
    PutFile(path, saved);
    person.AnswerFileDialog(path);
    Choose("&File", "&Open...");
    EXPECT_EQ(vPlatform->GetProfileString("Recent File List", "File1", ""), path);
    EXPECT_FALSE(QGuiApplication::overrideCursor());
    const platform::WaitCursor wait;
    EXPECT_TRUE(QGuiApplication::overrideCursor());
    for (const bool sure : {false, true}) {
        EXPECT_TRUE(window->isVisible());
        person.AnswerBox("Do you want to quit?", sure);
        sure ? Choose("&File", "E&xit") : void(window->close());
    }
    EXPECT_FALSE(window->isVisible());
}

TEST_F(MainWindow, EnterPressesTheButtonWithTheFocusElseTheDefaultOne) {
    Start();
    const std::string odd = Board().name = "\xff" + std::string(60, 'n');
    for (const int focus : {0, platform::kIdCancel, int{kNameText}}) {
        person.OnDialog([focus](QDialog& dialog) {
            if (focus) Fill(dialog, kNameText, QStringLiteral("other"));
            if (focus) In(dialog, focus).setFocus();
            Key(dialog, {Qt::Key_Home, Qt::Key_Return});
        });
        DoName().Run();
        EXPECT_EQ(Board().name, focus == kNameText ? "other" : odd) << "as nobody edits it";
    }
}

TEST_F(MainWindow, TheFontEditorTakesItsKeysWhereverTheFocusStands) {
    Start();
    vBrush = {33, 7, 2, 1};
    person.OnDialog([](QDialog& dialog) {
        int x = 0;
        for (const int id : {int{kFontCharEdit}, int{kFontSlider}, int{platform::kIdOk}}) {
            In(dialog, id).setFocus();
            const int before = vWorld->GetFont()->GetGlyphPixel(33, x, 0);
            Key(dialog, {Qt::Key_Space, Qt::Key_Return, Qt::Key_Right});
            EXPECT_NE(vWorld->GetFont()->GetGlyphPixel(33, x++, 0), before) << "focus on " << id;
            EXPECT_TRUE(dialog.isVisible()) << "Enter does not press OK";
        }
        auto& slider = In<QSlider>(dialog, kFontSlider);
        slider.setValue(50);
        Click(slider, {slider.width() / 2, slider.height() / 4});
        EXPECT_LT(slider.value(), 50) << "its top is the sheet's";
        PressOk(dialog);
    });
    Choose("&View", "&Font Edit");
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
