// The tutorial of README.md, sentence by sentence, on the real main window: what it promises is in
// the file that it saves.

#include "editor/script/do_programming.h"
#include "editor/shell/do_location.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/fade_dialog.h"
#include "engine/random.h"
#include "tests/gui/main_window.h"
#include "tests/support/random_world.h"

#include <QSlider>
#include <regex>

namespace {

struct Tutorial : MainWindow {
    /// The README says this, behind what the step before said.
    void Says(const std::string& text) {
        const std::size_t found = readme.find(text, told);
        ASSERT_NE(found, readme.npos) << text;
        told = found + text.size();
    }

    // Opens the menu by a drag and goes down the texts in it, to what may be a dialog.
    void DragFor(QPoint from, QPoint to, const std::vector<std::string>& path,
                 Qt::KeyboardModifiers with = {},
                 const std::function<void(QDialog&)>& inDialog = {}) {
        person.ChooseInMenu(path);
        if (inDialog) person.OnDialog(inDialog);
        Drag(*edit, {from, to}, Qt::RightButton, with);
        Settle();
    }
    void ChooseBrush(const Brush& brush) {
        person.OnDialog([=](QDialog& dialog) {
            const auto cell = [](int index, int w, int h) {
                return QPoint(index % 16 * w + w / 2, index / 16 * h + h / 2);
            };
            Click(In(dialog, kBrushChar), cell(brush.chr, 16, 16));
            Click(In(dialog, kBrushFg), cell(brush.fg, 11, 10));
            Click(In(dialog, kBrushBg), cell(brush.bg, 11, 10));
            PressOk(dialog);
        });
        ClickOnPanel(kBrushPreview);
        EXPECT_EQ(vBrush, brush);
    }

    // Line ends do not matter.
    const std::string readme =
        std::regex_replace(FileBytes(SOURCE_FOLDER "/README.md"), std::regex("\\s+"), " ");
    std::size_t told = 0;
};

}  // namespace

TEST_F(Tutorial, KeepsItsPromises) {
    Start();
    vRandom.Seed(1);
    Says("Click a tile inside the frame with the right button: the area tools open.");
    DragFor(At(10, 10), At(10, 10), {"R&uler"});
    Says("so that the numbers of the brush (glyph, foreground, background, attribute) read");
    Says("1 84 75 0.");
    ChooseBrush({1, 84, 75, 0});

    Says("choose \"Flood\", \"Fade\", \"Normal\".");
    Says("In the dialog the button \"Set\" offers \"Grass\".");
    Says("Draw the slider \"Random\" to 15; OK");
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

    Says("Click the middle tile of the house's lowest row, 36,31. Press Home four times");
    Says("then Space, Up, Space, Up, Space: a door.");
    Click(*edit, At(36, 31));
    for (const Qt::Key code : {Qt::Key_Home, Qt::Key_Home, Qt::Key_Home, Qt::Key_Home,
                               Qt::Key_Space, Qt::Key_Up, Qt::Key_Space, Qt::Key_Up, Qt::Key_Space})
        Press(*edit, code);

    Says(
        "Hold Ctrl and drag with the right button from 30,24 to 36,18; choose \"Line\", \"Fill\".");
    DragFor(At(30, 24), At(36, 18), {"&Line", "&Fill"}, Qt::ControlModifier);
    Says("from 36,18 to 42,24: a roof.");
    DragFor(At(36, 18), At(42, 24), {"&Line", "&Fill"}, Qt::ControlModifier);

    Says("219 15 120 0. Choose \"Add Text\" on the panel, click 35,27 and type INN.");
    ChooseBrush({219, 15, 120, 0});
    ClickOnPanel(kRadioText);
    Click(*edit, At(35, 27));
    Type(*edit, QStringLiteral("INN"));
    Says("Choose \"Brush\" on the panel again.");
    ClickOnPanel(kRadioBrush);

    Says("from 30,18 until the ruler says 13,14, around house and roof. Choose \"Make Object\"");
    DragFor(At(30, 18), At(42, 31), {"&Make Object"}, {}, Named(QStringLiteral("inn")));
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

    Says("Press \"Programming\" and type this, then OK. Enter ends the line;");
    Says("@inn #end :touch The inn opens at dusk. #end");
    const std::string script = "@inn\n#end\n:touch\nThe inn opens at dusk.\n#end";
    person.OnDialog([&](QDialog& dialog) {
        Type(In(dialog, kScriptText), QString::fromStdString(script + "\n"));
        PressOk(dialog);
    });
    ClickOnPanel(kNodeProgramming);

    if (const char* picture = std::getenv("QUILT_TUTORIAL_PICTURE")) window->grab().save(picture);
    Says("Press Ctrl+S, type first and press Enter. The game is in `first.zqlt`");
    person.AnswerFileDialog(temp / "first");
    window->activateWindow();
    Settle();
    Hit({Qt::Key_S}, Qt::ControlModifier);

    // What is in the file now.
    Reopen(temp / "first.zqlt");
    EXPECT_THAT(Account(Board()), testing::StartsWith("~ob inn 0\n30 18 13 14\n0 0 13 14\n"));
    EXPECT_EQ(SumOf(Account(*vWorld)), 1943066261u) << "look at the picture of README.md";
}
