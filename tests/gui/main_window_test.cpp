// The real main window off screen, driven by key and mouse events: focus, menus, dialogs, pixels.

#include "tests/gui/main_window.h"
#include "editor/commands.h"
#include "editor/shell/do_location.h"
#include "editor/shell/do_name.h"
#include "editor/shell/do_size.h"
#include "editor/shell/panel_ids.h"
#include "editor/tools/color_select.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/do_font_edit.h"
#include "editor/view/brush.h"
#include "platform/qt/picture_widget.h"
#include "tests/support/random_world.h"

#include <gmock/gmock.h>
#include <QImage>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStatusBar>

TEST_F(MainWindow, KeysAndClicksLeaveTheFocusWhereItBelongs) {
    Start();
    for (const QSize& size : {window->size(), QSize(900, 600)}) {
        window->resize(size);
        Settle();
        EXPECT_EQ(list->width(), 200);
        EXPECT_EQ(app->Frame().Window().PaneSize(platform::Pane::Lower).h, 135);
    }
    Choose("&View", "&Status Bar");
    EXPECT_TRUE(window->statusBar()->isHidden());
    EXPECT_FALSE(Entry("&View", "&Status Bar")->isChecked());

    auto* step = &Control<QLineEdit>(kStepX);
    const std::function<void()> back[] = {
        [] {},
        [&] {
            for (Qt::Key code : {Qt::Key_Tab, Qt::Key_Down, Qt::Key_Tab}) Press(*edit, code);
        },
        [&] { ClickOnPanel(kRadioBlender); },
        [&] {
            step->setFocus();
            Press(*step, Qt::Key_Return);
        },
        [&] {
            step->setFocus();
            Press(*step, Qt::Key_Escape);
        },
        [&] {
            step->setFocus();
            Click(*list, {20, 15});
        },
    };
    for (const auto& act : back) {
        act();
        EXPECT_EQ(QApplication::focusWidget(), edit) << &act - back;
    }
    Click(*step, {5, 5});
    step->setFocus();
    step->selectAll();
    QTest::keyClicks(step, QStringLiteral("1a-2"));
    EXPECT_EQ(step->text().toStdString(), "12") << "digits only";
    EXPECT_EQ(QApplication::focusWidget(), step);

    // The letter that is underlined presses a button; it shows that it is pressed before it acts.
    ClickOnPanel(kToProperties);
    person.OnDialog([](QDialog& dialog) {
        Fill(dialog, kLocationZ, QStringLiteral("3"));
        Click(In(dialog, platform::kIdOk), {5, 5});
    });
    window->activateWindow();
    Settle();
    QTest::keyClick(window->windowHandle(), Qt::Key_L, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Board().posz == 3; }, 2000));
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([this] { return QApplication::focusWidget() == edit; }, 2000));
    EXPECT_EQ(Control(kPropViewer).accessibleDescription().toStdString(),
              "Board1, Location: 0 x 0 z 3, Size: 80 x 60, View: 80 x 60");
}

