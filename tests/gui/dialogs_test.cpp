// The dialogs, panels and picture controls as real widgets off screen, used by mouse and keys.

#include "editor/shell/do_location.h"
#include "editor/shell/do_name.h"
#include "editor/shell/do_size.h"
#include "editor/shell/do_viewport.h"
#include "editor/shell/panel_ids.h"
#include "editor/shell/quilt_app.h"
#include "editor/tools/char_edit.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/do_color_select.h"
#include "platform/qt/picture_widget.h"
#include "platform/qt/qt_frame.h"
#include "tests/gui/person.h"

#include <gmock/gmock.h>
#include <QAbstractButton>
#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QtTest>
#include <filesystem>

namespace {

class Dialogs : public testing::Test {
protected:
    void SetUp() override {
        app = std::make_unique<CQuiltApp>();
        ASSERT_TRUE(app->InitInstance(std::filesystem::current_path().string(), ""));
        window = static_cast<QtFrame*>(&app->Frame().Window());
        window->activateWindow();
        Settle();
        edit = window->findChild<QWidget*>(QStringLiteral("edit"));
        list = window->findChild<QWidget*>(QStringLiteral("list"));
    }
    void TearDown() override { app.reset(); }

    // Long enough for repaints, and for the person to see that a dialog has closed.
    static void Settle() { QTest::qWait(30); }
    // Who has the keyboard once the main window is the active one again.
    QWidget* FocusBehindDialog() {
        window->activateWindow();
        Settle();
        return QApplication::focusWidget();
    }
    QWidget* OnPanel(int id) { return Find(*window, id); }
    static QWidget* Find(QWidget& in, int id) {
        auto* found = in.findChild<QWidget*>(QString::number(id));
        EXPECT_NE(found, nullptr) << id;
        return found;
    }
    static void Press(QWidget& dialog, Qt::Key code) {
        QWidget* focus = dialog.focusWidget();
        QTest::keyClick(focus ? focus : &dialog, code);
    }
    static void Fill(QWidget& dialog, int id, const QString& text) {
        auto* field = static_cast<QLineEdit*>(Find(dialog, id));
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, text);
    }
    static std::string TextOf(QWidget& dialog, int id) {
        return static_cast<QLineEdit*>(Find(dialog, id))->text().toStdString();
    }
    // The palette's colour at a pixel of a widget.
    static QRgb At(QWidget& widget, int x, int y) {
        return widget.grab().toImage().pixel(x, y) & 0xffffff;
    }
    static QRgb Color(int index) {
        return vScreenColors[static_cast<std::size_t>(index)] & 0xffffff;
    }
    Dobject& Board() { return *vWorld->Root().children.front(); }
    void RightClickRow(int row) { Person::Click(*list, {30, row * 10 + 5}, Qt::RightButton); }

    Person person;
    std::unique_ptr<CQuiltApp> app;
    QtFrame* window = nullptr;
    QWidget* edit = nullptr;
    QWidget* list = nullptr;
};

}  // namespace

TEST_F(Dialogs, BrushSettingsByKeysAlone) {
    vBrush = {66, 20, 30, 0};
    person.OnDialog([](QDialog& dialog) {
        const auto tab = [&] { Person::Press(*dialog.focusWidget(), Qt::Key_Tab); };
        const auto press = [&](std::initializer_list<Qt::Key> keys) {
            for (Qt::Key code : keys) Person::Press(*dialog.focusWidget(), code);
        };
        ASSERT_EQ(dialog.focusWidget(), Find(dialog, kBrushChar));
        const QRgb frame = dialog.palette().color(QPalette::Highlight).rgb() & 0xffffff;
        EXPECT_EQ(At(*dialog.focusWidget(), 0, 0), frame) << "the focus is seen";
        press({Qt::Key_Right, Qt::Key_Down});
        tab();
        EXPECT_NE(At(*Find(dialog, kBrushChar), 0, 0), frame);
        press({Qt::Key_Down});
        tab();
        press({Qt::Key_Left, Qt::Key_Left});
        tab();
        press({Qt::Key_Right});  // the attribute
        Settle();
        EXPECT_EQ(TextOf(dialog, kBrushNumbers), "83 36 28 1");
        press({Qt::Key_Return});
    });
    Person::Click(*OnPanel(kBrushPreview), {5, 5});
    EXPECT_EQ(vBrush, (Brush{83, 36, 28, 1}));
}

