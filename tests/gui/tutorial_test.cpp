// The tutorial of README.md, sentence by sentence, on the real main window: what it promises is in
// the file that it saves.

#include "editor/script/do_programming.h"
#include "editor/shell/panel_ids.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/fade_dialog.h"
#include "engine/game_archive.h"
#include "tests/gui/main_window.h"

#include <gmock/gmock.h>
#include <QPushButton>
#include <sstream>

namespace {

// All white space made one blank, so that line ends do not matter.
std::string Plain(const std::string& text) {
    std::istringstream in(text);
    std::string plain;
    for (std::string word; in >> word;) plain += (plain.empty() ? "" : " ") + word;
    return plain;
}

class Tutorial : public MainWindow {
protected:
    /// The README says this, behind what the step before said.
    void Says(const std::string& text) {
        const std::size_t found = readme.find(text, told);
        ASSERT_NE(found, readme.npos) << text;
        told = found + text.size();
    }

    // Opens the menu by a drag and goes down the texts in it, to what may be a dialog.
    void DragFor(QPoint from, QPoint to, const std::vector<std::string>& path,
                 Qt::KeyboardModifiers with = Qt::NoModifier,
                 std::function<void(QDialog&)> inDialog = {}) {
        person.ChooseInMenu(path);
        if (inDialog) person.OnDialog(std::move(inDialog));
        Drag(*edit, {from, to}, Qt::RightButton, with);
        Settle();
    }
    static void ClickColor(QWidget& dialog, int id, int color) {
        Click(In(dialog, id), {color % 16 * 11 + 5, color / 16 * 10 + 5});
    }
    static void PressOk(QDialog& dialog) { In<QPushButton>(dialog, platform::kIdOk).click(); }

    const std::string readme = Plain(FileBytes(SOURCE_FOLDER "/README.md"));
    std::size_t told = 0;
};

}  // namespace

