// The application on the scripted backend: start, document commands, what they keep, and Run; what
// every entry of every menu does, and the list.

#include "editor/commands.h"
#include "editor/shell/do_about.h"
#include "editor/shell/do_object_clip_board.h"
#include "editor/shell/do_save_notification.h"
#include "editor/shell/panel_ids.h"
#include "editor/shell/quilt_app.h"
#include "editor/shell/recent_files.h"
#include "editor/view/object_clip.h"
#include "editor/view/view_state.h"
#include "tests/support/plain_zip.h"
#include "tests/support/scripted_platform.h"

#include <unistd.h>

#include <regex>

using namespace platform;
using Events = WindowEvents;
using namespace testing;

namespace {

// The rows of the list.
enum Row { kAttic = 1, kLamp, kBulb, kShelf, kCellar };

Point At(int row) { return {30, row * 10 + 5}; }

struct Shell : testing::Test {
    Shell() { EXPECT_TRUE(Start("")); }
    bool Start(const std::string& game) {
        app = std::make_unique<CQuiltApp>(keep);
        return app->InitInstance(programs, game);
    }
    CQuiltDoc& Doc() { return app->Document(); }
    static Dobject& Board() { return *vWorld->Root().children.front(); }
    ScriptedFrame& Frame() { return *script.frame; }
    ScriptedWindow& List() { return Frame().List(); }
    /// "Attic(lamp(bulb) shelf)" in place of what there is, and a second board.
    void Plant() {
        vWorld->Root().EraseAll();
        attic = Add(vWorld->Root(), "Attic", 6);
        lamp = Add(*attic, "lamp", 2);
        bulb = Add(*lamp, "bulb", 3);
        shelf = Add(*attic, "shelf", 1);
        lamp->posx = 3;
        lamp->script = "#end";
        bulb->PutTile(0, 0, 9, 8, 7, 6);
        bulb->vieww = 1;
        Add(vWorld->Root(), "Cellar", 4);
        vWorld->currentBoard = vWorld->currentObject = attic->id;
        MakeObjectClip();
    }
    static Dobject* Add(Dobject& parent, const char* name, int w) {
        const int id = vWorld->TakeId();
        Dobject* node = parent.parent ? parent.Spawn(id, 1) : parent.Spawn_Back(id, 0);
        node->Create(name, w, 2);
        return node;
    }
    // The tree with "*" behind what is selected, "#" a script, "@" a place, "[]" hidden, "+" shown
    // whole.
    static std::string Shape(const Dobject& node) {
        std::string text = node.hidden ? "[" + node.name + "]" : node.name, inside;
        if (!node.script.empty()) text += "#";
        if (node.posx) text += "@" + std::to_string(node.posx);
        if (node.evieww) text += "+";
        if (node.id == vWorld->currentObject) text += "*";
        for (const auto& each : node.children) inside += (inside.empty() ? "" : " ") + Shape(*each);
        return inside.empty() ? text : text + "(" + inside + ")";
    }
    // What was asked, and the tree.
    std::string Outcome() {
        std::string text;
        for (const std::string& asked : std::exchange(script.asked, {}))
            text += asked.substr(0, asked.find('\n')) + ": ";
        return text + Shape(vWorld->Root()).substr(kRootName.size());
    }
    // By a right click on that row.
    std::string Choose(int row, int command) {
        script.ExpectMenu(command);
        List().Send(&Events::OnRButtonDown, false, At(row));
        return Outcome();
    }

    const std::string programs = std::filesystem::current_path().string();
    TempFolder temp, keptFolder;
    const std::string keep = keptFolder / "kept";
    ScriptedPlatform script;
    std::unique_ptr<CQuiltApp> app;
    Dobject *attic = nullptr, *lamp = nullptr, *bulb = nullptr, *shelf = nullptr;
};

}  // namespace

