// The real main window off screen, driven by key and mouse events.

#include "editor/commands.h"
#include "editor/shell/panel_ids.h"
#include "editor/shell/quilt_app.h"
#include "editor/view/brush.h"
#include "platform/qt/picture_widget.h"
#include "platform/qt/qt_frame.h"
#include "platform/qt/qt_platform.h"
#include "tests/gui/person.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>
#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QStatusBar>
#include <QtTest>
#include <filesystem>

namespace {

struct FlatNode {
    std::string name;
    std::vector<Dtile> tiles;
    std::vector<std::int32_t> numbers;
    bool operator==(const FlatNode&) const = default;
};

// Everything of a world that a file keeps.
void Flatten(const Dobject& node, std::vector<FlatNode>& list) {
    list.push_back({node.name + "\n" + node.script,
                    node.tiles,
                    {node.posx, node.posy, node.posz, node.width, node.height, node.viewx,
                     node.viewy, node.vieww, node.viewh}});
    for (const auto& child : node.children) Flatten(*child, list);
}

std::vector<FlatNode> FlatWorld() {
    std::vector<FlatNode> list;
    for (const auto& board : vWorld->Root().children) Flatten(*board, list);
    return list;
}

class MainWindow : public testing::Test {
protected:
    void Start(const std::string& game = "") {
        app = std::make_unique<CQuiltApp>();
        ASSERT_TRUE(app->InitInstance(programFolder, game));
        window = static_cast<QtFrame*>(&app->Frame().Window());
        window->resize(1024, 768);
        window->activateWindow();
        Settle();
        edit = window->findChild<QWidget*>(QStringLiteral("edit"));
        list = window->findChild<QWidget*>(QStringLiteral("list"));
        ASSERT_TRUE(edit && list);
    }
    void TearDown() override { app.reset(); }

