// What the list and the panels do to the world, on the scripted window system.

#include "editor/commands.h"
#include "editor/shell/main_frame.h"
#include "editor/shell/panel_ids.h"
#include "editor/view/brush.h"
#include "editor/view/view_state.h"
#include "platform/keys.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/test_world.h"

using namespace platform;

namespace {

class PanelWorld : public WorldTest {
protected:
    PanelWorld() : frame([](int) {}) {
        EXPECT_TRUE(frame.Create());
        board = &AddNode(world->Root(), "board", 6, 5);
        world->currentBoard = world->currentObject = board->id;
        frame.RedrawAll();
    }
    WindowEvents& Edit() { return *script.frame->Edit().events; }

    ScriptedPlatform script;
    CMainFrame frame;
    Dobject* board = nullptr;
};

}  // namespace

TEST_F(PanelWorld, ThereIsABackupToRestoreOnlyAfterOneWasTaken) {
    board->PutTile(2, 2, 7, 7, 7, 0);
    ScriptedForm& panel = *script.frame->panel;
    EXPECT_FALSE(panel.IsEnabled(kRestoreBackup));
    panel.events.OnControl(panel, kRestoreBackup);
    EXPECT_EQ(board->GetTile(2, 2)->chr, 7);
    frame.EditView().OnCommand(kCmdFill);
    EXPECT_NE(board->GetTile(0, 0)->chr, 0);
    panel.Click(kRestoreBackup);
    EXPECT_EQ(board->GetTile(0, 0)->chr, 0);
    world->currentObject = AddNode(*board, "other", 1, 1).id;
    frame.RedrawAll();
    EXPECT_FALSE(panel.IsEnabled(kRestoreBackup));
    panel.Click(kSaveBackup);
    EXPECT_TRUE(panel.IsEnabled(kRestoreBackup));
}

TEST_F(PanelWorld, ABoardThatIsAddedIsTheOneOnView) {
    script.ExpectMenu({}, kCmdAddBoard);
    script.ExpectDialog("Name", [&](ScriptedForm& form) {
        EXPECT_NE(board->posy, 0) << "parked while the name is asked for";
        form.Click(kIdCancel);
    });
    script.frame->List().Send(&WindowEvents::OnRButtonDown, false, Point{30, 15});
    EXPECT_EQ(world->Root().children.back()->posy, 0);
}

TEST_F(PanelWorld, APickBeyondTheRangeOfCommandsSelectsNothing) {
    frame.OnCommand(kCmdShowPropertiesPanel);
    vPanelMode = kPanelProperties;
    AddNode(*board, "middle", 3, 3);
    board->Spawn(kCmdFill - kCmdPickBase, 0)->Create("top", 3, 3);
    script.ExpectMenu({}, kCmdFill);
    Edit().OnLButtonDown(false, {4, 4});
    EXPECT_EQ(world->currentObject, board->id);
    EXPECT_EQ(board->GetTile(0, 0)->chr, 0) << "and nothing is filled";
}

TEST_F(PanelWorld, KeysLeaveASpriteBrushAndAStandingViewAlone) {
    vBrush.fg = kSpriteMark;
    for (const int code : {kKeyHome, kKeyEnd, kKeyF1, kKeyF2}) {
        board->viewx = 50;
        Edit().OnKeyDown(code);
        EXPECT_EQ(vBrush.fg, kSpriteMark);
        EXPECT_EQ(board->viewx, 50) << code;
    }
}

TEST_F(PanelWorld, TheBlenderCountsAVisitByTheMouse) {
    vBrushMode = kBrushBlender;
    board->PutTile(0, 0, 176, 1, 1, 0);
    for (const int chr : {177, 178}) {
        for (const Point at : {Point{20, 4}, Point{4, 4}, Point{4, 4}}) {
            Edit().OnLButtonDown(false, at);
            Edit().OnLButtonUp(false, at);
        }
        Edit().OnKeyDown(kKeySpace);
        Edit().OnLButtonDown(false, {4, 4});
        Edit().OnKeyDown(kKeySpace);
        EXPECT_EQ(board->GetTile(0, 0)->chr, chr);
    }
}