TEST_F(Tutorial, KeepsItsPromises) {
    Start();
    Says("The marked tile at the top left is the cursor");
    EXPECT_EQ(app->Frame().EditView().Cursor(), (platform::Point{0, 0}));

    Says(
        "Click the picture of the brush, at the left of the panel. Choose a light green in "
        "\"Foreground Color\" and a dark green in \"Background Color\", then OK.");
    person.OnDialog([](QDialog& dialog) {
        ClickColor(dialog, kBrushFg, 84);
        ClickColor(dialog, kBrushBg, 75);
        PressOk(dialog);
    });
    ClickOnPanel(kBrushPreview);

    Says(
        "Click a tile inside the frame with the right button: the area tools open. Choose "
        "\"Flood\", \"Fade\", \"Normal\". In the dialog the button \"Set\" offers \"Grass\"; OK");
    DragFor(At(10, 10), At(10, 10), {"F&lood", "Fa&de", "&Normal"}, {}, [this](QDialog& dialog) {
        person.ChooseInMenu({"Grass"});
        In<QPushButton>(dialog, kFadeSetButton).click();
        PressOk(dialog);
    });

    Says(
        "Choose the full block, glyph 219, and a dark brown as foreground, then OK. Drag a box "
        "over the middle of the meadow with the right button and choose \"Fill\"");
    person.OnDialog([](QDialog& dialog) {
        Click(In(dialog, kBrushChar), {11 * 16 + 8, 13 * 16 + 8});
        ClickColor(dialog, kBrushFg, 124);
        PressOk(dialog);
    });
    ClickOnPanel(kBrushPreview);
    DragFor(At(30, 25), At(42, 31), {"&Fill"});

    Says(
        "Click the middle tile of the house's lowest row. Press Home four times, which darkens "
        "the brush, then Space, Up, Space, Up, Space: a door.");
    Click(*edit, At(36, 31));
    for (Qt::Key code : {Qt::Key_Home, Qt::Key_Home, Qt::Key_Home, Qt::Key_Home, Qt::Key_Space,
                         Qt::Key_Up, Qt::Key_Space, Qt::Key_Up, Qt::Key_Space})
        Press(*edit, code);

    Says(
        "Hold Ctrl and drag with the right button from above the house's left corner to a point "
        "higher up in the middle; choose \"Line\", \"Fill\". Do the same from there to the right "
        "corner: a roof.");
    DragFor(At(30, 24), At(36, 18), {"&Line", "&Fill"}, Qt::ControlModifier);
    DragFor(At(36, 18), At(42, 24), {"&Line", "&Fill"}, Qt::ControlModifier);

    Says(
        "Press End eight times, choose \"Add Text\" on the panel, click a tile of the wall and "
        "type INN. Choose \"Brush\" on the panel again.");
    for (int i = 0; i < 8; ++i) Press(*edit, Qt::Key_End);
    ClickOnPanel(kRadioText);
    Click(*edit, At(35, 26));
    Type(*edit, QStringLiteral("INN"));
    ClickOnPanel(kRadioBrush);

    Says(
        "Drag a box around house and roof with the right button, choose \"Make Object\", type inn "
        "and press Enter. The new object stands at the top left of the board.");
    DragFor(At(30, 18), At(42, 31), {"&Make Object"}, {}, [](QDialog& dialog) {
        QTest::keyClicks(dialog.focusWidget(), QStringLiteral("inn"));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });

    Says("Press \"PROPERTIES\" on the panel, then drag with the right button: the object follows.");
    ClickOnPanel(kToProperties);
    Drag(*edit, {At(2, 2), At(20, 20), At(55, 40)}, Qt::RightButton);

    Says(
        "Press \"Programming\" and type this, then OK. Enter ends the line; while a word is only "
        "begun, it takes the one that is offered. @inn #end :touch The inn opens at dusk. #end");
    person.OnDialog([](QDialog& dialog) {
        QWidget& code = In(dialog, kScriptText);
        for (const char* line : {"@inn", "#end", ":touch", "The inn opens at dusk.", "#end"})
            Type(code, QString::fromLatin1(line) + QLatin1Char('\n'));
        PressOk(dialog);
    });
    ClickOnPanel(kNodeProgramming);

    Says("Press Ctrl+S, type first and press Enter. The game is in `first.zqlt`");
    person.AnswerFileDialog(temp / "first");
    window->activateWindow();
    Settle();
    QTest::keyClick(window->windowHandle(), Qt::Key_S, Qt::ControlModifier);
    Settle();

    // What is in the file now.
    Game game;
    GameFault fault;
    int nextId = 1;
    ASSERT_TRUE(ReadGame(
        temp / "first.zqlt", [&] { return nextId++; }, game, fault))
        << fault.text;
    ASSERT_EQ(game.root.children.size(), 1u);
    Dobject& board = *game.root.children.front();
    EXPECT_EQ(*board.GetTile(0, 0), (Dtile{176, 16, 32, 1})) << "the frame";
    EXPECT_THAT((std::array{44, 34, 118, 119, 87}), testing::Contains(board.GetTile(5, 50)->chr));
    EXPECT_EQ(board.GetTile(5, 50)->fg, 84);
    EXPECT_EQ(board.GetTile(5, 50)->bg, 75);
    EXPECT_EQ(*board.GetTile(31, 30), (Dtile{219, 124, 75, 0})) << "the wall";
    for (const int y : {29, 30, 31}) EXPECT_EQ(board.GetTile(36, y)->fg, 120) << "the door";
    for (const int i : {0, 3, 6}) EXPECT_EQ(board.GetTile(36 + i, 18 + i)->fg, 120) << "the roof";
    for (const int i : {0, 1, 2}) {
        EXPECT_EQ(board.GetTile(35 + i, 26)->chr, "INN"[i]);
        EXPECT_EQ(board.GetTile(35 + i, 26)->fg, 128);
    }
    ASSERT_EQ(board.children.size(), 1u);
    Dobject& inn = *board.children.front();
    EXPECT_EQ(inn.name, "inn");
    EXPECT_EQ(std::pair(inn.width, inn.height), std::pair(13, 14));
    EXPECT_EQ(*inn.GetTile(6, 13), (Dtile{219, 120, 75, 0}));
    EXPECT_EQ(std::pair(inn.posx, inn.posy), std::pair(55, 40));
    EXPECT_EQ(Plain(inn.script), "@inn #end :touch The inn opens at dusk. #end");
    EXPECT_EQ(std::count(inn.script.begin(), inn.script.end(), '\n'), 4);
}