TEST_F(Shell, EntriesOfTheBarDoSomething) {
    script.answersAll = true;
    for (const auto& [command, asked] :
         {std::pair<int, std::string>(kCmdFileExit, "message Do you want to quit?"),
          {kCmdFontEdit, "dialog Font Edit"},
          {kCmdTileClipboard, "dialog Tile ClipBoard"}}) {
        Frame().Choose(command);
        EXPECT_TRUE(Outcome().starts_with(asked + ": (")) << asked;
    }
    const auto ticked = [this](int command) { return FindEntry(Frame().bar, command)->checked; };
    for (int mode = 0; mode < kVideoModes; ++mode) {
        Frame().Edit().invalidated = 0;
        Frame().Choose(kCmdVideoMode + mode);
        EXPECT_EQ(vWorld->videoMode, mode);
        EXPECT_TRUE(ticked(kCmdVideoMode + mode) && Frame().Edit().invalidated);
    }
    for (const int command : {kCmdWindowed, kCmdStatusBar}) {
        const bool was = ticked(command);
        Frame().Choose(command);
        EXPECT_NE(ticked(command), was);
    }
    EXPECT_TRUE(Frame().closed && !Frame().statusBar);
    script.ExpectDialog("About QUILT!", [](ScriptedForm& form) {
        EXPECT_THAT(form.GetText(kAboutKeys), HasSubstr("<hr>"));
        form.Click(kAboutManual);
        form.Click(kAboutSample);
    });
    Frame().Choose(kCmdAbout);
    script.Run();
    EXPECT_THAT(Doc().PathName(), EndsWith("lamplight.zqlt"));
}

TEST_F(Shell, EntriesOfTheListDoSomething) {
    const struct {
        int row, command;
        const char* after;
        std::string redrawn;  ///< the list, the edit view
    } cases[] = {
        {kAttic, kCmdAddBoard, "dialog Name: (Attic(lamp#@3(bulb) shelf) Cellar NewBoard*)", "L"},
        {kBulb, kCmdAddObject, "dialog Name: (Attic(lamp#@3(bulb(NewObject*)) shelf) Cellar)", "L"},
        {kAttic, kCmdDuplicateBoard,
         "(Attic*(lamp#@3(bulb) shelf) Cellar Attic(lamp#@3(bulb) shelf))", "L"},
        {kAttic, kCmdPasteBoard, "(Attic*(lamp#@3(bulb) shelf) Cellar Dummy)", "L"},
        {kAttic, kCmdPasteOnBoard, "(Attic*(lamp#@3(bulb) shelf Dummy) Cellar)", "L"},
        {kShelf, kCmdPasteOnObject, "(Attic(lamp#@3(bulb) shelf*(Dummy)) Cellar)", "LE"},
        {kAttic, kCmdCopyBoard, "(Attic*(lamp#@3(bulb) shelf) Cellar) Attic", ""},
        {kLamp, kCmdCopyObject, "(Attic(lamp#@3*(bulb) shelf) Cellar) lamp", ""},
        {kAttic, kCmdDelete, "message Delete Board?: (Cellar*)", "LE"},
        {kBulb, kCmdDelete, "message Delete Object?: (Attic*(lamp#@3 shelf) Cellar)", "LE"},
        {kAttic, kCmdBoardName, "dialog Name: (Attic*(lamp#@3(bulb) shelf) Cellar)", "L"},
        {kShelf, kCmdObjectName, "dialog Name: (Attic(lamp#@3(bulb) shelf*) Cellar)", "LE"},
        {kShelf, kCmdProgramming, "dialog Programming: (Attic(lamp#@3(bulb) shelf*) Cellar)", ""},
        {kShelf, kCmdLocation, "dialog Location: (Attic(lamp#@3(bulb) shelf*) Cellar)", "LE"},
        {kShelf, kCmdSize, "dialog Size: (Attic(lamp#@3(bulb) shelf*) Cellar)", "LE"},
        {kShelf, kCmdViewport, "dialog Viewport: (Attic(lamp#@3(bulb) shelf*) Cellar)", "LE"},
        {kAttic, kCmdExpandAll, "(Attic+*(lamp#@3+(bulb+) shelf+) Cellar)", "LE"},
        {kLamp, kCmdHide, "(Attic([lamp]#@3*(bulb) shelf) Cellar)", "LE"},
        {kBulb, kCmdMoveBase, "(Attic*(lamp#@3 shelf(bulb)) Cellar)", "LE"},
    };
    script.answersAll = true;
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        Plant();
        List().Click(At(c.row));
        List().invalidated = Frame().Edit().invalidated = 0;
        std::string after = Choose(c.row, c.command + (c.command == kCmdMoveBase ? shelf->id : 0));
        after = std::regex_replace(after, std::regex("NewObject\\d+"), "NewObject");
        if (vObjectClip->name != "Dummy") after += " " + vObjectClip->name;
        EXPECT_EQ(after, c.after);
        const std::string list = List().invalidated ? "L" : "";
        EXPECT_EQ(list + (Frame().Edit().invalidated ? "E" : ""), c.redrawn);
    }

    // Beside every row the menu is the selection's.
    Plant();
    Choose(kLamp, kCmdHide);
    shelf->name = "&";
    Choose(30, 0);
    EXPECT_EQ(Outline(script.lastMenu),
              "&Add(&New &Paste) &Edit(&Copy Move(Attic(&Here ... !lamp(!&Here ... !bulb(!&Here "
              "...)) &&(&Here ...)) Cellar(&Here ...))) &Delete | &Name &Programming &Location "
              "&Size &Viewport | +&Hide | &Cancel");
    EXPECT_EQ(script.lastMenuAt, List().ClientToScreen({30, 310}));

    // What is copied goes deep and is its own, also by a file.
    Choose(kLamp, kCmdCopyObject);
    bulb->PutTile(0, 0, 1, 1, 1, 1);
    for (const bool saves : {true, false}) {
        script.ExpectDialog("Object ClipBoard", [&](ScriptedForm& form) {
            for (const auto& answer : {std::optional<std::string>(), {temp / "lamp.zobj"}}) {
                script.ExpectFile(saves ? "save" : "open", answer);
                form.Choose(saves ? kObjectSave : kObjectLoad);
            }
            form.Shown(kObjectPicture).Paint();
            EXPECT_EQ(form.Shown(kObjectPicture).description, "lamp");
            EXPECT_EQ(form.Shown(kObjectPicture).PixelAt(0, 0), 7);
            form.Click(kIdOk);
        });
        Frame().Choose(kCmdObjectClipboard);
        if (saves) MakeObjectClip();
    }
    Choose(kShelf, kCmdPasteOnObject);
    const Dobject& copy = *shelf->children.back();
    EXPECT_EQ(*copy.children.front()->GetTile(0, 0), (Dtile{9, 8, 7, 6}));
    EXPECT_EQ(std::pair(copy.posx, copy.posz), std::pair(0, 1));

    // Cancel, and commands that there is nothing for.
    const std::string shape = Choose(kLamp, 0);
    script.ExpectMenu(kCmdDelete);
    script.ExpectMessage("Delete Object?", false);
    List().Send(&Events::OnRButtonDown, false, At(kLamp));
    vObjectClip.reset();
    for (const int command : {kCmdMoveBase + 77777, int{kCmdPasteBoard}, int{kCmdPasteOnObject}})
        app->Frame().List().OnCommand(command);
    vWorld->currentObject = lamp->id;
    EXPECT_EQ(Outcome(), shape);
}

