// What the real window alone shows: which control hears a key, menus and dialogs by keys, and what
// the window system adds of its own.

#include "tests/gui/main_window.h"

#include "editor/script/do_programming.h"
#include "editor/shell/do_location.h"
#include "editor/shell/do_name.h"
#include "editor/shell/panel_ids.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/do_font_edit.h"
#include "editor/view/brush.h"
#include "tests/support/random_world.h"

#include <QMessageBox>

TEST_F(MainWindow, KeysAndClicksLeaveTheFocusWhereItBelongs) {
    Start();
    auto& step = Control<QLineEdit>(kStepX);
    const auto isBack = [this] { return QApplication::focusWidget() == edit; };
    Press(*edit, Qt::Key_Tab);
    for (const int act : {0, 1, 2, 3, 4}) {
        if (act == 1) ClickOnPanel(kRadioBlender);
        if (act == 2) Press(step, Qt::Key_Return);
        if (act == 3) Press(step, Qt::Key_Escape);
        if (act == 4) Click(*list, {20, 15});
        EXPECT_TRUE(isBack()) << act;
        step.setFocus();
    }
    step.selectAll();
    Type(step, QStringLiteral("1a-2"));
    EXPECT_EQ(step.text().toStdString(), "12") << "digits only";
    person.OnDialog([](QDialog& dialog) { dialog.close(); });
    Press(step, Qt::Key_C, Qt::ControlModifier);
    window->activateWindow();
    Settle();

    // The letter that is underlined presses a button; it shows that it is pressed before it acts.
    // What is refused is selected, so that typing takes its place.
    ClickOnPanel(kToProperties);
    person.OnDialog([this](QDialog& dialog) {
        Fill(dialog, kLocationZ, QStringLiteral("2147483648"));
        person.AnswerBox("Please enter an integer.");
        Key(dialog, Qt::Key_Return);
        Type(*dialog.focusWidget(), QStringLiteral("3"));
        Click(In(dialog, platform::kIdOk), {5, 5});
    });
    QTest::keyClick(window->windowHandle(), Qt::Key_L, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Board().posz == 3; }));
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor(isBack));
}

TEST_F(MainWindow, TheMenuBarsLettersAreItsOwn) {
    Start();
    for (const Qt::Key letter : {Qt::Key_F, Qt::Key_S, Qt::Key_V, Qt::Key_H}) {
        QString title;
        person.OnMenu([&](QMenu& menu) {
            title = menu.title();
            menu.close();
        });
        QTest::keyClick(window->windowHandle(), letter, Qt::AltModifier);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !title.isEmpty(); }));
        EXPECT_EQ(title.at(1).unicode(), letter);
        Press(*window->menuBar(), Qt::Key_Escape);
        EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::focusWidget() == edit; }));
        if (letter == Qt::Key_S) ClickOnPanel(kToProperties);
    }
}

TEST_F(MainWindow, FilesAreChosenInDialogs) {
    Start();
    Board().PutTile(5, 5, 1, 2, 3, 0);
    const std::string world = Account(*vWorld), path = temp / "game.zqlt";
    person.AnswerFileDialog(temp / "game");
    Choose("&File", "Save &As...");
    for (const bool recent : {false, true}) {
        Choose("&File", "&New");
        EXPECT_NE(Account(*vWorld), world);
        if (!recent) person.AnswerFileDialog(path);
        Choose("&File", recent ? "&1 " + path : "&Open...");
        EXPECT_EQ(Account(*vWorld), world);
    }
    EXPECT_EQ(window->windowTitle().toStdString(), "game.zqlt - Tessel Works's QUILT!");

    // Overwriting asks, and so does closing.
    PutFile(path, "no archive");
    person.OnDialog([&](QDialog& dialog) {
        person.OnDialog([](QDialog& box) { dynamic_cast<QMessageBox&>(box).reject(); });
        Person::AnswerWith(dialog, path);
        dialog.reject();
    });
    Choose("&File", "Save &As...");
    EXPECT_EQ(FileBytes(path), "no archive");
    for (const bool sure : {false, true}) {
        EXPECT_TRUE(window->isVisible());
        person.AnswerBox("Do you want to quit?", sure);
        sure ? Choose("&File", "E&xit") : void(window->close());
    }
    EXPECT_FALSE(window->isVisible());
}

TEST_F(MainWindow, AMenuHigherThanTheScreenScrolls) {
    Start();
    for (int i = 0; i < 900; ++i)
        Board().Spawn(vWorld->TakeId(), 0)->Create(std::string(57, 'n'), 1, 1);
    person.OnMenu([](QMenu& menu) {
        QMenu* open = &menu;
        for (const int entry : {1, 1, 0}) {
            open->setActiveAction(open->actions()[entry]);
            Press(*open, Qt::Key_Right);
            open = open->actions()[entry]->menu();
        }
        EXPECT_LE(open->height(), open->screen()->size().height());
        Press(*open, Qt::Key_Up);
        EXPECT_TRUE(open->rect().contains(open->actionGeometry(open->activeAction())));
        menu.close();
    });
    Click(*list, {30, 25}, Qt::RightButton);
    Settle();
}

TEST_F(MainWindow, EnterPressesTheButtonWithTheFocusElseTheDefaultOne) {
    Start();
    const std::string odd = "\xff" + std::string(60, 'n');
    for (const int focus : {platform::kIdCancel, int{kNameText}, 0}) {
        Board().name = odd;
        person.OnDialog([focus](QDialog& dialog) {
            if (focus) Fill(dialog, kNameText, QStringLiteral("other"));
            if (focus) In(dialog, focus).setFocus();
            Key(dialog, {Qt::Key_Home, Qt::Key_Return});
        });
        DoName().Run();
        EXPECT_EQ(Board().name, focus == kNameText ? "other" : odd) << "as nobody edits it";
    }
    person.OnDialog([this](QDialog& dialog) {
        person.ChooseInMenu({"&Cancel"});
        In(dialog, kChangeFont).setFocus();
        Key(dialog, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        PressOk(dialog);
    });
    DoProgramming().Run();
}

TEST_F(MainWindow, ABrushIsChosenByKeysAlone) {
    Start();
    vBrush = {66, 20, 30, 0};
    person.OnDialog([](QDialog& dialog) {
        QWidget& glyphs = In(dialog, kBrushChar);
        for (const bool focus : {true, false}) {
            EXPECT_EQ(glyphs.grab().toImage().pixel(0, 0) ==
                          dialog.palette().color(QPalette::Highlight).rgb(),
                      focus);
            Key(dialog, {Qt::Key_Right, Qt::Key_Down, Qt::Key_Tab});
        }
        Key(dialog, {Qt::Key_Tab, Qt::Key_Right});
        // A click gives a picker the keys.
        QTest::mouseClick(&In(dialog, kBrushBg), Qt::LeftButton, {}, {1, 1});
        Key(dialog, {Qt::Key_Right, Qt::Key_Return});
    });
    ClickOnPanel(kBrushPreview);
    EXPECT_EQ(vBrush, (Brush{83, 37, 1, 1}));
    // Unforeseen, a dialog would fail the test.
    Drag(Control(kBrushPreview), {{5, 8}, {5, -200}}, Qt::LeftButton);
    Settle();
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
        PressOk(dialog);
    });
    Choose("&View", "&Font Edit");
}
