// The real main window off screen, driven by key and mouse events.

#include "tests/gui/main_window.h"
#include "editor/commands.h"
#include "editor/shell/do_location.h"
#include "editor/shell/do_name.h"
#include "editor/shell/do_size.h"
#include "editor/shell/panel_ids.h"
#include "editor/tools/color_select.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/do_color_select.h"
#include "editor/tools/do_font_edit.h"
#include "editor/view/brush.h"
#include "platform/qt/picture_widget.h"
#include "tests/support/random_world.h"

#include <gmock/gmock.h>
#include <QAbstractButton>
#include <QImage>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStatusBar>

namespace {

std::string Everything() { return Account(vWorld->Root()); }

std::string Row(Dobject& board, int y, int from, int count) {
    std::string row;
    for (int x = from; x < from + count; ++x) {
        const int chr = board.GetTile(x, y)->chr;
        row += chr >= ' ' && chr < 127 ? static_cast<char>(chr) : chr == 0 ? '.' : '*';
    }
    return row;
}

Dobject& AddObject(Dobject& parent, const std::string& name, int x, int y) {
    Dobject* node = parent.Spawn(vWorld->TakeId(), 0);
    node->Create(name, 4, 3);
    node->posx = x;
    node->posy = y;
    return *node;
}

}  // namespace

TEST_F(MainWindow, StandsWithItsPanesMenusAndFocus) {
    Start();
    EXPECT_EQ(window->windowTitle().toStdString(), "Untitled - Tessel Works's QUILT!");
    EXPECT_EQ(list->width(), 200);
    EXPECT_EQ(app->Frame().Window().PaneSize(platform::Pane::Lower).h, 135);
    EXPECT_EQ(QApplication::focusWidget(), edit);
    window->resize(900, 600);
    Settle();
    EXPECT_EQ(app->Frame().Window().PaneSize(platform::Pane::Lower).h, 135);
    EXPECT_EQ(list->width(), 200);
    EXPECT_TRUE(Entry("&File", "&Run")->isEnabled());
    Choose("&View", "&Status Bar");
    EXPECT_TRUE(window->statusBar()->isHidden());
    EXPECT_FALSE(Entry("&View", "&Status Bar")->isChecked());
}