TEST_F(Shell, TheListSelectsScrollsAndSwaps) {
    Plant();
    const Dobject& cellar = *vWorld->Root().children.back();
    List().Send(&Events::OnLButtonDown, false, At(kLamp));
    EXPECT_TRUE(List().captured) << "the mouse may leave the list";
    List().invalidated = Frame().Edit().invalidated = 0;
    List().Drag(At(kLamp), At(kCellar));
    EXPECT_TRUE(List().invalidated && Frame().Edit().invalidated) << "both show it";
    EXPECT_TRUE(vWorld->currentBoard == cellar.id && !List().captured) << "a drag through the rows";
    List().Send(&Events::OnMouseMove, false, At(kAttic));
    EXPECT_EQ(vWorld->currentBoard, cellar.id) << "no button is held";
    List().Drag({50, 50}, {21, 31}, true);
    List().Click({20, 15});
    List().Paint();
    EXPECT_EQ(List().description, "Object lamp, z 1, in Attic") << "the row that is shown there";
    for (const int turn : {-120, 120}) List().Send(&Events::OnMouseWheel, turn);
    List().Click({20, 5});
    EXPECT_EQ(vWorld->currentBoard, cellar.id) << "a notch is five rows";
    List().Send(&Events::OnMouseWheel, -120);
    List().Click(At(kAttic));

    // A double click opens the script, with Ctrl it swaps the panels.
    script.ExpectDialog("Programming", [](ScriptedForm& form) { form.Click(kIdOk); });
    List().Send(&Events::OnLButtonDblClk, false, At(kAttic));
    attic->vieww = 2;
    for (const bool toPaint : {false, true}) {
        Frame().Edit().invalidated = 0;
        List().Send(&Events::OnLButtonDblClk, true, At(kAttic));
        EXPECT_TRUE(Frame().Edit().invalidated);
        EXPECT_EQ(vPanelMode, toPaint ? kPanelPaint : kPanelProperties);
        EXPECT_EQ(attic->vieww, toPaint ? 6 : 2);
        script.Run();
        EXPECT_EQ(Frame().panel->Picture(kBrushPreview) != nullptr, toPaint);
    }

    // Keys choose a row, which comes into sight, no further than it must, and open a menu below it.
    for (int i = 0; i < 200; ++i) Add(vWorld->Root(), "more", 1);
    const int last = vWorld->TreeRowCount() - 1, page = (List().size.h - 3) / 10 - 1;
    std::mt19937 dice(1);
    List().Key(kKeyHome);
    for (int step = 0, row = 0, y = 13; step < 300; ++step) {
        const std::pair<int, int> moves[] = {
            {kKeyUp, row - 1},          {kKeyDown, row + 1}, {kKeyPageUp, row - page},
            {kKeyPageDown, row + page}, {kKeyHome, 0},       {kKeyEnd, last}};
        const auto& [code, to] = moves[dice() % 6];
        const int before = dice() % 5 ? std::exchange(row, std::clamp(to, 0, last)) : row;
        if (dice() % 4 == 0) List().Send(&Events::OnMouseWheel, 120), y -= 50;
        if (before != row) List().Key(code);
        y = row ? std::clamp(y + 10 * (row - before), 3, 3 + 10 * page) : 13;
        script.ExpectMenu(0);
        List().Key(kKeyApps);
        ASSERT_EQ(std::pair(vWorld->SelectedTreeRow(), script.lastMenuAt.y - 1000),
                  std::pair(row, y + 7));
        List().Paint();
        ASSERT_EQ(List().PixelAt(60, y + 7), 0) << "the band of what is selected";
    }
    script.answersAll = true;
    for (const auto& [code, asked] :
         {std::pair<int, const char*>(kKeyEnter, "dialog Prog"), {kKeyDelete, "message Delete"}}) {
        List().Key(code);
        EXPECT_TRUE(Outcome().starts_with(asked));
    }
    List().Key(kKeyEnter | kWithCtrl);
    EXPECT_EQ(vPanelMode, kPanelProperties);
}

