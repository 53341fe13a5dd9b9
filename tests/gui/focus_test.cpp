// Which control hears a key, and what the window system adds of its own to windows and menus.

#include "editor/script/do_programming.h"
#include "editor/shell/do_name.h"
#include "editor/shell/panel_ids.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/view/brush.h"
#include "tests/gui/main_window.h"

#include <QAbstractButton>
#include <QScreen>

TEST_F(MainWindow, EnterPressesTheButtonWithTheFocusElseTheDefaultOne) {
    Start();
    const std::string before = Board().name;
    for (const int focus : {platform::kIdCancel, int{kNameText}}) {
        person.OnDialog([focus](QDialog& dialog) {
            Fill(dialog, kNameText, QStringLiteral("other"));
            In(dialog, focus).setFocus();
            Key(dialog, Qt::Key_Return);
        });
        DoName().Run();
        EXPECT_EQ(Board().name, focus == kNameText ? "other" : before);
    }
    person.OnDialog([this](QDialog& dialog) {
        person.ChooseInMenu({"&Cancel"});
        In(dialog, kChangeFont).setFocus();
        Key(dialog, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        In<QAbstractButton>(dialog, platform::kIdOk).click();
    });
    DoProgramming().Run();
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
            QTest::keyClick(window->menuBar(), Qt::Key_Escape);
            EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::focusWidget() == edit; }));
        }
        ClickOnPanel(panel);
    }
}

TEST_F(MainWindow, AClickGivesAPickerTheArrowKeys) {
    Start();
    vBrush = {66, 20, 30, 0};
    person.OnDialog([](QDialog& dialog) {
        QWidget& background = In(dialog, kBrushBg);
        QTest::mouseClick(&background, Qt::LeftButton, {}, {1, 1});
        EXPECT_EQ(dialog.focusWidget(), &background);
        Key(dialog, Qt::Key_Right);
        Key(dialog, Qt::Key_Return);
    });
    ClickOnPanel(kBrushPreview);
    EXPECT_EQ(vBrush, (Brush{66, 20, 1, 0}));
    // Unforeseen, a dialog would fail the test.
    Drag(Control(kBrushPreview), {{5, 8}, {5, -200}}, Qt::LeftButton);
    Settle();
}

TEST_F(MainWindow, AStepBoxLeavesTheMenuItsKeys) {
    Start();
    Control(kStepX).setFocus();
    person.OnDialog([](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle().toStdString(), "Object ClipBoard");
        dialog.close();
    });
    QTest::keyClick(&Control(kStepX), Qt::Key_C, Qt::ControlModifier);
    Settle();
}

TEST_F(MainWindow, ANameThatNobodyEditsStays) {
    Start();
    for (const std::string& name : {std::string(60, 'n'),
                                    std::string("\xff"
                                                "bad"),
                                    std::string("plain")}) {
        for (const bool edits : {false, true}) {
            Board().name = name;
            person.OnDialog([edits](QDialog& dialog) {
                Key(dialog, Qt::Key_Home);
                if (edits) Key(dialog, Qt::Key_Delete);
                Key(dialog, Qt::Key_Return);
            });
            DoName().Run();
            EXPECT_EQ(Board().name == name, !edits) << name;
        }
    }
}

TEST_F(MainWindow, AMenuHigherThanTheScreenScrolls) {
    Start();
    for (int i = 0; i < 900; ++i)
        Board().Spawn(vWorld->TakeId(), 0)->Create(std::string(57, 'n') + std::to_string(i), 1, 1);
    app->Frame().RedrawAll();
    person.OnMenu([](QMenu& menu) {
        QMenu* open = &menu;
        for (const int entry : {1, 1, 0}) {
            open->setActiveAction(open->actions()[entry]);
            QTest::keyClick(open, Qt::Key_Right);
            open = open->actions()[entry]->menu();
        }
        EXPECT_EQ(open->actions().size(), 901);
        EXPECT_LE(open->height(), open->screen()->size().height());
        EXPECT_LE(open->width(), open->screen()->size().width());
        QTest::keyClick(open, Qt::Key_Up);
        QTest::keyClick(open, Qt::Key_Up);
        EXPECT_TRUE(open->rect().contains(open->actionGeometry(open->activeAction())));
        menu.close();
    });
    Click(*list, {30, 25}, Qt::RightButton);
}

TEST_F(MainWindow, ABoxIsAsWideAsItsTitle) {
    const std::string title(30, 'm');
    person.OnDialog([&](QDialog& box) {
        // With room for the buttons of the frame.
        EXPECT_GT(box.width(), box.fontMetrics().horizontalAdvance(box.windowTitle()) + 100);
        box.accept();
    });
    vPlatform->MessageBox("x", title, platform::Buttons::Ok, platform::Icon::None);
}