TEST_F(MainWindow, FilesAreChosenInDialogsAndKeptInTheMenu) {
    Start();
    const auto title = [this] { return window->windowTitle().toStdString(); };
    EXPECT_EQ(title(), "Untitled - Tessel Works's QUILT!");
    // Typed in the view, as the menus show it, and as any sane editor of text takes it.
    ClickOnPanel(kRadioText);
    Click(*edit, At(77, 30));
    Type(*edit, QStringLiteral("AB"));
    Compose(*edit, QStringLiteral("\u00e9"));
    EXPECT_EQ(Board().GetTile(79, 30)->chr, 130);
    person.AnswerFileDialog(temp / "first.zqlt");
    Choose("&File", "&Save");
    Choose("&Set Video Mode", "320 x 240");
    Choose("&Set Video Mode", "Windowed");
    EXPECT_FALSE(Entry("&Set Video Mode", "Windowed")->isChecked());
    const std::string world = Account(*vWorld);
    person.AnswerFileDialog(temp / "second");
    Choose("&File", "Save &As...");
    EXPECT_EQ(title(), "second.zqlt - Tessel Works's QUILT!");
    Choose("&File", "&New");
    EXPECT_NE(Account(*vWorld), world);
    person.AnswerFileDialog(temp / "second.zqlt");
    Choose("&File", "&Open...");
    EXPECT_EQ(Account(*vWorld), world);
    EXPECT_TRUE(Entry("&Set Video Mode", "320 x 240")->isChecked());
    Choose("&File", "&2 " + temp / "first.zqlt");
    EXPECT_EQ(title(), "first.zqlt - Tessel Works's QUILT!");

    // Overwriting asks, and so does closing.
    const std::string path = PutFile(temp / "there.zqlt", "old");
    person.OnDialog([&](QDialog& dialog) {
        person.OnDialog([](QDialog& box) {
            EXPECT_STREQ(box.metaObject()->className(), "QMessageBox");
            box.reject();
        });
        Person::AnswerWith(dialog, path);
        if (dialog.isVisible()) dialog.reject();
    });
    Choose("&File", "Save &As...");
    EXPECT_EQ(FileBytes(path), "old");
    person.AnswerBox("Do you want to quit?", false);
    window->close();
    EXPECT_TRUE(window->isVisible());
    person.AnswerBox("Do you want to quit?", true);
    Choose("&File", "E&xit");
    EXPECT_FALSE(window->isVisible());
}

TEST_F(MainWindow, ANodeIsAddedNamedSizedAndMovedByTheKeyboard) {
    Start();
    person.ChooseInMenu({"&Add", "&Object"});
    person.OnDialog([](QDialog& dialog) {
        Fill(dialog, kNameText, QStringLiteral("red barn ") + QString(60, QLatin1Char('n')));
        Key(dialog, Qt::Key_Return);
    });
    Click(*list, {30, 15}, Qt::RightButton);
    Settle();
    const Dobject& barn = *Board().children.front();
    EXPECT_EQ(barn.name, "red_barn_" + std::string(41, 'n'));
    person.ChooseInMenu({"&Size"});
    person.OnDialog([this](QDialog& dialog) {
        Fill(dialog, kSizeW, QStringLiteral("-1a2"));
        Key(dialog, Qt::Key_Tab);
        QTest::keyClicks(dialog.focusWidget(), QStringLiteral("0"));
        person.AnswerBox("between 1 and 32767");
        Key(dialog, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        // In the place of the faulty number, which is selected.
        QTest::keyClicks(dialog.focusWidget(), QStringLiteral("7"));
        Key(dialog, Qt::Key_Return);
    });
    Click(*list, {30, 25}, Qt::RightButton);
    Settle();
    EXPECT_EQ(std::pair(barn.width, barn.height), std::pair(12, 7)) << "digits only";
    Board().Spawn(vWorld->TakeId(), 0)->Create("yard", 4, 3);
    person.ChooseInMenu({"&Edit", "Move", Board().name, "yard", "&Here ..."});
    Click(*list, {30, 25}, Qt::RightButton);
    Settle();
    EXPECT_EQ(barn.parent->name, "yard");

    // The menu key opens the tools at the cursor.
    Click(*edit, At(5, 5));
    vBrush = {66, 20, 30, 0};
    person.OnMenu([this](QMenu& menu) {
        const QRect cursor(edit->mapToGlobal(At(5, 5)) - QPoint(8, 8), QSize(17, 17));
        EXPECT_TRUE(cursor.contains(menu.pos()));
        menu.close();
    });
    Press(*edit, Qt::Key_Menu);
}

TEST_F(MainWindow, ABrushIsChosenByKeysAlone) {
    Start();
    vBrush = {66, 20, 30, 0};
    person.OnDialog([](QDialog& dialog) {
        const auto press = [&](std::initializer_list<Qt::Key> keys) {
            for (Qt::Key code : keys) Key(dialog, code);
        };
        const auto corner = [](QWidget& widget) { return widget.grab().toImage().pixel(0, 0); };
        QWidget& glyphs = In(dialog, kBrushChar);
        ASSERT_EQ(dialog.focusWidget(), &glyphs);
        const QRgb frame = dialog.palette().color(QPalette::Highlight).rgb();
        EXPECT_EQ(corner(glyphs), frame) << "the focus is seen";
        press({Qt::Key_Right, Qt::Key_Down, Qt::Key_Tab});
        EXPECT_NE(corner(glyphs), frame);
        press({Qt::Key_Down, Qt::Key_Tab});                // the foreground
        press({Qt::Key_Left, Qt::Key_Left, Qt::Key_Tab});  // the background
        press({Qt::Key_Right});                            // the attribute
        Settle();
        EXPECT_EQ(In<QLineEdit>(dialog, kBrushNumbers).text().toStdString(), "83 36 28 1");
        press({Qt::Key_Return});
    });
    ClickOnPanel(kBrushPreview);
    EXPECT_EQ(vBrush, (Brush{83, 36, 28, 1}));
}

TEST_F(MainWindow, ShowsTheWorldPixelForPixel) {
    Start();
    for (int x = 0; x < 16; ++x) Board().PutTile(x + 1, 1, 219, x, x, 0);
    app->Frame().RedrawAll();
    Settle();
    const QImage one = edit->grab().toImage();
    for (int x = 8; x < 128; ++x)
        EXPECT_EQ(one.pixel(8 + x, 8) & 0xffffff,
                  vScreenColors[static_cast<std::size_t>(x / 8)] & 0xffffff);
    app->Frame().EditView().OnCommand(kCmdZoomIn);
    Settle();
    const QImage two = edit->grab().toImage();
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x) ASSERT_EQ(two.pixel(x, y), one.pixel(x / 2, y / 2));
}