TEST_F(Shell, StartsOnANewGameOrTheOneOfTheCommandLine) {
    EXPECT_EQ(Frame().caption, "Untitled - Tessel Works's QUILT!");
    EXPECT_EQ(vWorld->currentBoard, Board().id);
    std::filesystem::copy_file("Library/default.zqlt", temp / "here.zqlt");
    app.reset();
    // Paths count from the user's folder.
    std::filesystem::current_path(temp.Path());
    EXPECT_TRUE(Start("here.zqlt"));
    EXPECT_EQ(std::filesystem::current_path(), programs);
    EXPECT_EQ(Doc().PathName(), temp / "here.zqlt");
    PutFile(temp / "bad.zqlt", "x");
    for (const std::string name : {"missing.zqlt", "bad.zqlt"}) {
        app.reset();
        script.ExpectMessage(name);
        EXPECT_FALSE(Start(temp / name));
    }
}

TEST_F(Shell, SavesUnderANameOpensItAgainAndKeepsWhatItDrops) {
    const auto kept = [&] { return ListKept(keep).size(); };
    Frame().Choose(kCmdFileNew);
    EXPECT_EQ(kept(), 0u) << "an unaltered world is not kept";
    Board().PutTile(3, 4, 65, 14, 2, 1);
    const std::string path = temp / "my game.zqlt", second = temp / "Untitled2.zqlt";
    script.ExpectFile("save", path);
    Frame().Choose(kCmdFileSave);
    EXPECT_EQ(Frame().caption, "my game.zqlt - Tessel Works's QUILT!");
    Board().PutTile(3, 4, 66, 14, 2, 1);
    Frame().Choose(kCmdFileSave);  // no dialog
    EXPECT_EQ(kept(), 1u) << "the file that was replaced";
    EXPECT_NE(Frame().notice.find(path + ": 1 board, 0 objects, "), std::string::npos);
    Board().PutTile(3, 4, 67, 14, 2, 1);
    Frame().Choose(kCmdFileNew);
    EXPECT_EQ(kept(), 2u);
    EXPECT_EQ(Board().GetTile(3, 4)->chr, 0) << "replaced without a question";
    EXPECT_EQ(FindEntry(Frame().bar, kCmdFileRecent)->text, "&1 " + path);
    Frame().Choose(kCmdFileRecent);
    EXPECT_EQ(Board().GetTile(3, 4)->chr, 66);
    // A kept game is saved under a name of its own.
    ASSERT_TRUE(Doc().OnOpenDocument(ListKept(keep)[0].path));
    EXPECT_EQ(Board().GetTile(3, 4)->chr, 67);
    EXPECT_EQ(Doc().PathName() + std::to_string(kept()), "2") << "nothing more to keep";
    for (const auto& answer : {std::optional(second), std::optional<std::string>()}) {
        script.ExpectFile("save", answer);
        Frame().Choose(kCmdFileSave);  // asks each time, for its name
        EXPECT_EQ(Doc().PathName(), second);
    }
    EXPECT_THAT(RecentFiles(), ElementsAre(second, path));
    EXPECT_EQ(script.GetProfileString("Recent File List", "File2", ""), path);

    // Six recent files are kept; one that is not there leaves the list.
    for (int i = 1; i <= 8; ++i) AddRecentFile("f" + std::to_string(i));
    AddRecentFile("x/.././f5");
    app->Frame().UpdateMenuBar();
    script.ExpectMessage("could not be opened");
    Frame().Choose(kCmdFileRecent + 1);
    std::string names;
    for (const std::string& file : RecentFiles()) names += file.back();
    EXPECT_EQ(names, "57643");
}