    static void Settle() {
        for (int i = 0; i < 3; ++i) QApplication::processEvents();
    }
    template <typename Widget = QWidget>
    Widget* Control(int id) {
        return window->findChild<Widget*>(QString::number(id));
    }
    QAction* Entry(const std::string& menu, const std::string& text) {
        for (QAction* top : window->menuBar()->actions())
            if (top->text().toStdString() == menu) return Person::EntryOf(*top->menu(), text);
        return nullptr;
    }
    void Choose(const std::string& menu, const std::string& text) {
        QAction* entry = Entry(menu, text);
        ASSERT_TRUE(entry && entry->isEnabled()) << text;
        entry->trigger();
        Settle();
    }
    void Keys(std::initializer_list<Qt::Key> keys) {
        for (Qt::Key code : keys) Person::Press(*edit, code);
    }
    // The middle of a world tile in window pixels.
    QPoint At(int x, int y) {
        const CQuiltView& view = app->Frame().EditView();
        const double scale = 8.0 / static_cast<double>(view.Zoom());
        return {static_cast<int>((x + view.Scroll().x + 0.5) * scale),
                static_cast<int>((y + view.Scroll().y + 0.5) * scale)};
    }
    Dobject& Board() { return *vWorld->Root().children.front(); }
    std::string Row(int y, int from, int count) {
        std::string row;
        for (int x = from; x < from + count; ++x) {
            const int chr = Board().GetTile(x, y)->chr;
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

    const std::string programFolder = std::filesystem::current_path().string();
    TempFolder temp;
    Person person;
    std::unique_ptr<CQuiltApp> app;
    QtFrame* window = nullptr;
    QWidget* edit = nullptr;
    QWidget* list = nullptr;
};

}  // namespace

TEST_F(MainWindow, StandsWithItsPanesMenusAndFocus) {
    Start();
    EXPECT_EQ(window->windowTitle().toStdString(), "Untitled - Tessel Works's QUILT!");
    EXPECT_EQ(list->width(), 200);
    EXPECT_EQ(Control(kBrushName)->window(), window);
    EXPECT_EQ(app->Frame().Window().PaneSize(platform::Pane::Lower).h, 135);
    EXPECT_EQ(QApplication::focusWidget(), edit);
    window->resize(900, 600);
    Settle();
    EXPECT_EQ(app->Frame().Window().PaneSize(platform::Pane::Lower).h, 135);
    EXPECT_EQ(list->width(), 200);
    EXPECT_TRUE(Entry("&File", "&Run")->isEnabled());
    EXPECT_EQ(Entry("&File", "&New")->shortcut().toString().toStdString(), "Ctrl+N");
    EXPECT_EQ(Entry("&File", "&New")->statusTip().toStdString(), "Create a new QUILT! game");
    EXPECT_TRUE(Entry("&Set Video Mode", "640 x 480")->isChecked());
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
    EXPECT_EQ(Row(2, 2, 6), "*****.") << "five stamps";
    EXPECT_EQ(*Board().GetTile(6, 3), (Dtile{2, 16, 1, 0}));
    EXPECT_EQ(QApplication::focusWidget(), edit) << "Tab and the arrows do not move the focus";

    // Blender, both ways, chosen on the panel.
    Person::Click(*Control(kRadioBlender), {5, 10});
    EXPECT_EQ(vBrushMode, kBrushBlender);
    EXPECT_EQ(QApplication::focusWidget(), edit) << "the panel gives the focus back";
    Person::Click(*edit, At(10, 10));
    Keys({Qt::Key_Space, Qt::Key_Space, Qt::Key_Left, Qt::Key_Right, Qt::Key_Space});
    EXPECT_EQ(Board().GetTile(10, 10)->chr, 176);
    Keys({Qt::Key_Tab, Qt::Key_Right, Qt::Key_Left, Qt::Key_Tab});
    EXPECT_EQ(Board().GetTile(10, 10)->chr, 178);
    EXPECT_EQ(Board().GetTile(11, 10)->chr, 32);

    // Typing, with wrap and Enter.
    Person::Click(*Control(kRadioText), {5, 10});
    Person::Click(*edit, At(77, 30));
    Person::Type(*edit, QStringLiteral("ABCDE\rF\u00e9\u263a\u4e2d"));
    EXPECT_EQ(Row(30, 77, 3), "ABC");
    EXPECT_EQ(Row(31, 0, 2), "DE");
    EXPECT_EQ(Row(32, 77, 1), "F") << "back at the column of the click";
    EXPECT_EQ(Board().GetTile(78, 32)->chr, 130) << "an e with an acute accent";
    EXPECT_EQ(Board().GetTile(79, 32)->chr, 1) << "a face";
    EXPECT_EQ(app->Frame().EditView().Cursor(), (platform::Point{0, 33})) << "no such glyph";
    Person::Click(*Control(kRadioBrush), {5, 10});

    // Picking, moving, scrolling, zooming.
    Person::Click(*Control(kToProperties), {5, 5});
    Settle();
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
    Person::Click(*Control(kToPaint), {5, 5});
    Settle();
    person.ChooseInMenu("Zoom &Out");
    Person::Click(*edit, At(7, 7), Qt::RightButton);
    EXPECT_EQ(app->Frame().EditView().Zoom(), 1.0f);

    Choose("&Set Video Mode", "320 x 240");
    Choose("&Set Video Mode", "Windowed");
    EXPECT_FALSE(Entry("&Set Video Mode", "Windowed")->isChecked());
    const std::vector<FlatNode> world = FlatWorld();
    person.AnswerFileDialog(temp / "second");
    Choose("&File", "Save &As...");
    EXPECT_EQ(window->windowTitle().toStdString(), "second.zqlt - Tessel Works's QUILT!");
    Choose("&File", "&New");
    EXPECT_NE(FlatWorld(), world);
    person.AnswerFileDialog(temp / "second.zqlt");
    Choose("&File", "&Open...");
    EXPECT_EQ(FlatWorld(), world);
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
    auto* step = Control<QLineEdit>(kStepX);
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

TEST_F(MainWindow, ShowsTheWorldPixelForPixel) {
    Start();
    for (int x = 0; x < 16; ++x) Board().PutTile(x + 1, 1, 219, x, x, 0);
    app->Frame().RedrawAll();
    Settle();
    const QImage one = edit->grab().toImage();
    for (int x = 1; x < 16; ++x)
        for (int i : {0, 7})
            EXPECT_EQ(one.pixel(8 + x * 8 + i, 8 + i) & 0xffffff,
                      vScreenColors[static_cast<std::size_t>(x)] & 0xffffff)
                << x;
    app->Frame().EditView().OnCommand(kCmdZoomIn);
    Settle();
    const QImage two = edit->grab().toImage();
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x) ASSERT_EQ(two.pixel(x, y), one.pixel(x / 2, y / 2));
}
