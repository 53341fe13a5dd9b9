// What the real window alone shows: which control hears a key, menus and dialogs by keys, and what
// the window system adds of its own.

#include "tests/gui/main_window.h"

#include "editor/script/do_programming.h"
#include "editor/shell/do_location.h"
#include "editor/shell/do_name.h"
#include "editor/shell/do_size.h"
#include "editor/shell/panel_ids.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/do_font_edit.h"
#include "editor/view/brush.h"
#include "engine/report.h"
#include "tests/support/random_world.h"

#include <QMessageBox>
#include <QSlider>
#include <QStatusBar>

TEST_F(MainWindow, KeysAndClicksLeaveTheFocusWhereItBelongs) {
    Start();
    auto& step = Control<QLineEdit>(kStepX);
    const std::function<void()> back[] = {
        [] {},
        [this] {
            for (Qt::Key code : {Qt::Key_Tab, Qt::Key_Down, Qt::Key_Tab}) Press(*edit, code);
        },
        [this] { ClickOnPanel(kRadioBlender); },
        [&] { Press(step, Qt::Key_Return); },
        [&] { Press(step, Qt::Key_Escape); },
        [this] {
            Click(*list, {20, 15});
        },
    };
    for (const auto& act : back) {
        if (&act > back + 1) step.setFocus();
        act();
        EXPECT_EQ(QApplication::focusWidget(), edit) << &act - back;
    }
    step.setFocus();
    step.selectAll();
    Type(step, QStringLiteral("1a-2"));
    EXPECT_EQ(step.text().toStdString(), "12") << "digits only";
    Click(step, {5, 5});
    EXPECT_EQ(QApplication::focusWidget(), &step);
    person.OnDialog([](QDialog& dialog) { dialog.close(); });
    Press(step, Qt::Key_C, Qt::ControlModifier);
    window->activateWindow();
    Settle();

    // The letter that is underlined presses a button; it shows that it is pressed before it acts.
    ClickOnPanel(kToProperties);
    person.OnDialog([](QDialog& dialog) {
        Fill(dialog, kLocationZ, QStringLiteral("3"));
        Click(In(dialog, platform::kIdOk), {5, 5});
    });
    QTest::keyClick(window->windowHandle(), Qt::Key_L, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Board().posz == 3; }));
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([this] { return QApplication::focusWidget() == edit; }));
}

TEST_F(MainWindow, TheMenuBarsLettersAreItsOwn) {
    Start();
    for (const int panel : {int{kToProperties}, int{kToPaint}}) {
        for (const Qt::Key letter : {Qt::Key_F, Qt::Key_S, Qt::Key_V, Qt::Key_H, Qt::Key_F}) {
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
        }
        ClickOnPanel(panel);
    }
}

TEST_F(MainWindow, FilesAreChosenInDialogs) {
    Start();
    // Typed in the view, as the menus show it, and as any sane editor of text takes it.
    ClickOnPanel(kRadioText);
    Click(*edit, At(77, 30));
    Type(*edit, QStringLiteral("AB"));
    Compose(*edit, QStringLiteral("\u00e9"));
    EXPECT_EQ(Board().GetTile(79, 30)->chr, 130);
    Choose("&Set Video Mode", "320 x 240");
    const std::string world = Account(*vWorld);
    person.AnswerFileDialog(temp / "game");
    Choose("&File", "Save &As...");
    const auto& line = *window->statusBar()->findChild<QLabel*>();
    EXPECT_TRUE(line.text().startsWith(QLatin1String("Saved ")));
    Press(*edit, Qt::Key_Right);
    EXPECT_TRUE(line.text().startsWith(QLatin1String("Use arrow keys")));
    for (const bool recent : {false, true}) {
        Choose("&File", "&New");
        EXPECT_NE(Account(*vWorld), world);
        if (!recent) person.AnswerFileDialog(temp / "game.zqlt");
        Choose("&File", recent ? "&1 " + temp / "game.zqlt" : "&Open...");
        EXPECT_EQ(Account(*vWorld), world);
    }
    EXPECT_EQ(window->windowTitle().toStdString(), "game.zqlt - Tessel Works's QUILT!");

    // Overwriting asks, and so does closing.
    const std::string path = PutFile(temp / "there.zqlt", "no archive");
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

    // Long work has its pointer, but not in a box.
    static bool waited = false;
    person.OnDialog([&](QDialog& box) {
        EXPECT_FALSE(QGuiApplication::overrideCursor());
        // With room for the buttons of the frame.
        EXPECT_GT(box.width(), box.fontMetrics().horizontalAdvance(box.windowTitle()) + 100);
        box.accept();
    });
    CaptureTrace([](const char*) { waited |= QGuiApplication::overrideCursor() != nullptr; });
    EXPECT_FALSE(app->Document().OnOpenDocument(path));
    CaptureTrace(nullptr);
    EXPECT_TRUE(waited);
    EXPECT_FALSE(QGuiApplication::overrideCursor());
}