TEST_F(Dialogs, BrushSettingsByMouse) {
    const auto choose = [](Qt::Key end) {
        return [end](QDialog& dialog) {
            QWidget& fg = *Find(dialog, kBrushFg);
            QWidget& bg = *Find(dialog, kBrushBg);
            QWidget& glyphs = *Find(dialog, kBrushChar);
            QWidget& preview = *Find(dialog, kBrushSwatch);
            for (int color : {1, 99, 254})
                EXPECT_EQ(At(fg, color % 16 * 11 + 5, color / 16 * 10 + 5), Color(color));
            EXPECT_EQ(At(fg, 15 * 11, 0), Color(15 ^ 15)) << "white is marked";
            EXPECT_EQ(fg.accessibleDescription().toStdString(), "Colour 15");
            Person::Drag(fg, {{5, 5}, {40 * 11 % 176 + 5, 25}}, Qt::LeftButton);
            Person::Click(bg, {16, 5});
            Person::Click(glyphs, {3 * 16 + 8, 13 * 16 + 8});
            Settle();
            EXPECT_EQ(vBrush, (Brush{219 - 8, 40, 1, 0}));
            Person::Click(glyphs, {11 * 16 + 8, 13 * 16 + 8});
            Settle();
            EXPECT_EQ(TextOf(dialog, kBrushNumbers), "219 40 1 0");
            EXPECT_EQ(At(preview, 20, 20), Color(40)) << "a full block";
            EXPECT_EQ(At(glyphs, 11 * 16 + 3, 13 * 16 + 3),
                      Color(vWorld->GetFont()->GetGlyphPixel(219, 1, 1)));
            Person::Click(*Find(dialog, kBrushAttrib + 2), {8, 8});
            Person::Click(*Find(dialog, kBrushSprite), {5, 5});
            Settle();
            EXPECT_EQ(TextOf(dialog, kBrushNumbers), "219 -2 1 2");
            // Two tiles to the left; the drag goes on outside the control.
            Person::Drag(glyphs, {{5, 100}, {-11, 100}}, Qt::LeftButton, Qt::ControlModifier);
            Press(dialog, end);
        };
    };
    const Brush before = vBrush;
    QWidget& preview = *OnPanel(kBrushPreview);
    person.OnDialog(choose(Qt::Key_Escape));
    Person::Click(preview, {5, 5});
    EXPECT_EQ(vBrush, before);
    EXPECT_EQ(FocusBehindDialog(), edit);
    Settle();
    person.OnDialog(choose(Qt::Key_Return));
    Person::Click(preview, {5, 5});
    EXPECT_EQ(vBrush, (Brush{219, -2, 1, 2}));
    Settle();
    EXPECT_EQ(FocusBehindDialog(), edit);
    EXPECT_EQ(At(preview, 9, 9), Color(vWorld->GetFont()->GetGlyphPixel(219, 4, 4)));
    EXPECT_EQ(preview.accessibleDescription().toStdString(), "Glyph 219, a sprite, attribute 2");
}

TEST_F(Dialogs, ColorSelectByKeys) {
    vBrush.fg = 15;
    person.OnDialog([](QDialog& dialog) {
        for (Qt::Key code : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Left}) Press(dialog, code);
        Settle();
        QWidget& grid = *Find(dialog, kColorGrid);
        EXPECT_EQ(At(grid, 15 * 11, 10), Color(31 ^ 15));
        EXPECT_EQ(At(grid, 16, 15), Color(17));
        Press(dialog, Qt::Key_Return);
    });
    DoColorSelect().Run();
    EXPECT_EQ(vBrush.fg, 31);
}

TEST_F(Dialogs, TheGlyphEditorShowsItsPixels) {
    CharEdit editor;
    vBrush.chr = 5;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) vWorld->GetFont()->PutGlyphPixel(5, x, y, x < 4 ? 0 : 40 + y);
    PictureWidget widget(nullptr, &editor);
    editor.Attach(&widget);
    widget.resize(256, 256);
    widget.show();
    Settle();
    EXPECT_EQ(At(widget, 6 * 32 + 16, 3 * 32 + 16), Color(43));
    EXPECT_EQ(At(widget, 2 * 32 + 12, 3 * 32 + 12), Color(15)) << "a tick";
    EXPECT_EQ(At(widget, 2 * 32 + 28, 3 * 32 + 4), Color(0));
    Person::Drag(widget, {{10, 10}, {400, 70}}, Qt::LeftButton);
    EXPECT_EQ(editor.Cursor(), (platform::Point{7, 2}));
}

