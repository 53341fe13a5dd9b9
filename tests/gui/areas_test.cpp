// The area tools through both pop-up menus of the real main window, dialogs included.

#include "editor/shell/panel_ids.h"
#include "editor/shell/quilt_app.h"
#include "editor/tools/fade_dialog.h"
#include "editor/view/brush.h"
#include "editor/view/tile_clip.h"
#include "tests/gui/person.h"

#include <gmock/gmock.h>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QtTest>
#include <filesystem>

namespace {

class Areas : public testing::Test {
protected:
    Areas() {
        EXPECT_TRUE(app.InitInstance(std::filesystem::current_path().string(), ""));
        QApplication::processEvents();
        for (QWidget* widget : QApplication::allWidgets())
            if (widget->objectName() == QLatin1String("edit")) edit = widget;
        vBrush = {'A', 14, 2, 1};
    }

    static QPoint At(int x, int y) { return {x * 8 + 4, y * 8 + 4}; }
    Dobject& Board() { return *vWorld->Root().children.front(); }
    const Dtile& Tile(int x, int y) { return *Board().GetTile(x, y); }
    // Drags a box and chooses down a path of menu texts by the keyboard's way.
    void Run(QPoint from, QPoint to, std::vector<std::string> path,
             std::function<void(QDialog&)> inDialog = {},
             Qt::KeyboardModifiers with = Qt::NoModifier) {
        person.OnMenu([path](QMenu& menu) {
            QMenu* at = &menu;
            for (const std::string& text : path) {
                QAction* entry = Person::EntryOf(*at, text);
                if (!entry) return menu.close(), void();
                EXPECT_TRUE(entry->isEnabled()) << text;
                if (QMenu* sub = entry->menu()) {
                    emit sub->aboutToShow();  // which fills it
                    at = sub;
                } else
                    entry->trigger();
            }
            menu.close();
        });
        if (inDialog) person.OnDialog(std::move(inDialog));
        Person::Drag(*edit, {from, to}, Qt::RightButton, with);
    }
    void RunPrimitive(QPoint from, QPoint to, std::vector<std::string> path) {
        Run(from, to, std::move(path), {}, Qt::ControlModifier);
    }
    static std::function<void(QDialog&)> Pressing(int id) {
        return
            [id](QDialog& dialog) { dialog.findChild<QPushButton*>(QString::number(id))->click(); };
    }
    // How many tiles of a box hold that glyph.
    int Count(int chr, int x, int y, int w, int h) {
        int count = 0;
        for (int i = 0; i < w * h; ++i) count += Tile(x + i % w, y + i / w).chr == chr;
        return count;
    }

    Person person;
    CQuiltApp app;
    QWidget* edit = nullptr;
};

}  // namespace

TEST_F(Areas, FillsFloodsAndRestores) {
    const QImage before = edit->grab().toImage();
    Run(At(5, 5), At(9, 7), {"&Fill"});
    EXPECT_EQ(Count('A', 0, 0, 80, 60), 15);
    const QImage after = edit->grab().toImage();
    EXPECT_NE(after.copy(40, 40, 40, 24), before.copy(40, 40, 40, 24));
    EXPECT_EQ(after.copy(200, 200, 99, 99), before.copy(200, 200, 99, 99));
    vBrush.chr = 'B';
    Run(At(6, 6), At(6, 6), {"F&lood", "&Fill"});
    EXPECT_EQ(Count('B', 5, 5, 5, 3), 15);
    // The snapshot is that of the last tool alone.
    QWidget* restore = nullptr;
    for (QWidget* widget : QApplication::allWidgets())
        if (widget->objectName() == QString::number(kRestoreBackup)) restore = widget;
    ASSERT_NE(restore, nullptr);
    Person::Click(*restore, {5, 5});
    EXPECT_EQ(Count('A', 5, 5, 5, 3), 15);
}