TEST_F(MainWindow, ANodeIsAddedNamedSizedAndMovedByTheKeyboard) {
    Start();
    const auto onList = [this](int y) {
        Click(*list, {30, y}, Qt::RightButton);
        Settle();
    };
    person.ChooseInMenu({"&Add", "&Object"});
    person.OnDialog([](QDialog& dialog) {
        Fill(dialog, kNameText, QStringLiteral("red barn ") + QString(60, QLatin1Char('n')));
        Key(dialog, Qt::Key_Return);
    });
    onList(15);
    const Dobject& barn = *Board().children.front();
    EXPECT_EQ(barn.name, "red_barn_" + std::string(41, 'n'));
    person.ChooseInMenu({"&Size"});
    person.OnDialog([this](QDialog& dialog) {
        Fill(dialog, kSizeW, QStringLiteral("-1a2"));
        Key(dialog, Qt::Key_Tab);
        Type(*dialog.focusWidget(), QStringLiteral("0"));
        person.AnswerBox("between 1 and 32767");
        Key(dialog, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        // In the place of the faulty number, which is selected.
        Type(*dialog.focusWidget(), QStringLiteral("7\n"));
    });
    onList(25);
    EXPECT_EQ(std::pair(barn.width, barn.height), std::pair(12, 7));
    Board().Spawn(vWorld->TakeId(), 0)->Create("yard", 4, 3);
    person.ChooseInMenu({"&Edit", "Move", Board().name, "yard", "&Here ..."});
    onList(25);
    EXPECT_EQ(barn.parent->name, "yard");

    // The menu key opens the tools at the cursor.
    Click(*edit, At(5, 5));
    person.OnMenu([this](QMenu& menu) {
        const QRect cursor(edit->mapToGlobal(At(5, 5)) - QPoint(8, 8), QSize(17, 17));
        EXPECT_TRUE(cursor.contains(menu.pos()));
        menu.close();
    });
    Press(*edit, Qt::Key_Menu);

    // A menu higher than the screen scrolls.
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
    onList(25);
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
        const auto corner = [](QWidget& widget) { return widget.grab().toImage().pixel(0, 0); };
        QWidget& glyphs = In(dialog, kBrushChar);
        ASSERT_EQ(dialog.focusWidget(), &glyphs);
        const QRgb frame = dialog.palette().color(QPalette::Highlight).rgb();
        EXPECT_EQ(corner(glyphs), frame) << "the focus is seen";
        Key(dialog, {Qt::Key_Right, Qt::Key_Down, Qt::Key_Tab});
        EXPECT_NE(corner(glyphs), frame);
        Key(dialog,
            {Qt::Key_Down, Qt::Key_Tab, Qt::Key_Left, Qt::Key_Left, Qt::Key_Tab, Qt::Key_Right});
        Settle();
        EXPECT_EQ(In<QLineEdit>(dialog, kBrushNumbers).text().toStdString(), "83 36 28 1");
        // A click gives a picker the keys.
        QTest::mouseClick(&In(dialog, kBrushBg), Qt::LeftButton, {}, {1, 1});
        Key(dialog, {Qt::Key_Right, Qt::Key_Return});
    });
    ClickOnPanel(kBrushPreview);
    EXPECT_EQ(vBrush, (Brush{83, 36, 1, 1}));
    // Unforeseen, a dialog would fail the test.
    Drag(Control(kBrushPreview), {{5, 8}, {5, -200}}, Qt::LeftButton);
    Settle();
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
            Key(dialog, {Qt::Key_Space, Qt::Key_Return, Qt::Key_Right});
            EXPECT_NE(glyphs.GetGlyphPixel(33, x, 0), before) << "focus on " << id;
            EXPECT_EQ(vBrush.fg, glyphs.GetGlyphPixel(33, x, 0));
            EXPECT_TRUE(dialog.isVisible()) << "Enter does not press OK";
            ++x;
        }
        EXPECT_EQ(In<QSlider>(dialog, kFontSlider).value(), 0) << "the arrows are the cursor's";
        person.OnDialog([](QDialog& colors) {
            EXPECT_EQ(colors.windowTitle().toStdString(), "Color Select");
            PressOk(colors);
        });
        Key(dialog, Qt::Key_C);
        person.AnswerFileDialog(temp / "sheet");
        Person::EntryOf(*dialog.findChild<QMenuBar*>()->actions().front()->menu(), "&Save")
            ->trigger();
        EXPECT_FALSE(FileBytes(temp / "sheet.bmp").empty());
        PressOk(dialog);
    });
    Choose("&View", "&Font Edit");
}