TEST_F(Dialogs, ANodeIsAddedNamedAndSizedFromTheList) {
    // Chooses by the keyboard, from menu to sub-menu.
    const auto enter = [](const std::vector<std::string>& texts) {
        return [texts](QMenu& menu) {
            QMenu* open = &menu;
            for (const std::string& text : texts) {
                QAction* entry = Person::EntryOf(*open, text);
                if (!entry) return menu.close(), void();
                open->setActiveAction(entry);
                QTest::keyClick(open, entry->menu() ? Qt::Key_Right : Qt::Key_Return);
                open = entry->menu();
            }
        };
    };
    person.OnMenu(enter({"&Add", "&Object"}));
    person.OnDialog([](QDialog& dialog) {
        Fill(dialog, kNameText, QStringLiteral("red barn ") + QString(60, QLatin1Char('n')));
        EXPECT_EQ(TextOf(dialog, kNameText).size(), 50u);
        Fill(dialog, kNameText, QStringLiteral("red barn"));
        Press(dialog, Qt::Key_Return);
    });
    RightClickRow(1);
    const Dobject& barn = *Board().children.front();
    EXPECT_EQ(barn.name, "red_barn");
    EXPECT_EQ(vWorld->currentObject, barn.id);

    Settle();
    person.OnMenu(enter({"&Size"}));
    person.OnDialog([this](QDialog& dialog) {
        Fill(dialog, kSizeW, QStringLiteral("-1a2"));
        EXPECT_EQ(TextOf(dialog, kSizeW), "12") << "digits only";
        Fill(dialog, kSizeH, QStringLiteral("0"));
        person.AnswerBox("between 1 and 32767");
        Press(dialog, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(dialog.focusWidget(), Find(dialog, kSizeH));
        EXPECT_EQ(static_cast<QLineEdit*>(dialog.focusWidget())->selectedText().toStdString(), "0");
        QTest::keyClicks(dialog.focusWidget(), QStringLiteral("7"));
        Press(dialog, Qt::Key_Return);
    });
    RightClickRow(2);
    EXPECT_EQ(std::pair(barn.width, barn.height), std::pair(12, 7));
    EXPECT_EQ(std::pair(barn.vieww, barn.viewh), std::pair(12, 7));
    Settle();
    EXPECT_EQ(list->accessibleDescription().toStdString(), "Object red_barn, z 0, in Board1");
    EXPECT_EQ(list->accessibleName().toStdString(), "Board / Object List");

    // Into another object, through the nested menus.
    vWorld->NewObject(HandleGuard(vWorld->GetParent(HandleGuard(vWorld->GetCurrentObject()))), 0,
                      0);
    vWorld->SetName(HandleGuard(vWorld->GetCurrentObject()), "yard");
    person.OnMenu(enter({"&Edit", "Move", Board().name, "yard", "&Here ..."}));
    RightClickRow(2);
    EXPECT_EQ(barn.parent->name, "yard");
}

TEST_F(Dialogs, ThePropertiesPanelOpensItsDialogsAndGivesTheFocusBack) {
    Person::Click(*OnPanel(kToProperties), {5, 5});
    Settle();
    EXPECT_EQ(At(*OnPanel(kPropViewer), 2, 2), Color(255));
    person.OnDialog([](QDialog& dialog) {
        Fill(dialog, kNameText, QStringLiteral("Plaza"));
        Press(dialog, Qt::Key_Return);
    });
    Person::Click(*OnPanel(kNodeName), {5, 5});
    Settle();
    EXPECT_EQ(Board().name, "Plaza");
    EXPECT_EQ(FocusBehindDialog(), edit);
    EXPECT_EQ(OnPanel(kPropViewer)->accessibleDescription().toStdString(),
              "Plaza, Location: 0 x 0 z 0, Size: 80 x 60, View: 80 x 60");
    bool inked = false;
    const QImage shown = OnPanel(kPropViewer)->grab().toImage();
    for (int x = 8; x < 48; ++x)
        for (int y = 8; y < 16; ++y) inked |= (shown.pixel(x, y) & 0xffffff) == Color(15);
    EXPECT_TRUE(inked) << "the name stands in the second row of tiles";

    Settle();
    person.OnDialog([](QDialog& dialog) {
        Fill(dialog, kViewportW, QStringLiteral("20"));
        Press(dialog, Qt::Key_Tab);
        EXPECT_EQ(dialog.focusWidget(), Find(dialog, kViewportH));
        Press(dialog, Qt::Key_Escape);
    });
    Person::Click(*OnPanel(kNodeViewport), {5, 5});
    EXPECT_EQ(Board().vieww, 80);
    EXPECT_EQ(FocusBehindDialog(), edit);
    person.OnDialog([](QDialog& dialog) {
        Fill(dialog, kLocationZ, QStringLiteral("3"));
        Person::Click(*Find(dialog, platform::kIdOk), {5, 5});
    });
    QTest::keyClick(window->windowHandle(), Qt::Key_L, Qt::AltModifier);
    // A button shows that it is pressed before it acts.
    EXPECT_TRUE(QTest::qWaitFor([this] { return Board().posz == 3; }, 2000));
    EXPECT_EQ(FocusBehindDialog(), edit);
    EXPECT_TRUE(OnPanel(kNodeProgramming)->isEnabled());
}