TEST_F(MainWindow, TheFontEditorTakesItsKeysWhereverTheFocusStands) {
    Start();
    Dfont& glyphs = *vWorld->GetFont();
    vBrush = {33, 7, 2, 1};
    person.OnDialog([&](QDialog& dialog) {
        int x = 0;
        for (const int id : {int{kFontCharEdit}, int{kFontSlider}, int{kFontInvert},
                             int{kFontCharMode}, int{platform::kIdOk}}) {
            In(dialog, id).setFocus();
            const int before = glyphs.GetGlyphPixel(33, x, 0);
            Key(dialog, Qt::Key_Space);
            EXPECT_NE(glyphs.GetGlyphPixel(33, x, 0), before) << "focus on " << id;
            Key(dialog, Qt::Key_Return);
            EXPECT_EQ(vBrush.fg, glyphs.GetGlyphPixel(33, x, 0));
            EXPECT_TRUE(dialog.isVisible()) << "Enter does not press OK";
            Key(dialog, Qt::Key_Right);
            ++x;
        }
        EXPECT_EQ(In<QSlider>(dialog, kFontSlider).value(), 0) << "the arrows are the cursor's";
        EXPECT_TRUE(In<QRadioButton>(dialog, kFontCharMode).isChecked());
        const int color = vBrush.fg;
        person.OnDialog([&](QDialog& colors) {
            Key(colors, Qt::Key_Down);
            In<QPushButton>(colors, platform::kIdOk).click();
        });
        Key(dialog, Qt::Key_C);
        EXPECT_EQ(vBrush.fg, color + 16);
        person.AnswerFileDialog(temp / "sheet");
        QMenu* menu = dialog.findChild<QMenuBar*>()->actions().front()->menu();
        Person::EntryOf(*menu, "&Save")->trigger();
        person.AnswerBox("Discard Changes ?", false);
        Key(dialog, Qt::Key_Escape);
        EXPECT_TRUE(dialog.isVisible());
        person.AnswerBox("Discard Changes ?", true);
        dialog.close();
    });
    Choose("&View", "&Font Edit");

    // The saved sheet, as the toolkit reads it.
    const QImage image(QString::fromStdString(temp / "sheet.bmp"));
    ASSERT_EQ(image.size(), QSize(128, 128));
    for (int y = 24; y < 128; ++y)  // below the glyph that was edited
        for (int x = 0; x < 128; ++x)
            ASSERT_EQ(image.pixelIndex(x, y), getpixel(glyphs.Sheet(), x, y)) << x << ' ' << y;
}