TEST_F(Shell, WhatCannotBeOpenedOrSavedLeavesTheGameAsItWas) {
    const std::string good = temp / "good.zqlt";
    script.ExpectFile("save", good);
    Frame().Choose(kCmdFileSaveAs);
    Board().name = "kept";
    // Now and then, when the view has been painted.
    app->Kept().last -= KeptGames::kEvery;
    Frame().Edit().Paint();
    const std::string sessions = keep + "/.session-", own = sessions + std::to_string(getpid());
    for (int i = 0; i < 5000 && FileBytes(own).empty(); ++i) usleep(1000);
    const std::string record = FileBytes(own);
    EXPECT_EQ(ListKept(keep).size(), 1u);
    for (const auto& [path, message] :
         {std::pair(temp.Path(), "could not be opened"),
          {PutFile(temp / "text.zqlt", "no archive"), "could not be loaded"},
          {PutFile(temp / "empty.zqlt", MakeZip({{"res.dat", "0 0"}})), "There is no game in"},
          {temp / "no folder/x.zqlt", "could not be saved"}}) {
        const bool saves = path.ends_with("x.zqlt");
        script.ExpectFile(saves ? "save" : "open", path);
        script.ExpectMessage(message);
        Frame().Choose(saves ? kCmdFileSaveAs : kCmdFileOpen);
        EXPECT_EQ(Doc().PathName() + Board().name, good + "kept") << path;
    }
    EXPECT_THAT(RecentFiles(), ElementsAre(good));
    // What a run that did not come to its end has kept is offered; what is left is kept.
    app.reset();
    PutFile(sessions + "2147483647", record);
    script.ExpectMessage("did not come to its end");
    EXPECT_TRUE(Start("") && Board().name == "kept");
    Board().name = "left";
    app.reset();
    EXPECT_EQ(ListKept(keep).size(), 5u);
}

TEST_F(Shell, RunSavesTheGameAndStartsThePlayerOnIt) {
    const auto run = [this](int button, bool ticked, std::optional<std::string> path = {}) {
        script.ExpectDialog("Save Notification", [button, ticked](ScriptedForm& form) {
            EXPECT_TRUE(form.IsChecked(kNoticeHide)) << "it opens ticked";
            if (!ticked) form.Click(kNoticeHide);
            form.Click(button);
        });
        if (button == kIdOk && ticked) script.ExpectFile("save", std::move(path));
        Frame().Choose(kCmdRun);
    };
    const std::string game = temp / "my \"best\" game.zqlt";
    const std::array<std::string, 3> started{programs + "/QUILT! Runner", game, programs};
    // Every Cancel leaves all as it was.
    run(kIdCancel, true);
    run(kIdOk, true);
    EXPECT_THAT(script.started, ElementsAre());
    EXPECT_EQ(Doc().Title(), "Untitled");
    run(kIdOk, true, game);
    const std::string first = FileBytes(game);
    Board().PutTile(1, 1, 65, 4, 5, 0);
    // Without the tick the notice does not come again.
    run(kIdOk, false);
    EXPECT_THAT(script.started, ElementsAre(started, started));
    EXPECT_NE(FileBytes(game), first) << "the player reads what the editor holds";
}