TEST_F(Areas, DialogsPaintOnOkAndLeaveAllOnCancel) {
    const std::vector<Dtile> start = Board().tiles;
    Run(At(2, 2), At(11, 11), {"Fa&de", "&Normal"}, Pressing(platform::kIdCancel));
    EXPECT_EQ(Board().tiles, start);

    Run(At(2, 2), At(11, 11), {"Fa&de", "&Normal"}, [](QDialog& dialog) {
        auto* blend = dialog.findChild<QSlider*>(QString::number(kFadeBlendSlider));
        auto* name = dialog.findChild<QLineEdit*>(QString::number(kFadeBlendName));
        const QString first = name->text();
        blend->setFocus();
        QTest::keyClick(blend, Qt::Key_Right);
        EXPECT_NE(name->text(), first);
        EXPECT_EQ(blend->value(), 1);
        const QWidget* picture = dialog.findChild<QWidget*>(QString::number(kFadePicture));
        EXPECT_FALSE(const_cast<QWidget*>(picture)->grab().toImage().isNull());
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_NE(Board().tiles, start);
    EXPECT_EQ(Tile(2, 2).fg, 14);
    EXPECT_EQ(Tile(12, 12), start[12 * 80 + 12]) << "only the box";

    Run(At(20, 20), At(30, 30), {"Fa&de", "&Distance"}, Pressing(platform::kIdOk));
    EXPECT_EQ(Tile(25, 25).bg, 2);
    Run(At(40, 20), At(50, 30), {"Fa&de", "&Slime"}, Pressing(platform::kIdOk));
    EXPECT_EQ(Tile(45, 25).bg, 2);

    // The percentage is checked, and the dialog stays open with the field selected.
    Run(At(60, 40), At(69, 49), {"&Speckle"}, [this](QDialog& dialog) {
        auto* field = dialog.findChild<QLineEdit*>();
        field->selectAll();
        QTest::keyClicks(field, QStringLiteral("100"));
        person.AnswerBox("between 0 and 99");
        QTest::keyClick(&dialog, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(field->selectedText().toStdString(), "100");
        QTest::keyClicks(field, QStringLiteral("99"));
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_GT(Count('A', 60, 40, 10, 10), 80);
}

TEST_F(Areas, CopiesThroughTheFilterAndPastes) {
    Board().PutTile(5, 5, 'X', 3, 4, 2);
    Board().PutTile(6, 5, 'Y', 5, 6, 2);
    Run(At(5, 5), At(6, 5), {"&Copy", "&Fill"}, [](QDialog& dialog) {
        for (QCheckBox* box : dialog.findChildren<QCheckBox*>())
            if (box->text() != QLatin1String("Char")) box->click();
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_EQ(vTileClipW, 2);
    Run(At(10, 10), At(14, 10), {"&Paste", "&Fill"});
    EXPECT_EQ(Tile(10, 10), (Dtile{'X', 255, 255, 0}));
    EXPECT_EQ(Tile(13, 10).chr, 'Y');
    EXPECT_EQ(Tile(14, 10).chr, 'X');
    Run(At(20, 20), At(21, 21), {"&Paste", "S&prite"});
    EXPECT_EQ(Tile(21, 21).chr, 'A' + 17);
    EXPECT_EQ(Tile(21, 21).fg, kSpriteColor);

    Run(At(5, 5), At(8, 7), {"&Make Object"}, [](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle().toStdString(), "Name");
        auto* name = dialog.findChild<QLineEdit*>();
        name->selectAll();
        QTest::keyClicks(name, QStringLiteral("my thing"));
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    ASSERT_EQ(Board().children.size(), 1u);
    const Dobject& made = *Board().children.front();
    EXPECT_EQ(made.name, "my_thing");
    EXPECT_EQ(std::pair(made.width, made.height), std::pair(4, 3));
    EXPECT_EQ(made.tiles.front().chr, 'X');
    EXPECT_EQ(vWorld->currentObject, made.id);
}

TEST_F(Areas, PrimitivesComeFromTheSecondMenu) {
    RunPrimitive(At(2, 2), At(12, 2), {"&Line", "&Fill"});
    EXPECT_EQ(Count('A', 2, 2, 11, 1), 11);
    RunPrimitive(At(20, 20), At(24, 23), {"&Rect", "&Fill"});
    EXPECT_EQ(Count('A', 20, 20, 5, 4), 14) << "the outline only";
    vBrush.fg = 32;
    vBrush.bg = 39;
    RunPrimitive(At(30, 40), At(45, 40), {"&Blend Fade", "&Fill"});
    EXPECT_EQ(Tile(30, 40).fg, 32);
    EXPECT_EQ(Tile(30, 40).chr, 219);
    EXPECT_GE(Tile(45, 40).fg, 38);
}
