// The tutorial of README.md, sentence by sentence, on the real main window: what it promises is in
// the file that it saves.

#include "editor/script/do_programming.h"
#include "editor/shell/do_location.h"
#include "editor/shell/panel_ids.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/fade_dialog.h"
#include "editor/view/brush.h"
#include "engine/game_archive.h"
#include "tests/gui/main_window.h"

#include <gmock/gmock.h>
#include <QPushButton>
#include <QSlider>
#include <cstdlib>
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
    void ChooseBrush(const Brush& brush) {
        person.OnDialog([=](QDialog& dialog) {
            if (vBrush.chr != brush.chr)
                Click(In(dialog, kBrushChar), {brush.chr % 16 * 16 + 8, brush.chr / 16 * 16 + 8});
            ClickColor(dialog, kBrushFg, brush.fg);
            ClickColor(dialog, kBrushBg, brush.bg);
            PressOk(dialog);
        });
        ClickOnPanel(kBrushPreview);
        EXPECT_EQ(vBrush, brush);
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
        "Click a tile inside the frame with the right button: the area tools open. Choose "
        "\"Ruler\"");
    DragFor(At(10, 10), At(10, 10), {"R&uler"});

    Says(
        "Click the picture of the brush, at the left of the panel. Choose a light green in "
        "\"Foreground Color\" and a dark green in \"Background Color\", so that the numbers of the "
        "brush (glyph, foreground, background, attribute) read 1 84 75 0.");
    ChooseBrush({1, 84, 75, 0});

    Says(
        "Click a tile inside the frame with the right button again and choose \"Flood\", \"Fade\", "
        "\"Normal\". In the dialog the button \"Set\" offers \"Grass\". Draw the slider \"Random\" "
        "to 15; OK");
    DragFor(At(10, 10), At(10, 10), {"F&lood", "Fa&de", "&Normal"}, {}, [this](QDialog& dialog) {
        person.ChooseInMenu({"Grass"});
        In<QPushButton>(dialog, kFadeSetButton).click();
        In<QSlider>(dialog, kFadeRandomSlider).setValue(15);
        PressOk(dialog);
    });

    Says("Choose the full block and a brown, 219 124 75 0, then OK.");
    ChooseBrush({219, 124, 75, 0});
    Says("from column 30, row 25 until the ruler says 13,7 and choose \"Fill\"");
    DragFor(At(30, 25), At(42, 31), {"&Fill"});

    Says(
        "Click the middle tile of the house's lowest row, 36,31. Press Home four times, which "
        "darkens the brush, then Space, Up, Space, Up, Space: a door.");
    Click(*edit, At(36, 31));
    for (Qt::Key code : {Qt::Key_Home, Qt::Key_Home, Qt::Key_Home, Qt::Key_Home, Qt::Key_Space,
                         Qt::Key_Up, Qt::Key_Space, Qt::Key_Up, Qt::Key_Space})
        Press(*edit, code);

    Says(
        "Hold Ctrl and drag with the right button from 30,24 to 36,18; choose \"Line\", \"Fill\". "
        "Do "
        "the same from 36,18 to 42,24: a roof.");
    DragFor(At(30, 24), At(36, 18), {"&Line", "&Fill"}, Qt::ControlModifier);
    DragFor(At(36, 18), At(42, 24), {"&Line", "&Fill"}, Qt::ControlModifier);

    Says("choose white on dark brown, 219 15 120 0. Choose \"Add Text\" on the panel, click 35,27");
    ChooseBrush({219, 15, 120, 0});
    ClickOnPanel(kRadioText);
    Click(*edit, At(35, 27));
    Says("and type INN. Choose \"Brush\" on the panel again.");
    Type(*edit, QStringLiteral("INN"));
    ClickOnPanel(kRadioBrush);

    Says("from 30,18 until the ruler says 13,14, around house and roof. Choose \"Make Object\"");
    DragFor(At(30, 18), At(42, 31), {"&Make Object"}, {}, [](QDialog& dialog) {
        QTest::keyClicks(dialog.focusWidget(), QStringLiteral("inn"));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    Says("Choose \"Ruler\" once more");
    DragFor(At(50, 50), At(50, 50), {"R&uler"});

    Says("Press \"PROPERTIES\" on the panel, then \"Location\", and type 30 and 18");
    ClickOnPanel(kToProperties);
    person.OnDialog([](QDialog& dialog) {
        Fill(dialog, kLocationX, QStringLiteral("30"));
        Fill(dialog, kLocationY, QStringLiteral("18"));
        PressOk(dialog);
    });
    ClickOnPanel(kNodeLocation);

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

    if (const char* picture = std::getenv("QUILT_TUTORIAL_PICTURE")) window->grab().save(picture);
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
    for (const int i : {0, 1, 2}) EXPECT_EQ(board.GetTile(35 + i, 27)->chr, "INN"[i]);
    EXPECT_EQ(*board.GetTile(35, 27), (Dtile{'I', 15, 120, 0}));
    ASSERT_EQ(board.children.size(), 1u);
    Dobject& inn = *board.children.front();
    EXPECT_EQ(inn.name, "inn");
    EXPECT_EQ(std::pair(inn.width, inn.height), std::pair(13, 14));
    EXPECT_EQ(*inn.GetTile(6, 13), (Dtile{219, 120, 75, 0}));
    EXPECT_EQ(std::pair(inn.posx, inn.posy), std::pair(30, 18));
    EXPECT_EQ(Plain(inn.script), "@inn #end :touch The inn opens at dusk. #end");
    EXPECT_EQ(std::count(inn.script.begin(), inn.script.end(), '\n'), 4);
}