TEST_F(MainWindow, AWholeSessionComesBackFromItsFile) {
    Start();
    AddObject(AddObject(Board(), "outer", 20, 20), "inner", 1, 1);
    const std::string first = temp / "first.zqlt";
    person.AnswerFileDialog(first);
    Choose("&File", "&Save");
    app.reset();
    Start(first);

    // Normal: Space, and Shift with an arrow; then the TAB modes.
    Person::Click(*edit, At(2, 2));
    Keys({Qt::Key_Space, Qt::Key_Right});
    QTest::keyPress(edit, Qt::Key_Shift);
    Keys({Qt::Key_Right, Qt::Key_Right});
    QTest::keyRelease(edit, Qt::Key_Shift);
    Keys({Qt::Key_Right, Qt::Key_End, Qt::Key_Delete, Qt::Key_Tab, Qt::Key_Down, Qt::Key_Tab});
    EXPECT_EQ(Row(Board(), 2, 2, 6), "*****.") << "five stamps";
    EXPECT_EQ(*Board().GetTile(6, 3), (Dtile{2, 16, 1, 0}));
    EXPECT_EQ(QApplication::focusWidget(), edit) << "Tab and the arrows do not move the focus";

    // Blender, both ways, chosen on the panel.
    ClickOnPanel(kRadioBlender);
    EXPECT_EQ(vBrushMode, kBrushBlender);
    EXPECT_EQ(QApplication::focusWidget(), edit) << "the panel gives the focus back";
    Person::Click(*edit, At(10, 10));
    Keys({Qt::Key_Space, Qt::Key_Space, Qt::Key_Left, Qt::Key_Right, Qt::Key_Space});
    EXPECT_EQ(Board().GetTile(10, 10)->chr, 176);
    Keys({Qt::Key_Tab, Qt::Key_Right, Qt::Key_Left, Qt::Key_Tab});
    EXPECT_EQ(Board().GetTile(10, 10)->chr, 178);
    EXPECT_EQ(Board().GetTile(11, 10)->chr, 32);

    // Typing, with wrap and Enter.
    ClickOnPanel(kRadioText);
    Person::Click(*edit, At(77, 30));
    Person::Type(*edit, QStringLiteral("ABCDE\rF\u00e9\u263a\u4e2d"));
    EXPECT_EQ(Row(Board(), 30, 77, 3), "ABC");
    EXPECT_EQ(Row(Board(), 31, 0, 2), "DE");
    EXPECT_EQ(Row(Board(), 32, 77, 1), "F") << "back at the column of the click";
    EXPECT_EQ(Board().GetTile(78, 32)->chr, 130) << "an e with an acute accent";
    EXPECT_EQ(Board().GetTile(79, 32)->chr, 1) << "a face";
    EXPECT_EQ(app->Frame().EditView().Cursor(), (platform::Point{0, 33})) << "no such glyph";
    ClickOnPanel(kRadioBrush);

    // Picking, moving, scrolling, zooming.
    ClickOnPanel(kToProperties);
    person.OnMenu([](QMenu& menu) {
        std::vector<std::string> texts;
        for (const QAction* action : menu.actions()) texts.push_back(action->text().toStdString());
        EXPECT_THAT(texts, testing::ElementsAre("Board1", "outer", "inner", "", "&Cancel"));
        menu.setActiveAction(menu.actions()[2]);
        QTest::keyClick(&menu, Qt::Key_Return);
    });
    Person::Click(*edit, At(22, 22));
    Dobject& inner = *Board().children.front()->children.front();
    EXPECT_EQ(vWorld->currentObject, inner.id);
    Person::Drag(*edit, {At(22, 22), At(25, 26)}, Qt::RightButton);
    EXPECT_EQ(std::pair(inner.posx, inner.posy), std::pair(5, 6));
    const QPoint from = At(5, 5);
    Person::Drag(*edit, {from, from + QPoint(24, -16)}, Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(app->Frame().EditView().Scroll(), (platform::Point{3, -2}));
    QWheelEvent turn(QPointF(50, 50), edit->mapToGlobal(QPointF(50, 50)), {}, {0, 120},
                     Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(edit, &turn);
    EXPECT_EQ(app->Frame().EditView().Zoom(), 0.5f);
    ClickOnPanel(kToPaint);
    person.ChooseInMenu({"Zoom &Out"});
    Person::Click(*edit, At(7, 7), Qt::RightButton);
    EXPECT_EQ(app->Frame().EditView().Zoom(), 1.0f);

    Choose("&Set Video Mode", "320 x 240");
    Choose("&Set Video Mode", "Windowed");
    EXPECT_FALSE(Entry("&Set Video Mode", "Windowed")->isChecked());
    const std::string world = Everything();
    person.AnswerFileDialog(temp / "second");
    Choose("&File", "Save &As...");
    EXPECT_EQ(window->windowTitle().toStdString(), "second.zqlt - Tessel Works's QUILT!");
    Choose("&File", "&New");
    EXPECT_NE(Everything(), world);
    person.AnswerFileDialog(temp / "second.zqlt");
    Choose("&File", "&Open...");
    EXPECT_EQ(Everything(), world);
    EXPECT_EQ(vWorld->videoMode, 0);
    EXPECT_EQ(vWorld->windowed, 0);
    EXPECT_TRUE(Entry("&Set Video Mode", "320 x 240")->isChecked());
    Choose("&File", "&2 " + first);
    EXPECT_EQ(window->windowTitle().toStdString(), "first.zqlt - Tessel Works's QUILT!");
}

TEST_F(MainWindow, OverwritingAsksAndClosingAsks) {
    Start();
    const std::string path = PutFile(temp / "there.zqlt", "old");
    person.OnDialog([&](QDialog& dialog) {
        auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        name->setText(QString::fromStdString(path));
        QTest::keyClick(name, Qt::Key_Return);
        if (dialog.isVisible()) dialog.reject();
    });
    person.OnDialog([](QDialog& box) {
        EXPECT_STREQ(box.metaObject()->className(), "QMessageBox");
        box.reject();
    });
    Choose("&File", "&Save");
    EXPECT_EQ(std::filesystem::file_size(path), 3u);
    person.AnswerBox("Do you want to quit?", false);
    window->close();
    EXPECT_TRUE(window->isVisible());
    person.AnswerBox("Do you want to quit?", true);
    Choose("&File", "E&xit");
    EXPECT_FALSE(window->isVisible());
}

TEST_F(MainWindow, KeysAndClicksLeaveTheFocusWhereItBelongs) {
    Start();
    auto* step = &Control<QLineEdit>(kStepX);
    Person::Click(*step, {5, 5});
    step->setFocus();
    step->selectAll();
    QTest::keyClicks(step, QStringLiteral("1a-2"));
    EXPECT_EQ(step->text().toStdString(), "12") << "digits only";
    EXPECT_EQ(vStepX, 12);
    QTest::keyClick(step, Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), edit);
    step->setFocus();
    QTest::keyClick(step, Qt::Key_Escape);
    EXPECT_EQ(QApplication::focusWidget(), edit);
    step->setFocus();
    Person::Click(*list, {20, 15});
    EXPECT_EQ(QApplication::focusWidget(), edit) << "the list takes no text";

    // A drag goes on outside the window only while the view has captured the mouse.
    Person::Drag(*edit, {{50, 50}, {-30, 50}}, Qt::LeftButton);
    EXPECT_EQ(app->Frame().EditView().Cursor().x, 6);
    Person::Drag(*edit, {{50, 50}, {-30, 50}}, Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(app->Frame().EditView().Scroll().x, -10);

    // Shift let go in another window is let go.
    QTest::keyPress(edit, Qt::Key_Shift);
    step->setFocus();
    edit->setFocus();
    const platform::Point before = app->Frame().EditView().Cursor();
    Keys({Qt::Key_Right});
    int x = before.x + 1, y = before.y;
    vWorld->WorldToLocal(HandleGuard(vWorld->GetCurrentObject()), x, y);
    EXPECT_NE(Board().GetTile(x, y)->chr, vBrush.chr);
}

TEST_F(MainWindow, ANodeIsAddedNamedSizedAndMoved) {
    Start();
    person.ChooseInMenu({"&Add", "&Object"});
    person.OnDialog([](QDialog& dialog) {
        Fill(dialog, kNameText, QStringLiteral("red barn ") + QString(60, QLatin1Char('n')));
        Key(dialog, Qt::Key_Return);
    });
    Person::Click(*list, {30, 15}, Qt::RightButton);
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
    Person::Click(*list, {30, 25}, Qt::RightButton);
    Settle();
    EXPECT_EQ(std::pair(barn.width, barn.height), std::pair(12, 7)) << "digits only";
    AddObject(Board(), "yard", 0, 0);
    person.ChooseInMenu({"&Edit", "Move", Board().name, "yard", "&Here ..."});
    Person::Click(*list, {30, 25}, Qt::RightButton);
    Settle();
    EXPECT_EQ(barn.parent->name, "yard");

    // The panel's buttons, by mouse and by the letter that is underlined.
    ClickOnPanel(kToProperties);
    person.OnDialog([](QDialog& dialog) {
        Fill(dialog, kNameText, QStringLiteral("Plaza"));
        Key(dialog, Qt::Key_Escape);
    });
    ClickOnPanel(kNodeName);
    EXPECT_EQ(Board().name, "Board1");
    person.OnDialog([](QDialog& dialog) {
        Fill(dialog, kLocationZ, QStringLiteral("3"));
        Person::Click(In(dialog, platform::kIdOk), {5, 5});
    });
    window->activateWindow();
    Settle();
    QTest::keyClick(window->windowHandle(), Qt::Key_L, Qt::AltModifier);
    // A button shows that it is pressed before it acts.
    EXPECT_TRUE(QTest::qWaitFor([this] { return Board().posz == 3; }, 2000));
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([this] { return QApplication::focusWidget() == edit; }, 2000));
    EXPECT_EQ(Control(kPropViewer).accessibleDescription().toStdString(),
              "Board1, Location: 0 x 0 z 3, Size: 80 x 60, View: 80 x 60");
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
            const GlyphPixels before = ReadGlyph(33);
            Key(dialog, Qt::Key_Space);
            const GlyphPixels after = ReadGlyph(33);
            int changed = 0;
            for (std::size_t i = 0; i < 64; ++i) changed += before[i] != after[i];
            EXPECT_EQ(changed, 1) << "focus on " << id;
            EXPECT_NE(before[static_cast<std::size_t>(x)], after[static_cast<std::size_t>(x)]);
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

        In<QPushButton>(dialog, kFontNewLine).click();
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
    EXPECT_EQ(glyphs.GlyphCount(), 256) << "cancelled";

    // The saved sheet, as Qt reads it.
    const QImage image(QString::fromStdString(temp / "sheet.bmp"));
    ASSERT_EQ(image.size(), QSize(128, 136));
    for (int y = 24; y < 128; ++y)  // below the glyph that was edited
        for (int x = 0; x < 128; ++x)
            ASSERT_EQ(image.pixelIndex(x, y), getpixel(glyphs.Sheet(), x, y)) << x << ' ' << y;
}
