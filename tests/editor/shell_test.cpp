// The frame: what every entry of every menu does, and the list.

#include "editor/commands.h"
#include "editor/shell/panel_ids.h"
#include "editor/shell/quilt_app.h"
#include "editor/shell/tree_menus.h"
#include "editor/view/object_clip.h"
#include "platform/keys.h"
#include "tests/support/scripted_platform.h"

#include <filesystem>
#include <map>
#include <regex>
#include <set>

using namespace platform;
using Events = WindowEvents;

namespace {

// The rows of the list.
enum Row { kAttic = 1, kLamp, kBulb, kShelf, kCellar };

Point At(int row) { return {30, row * 10 + 5}; }

class Shell : public testing::Test {
protected:
    Shell() { EXPECT_TRUE(app.InitInstance(std::filesystem::current_path().string(), "")); }

    ScriptedFrame& Frame() { return *script.frame; }
    ScriptedWindow& List() { return Frame().List(); }
    /// "Attic(lamp(bulb) shelf)" in place of what there is, and a second board.
    void Plant(bool second = true) {
        vWorld->Root().EraseAll();
        attic = Add(vWorld->Root(), "Attic", 6);
        lamp = Add(*attic, "lamp", 2);
        bulb = Add(*lamp, "bulb", 3);
        shelf = Add(*attic, "shelf", 1);
        lamp->posx = 3;
        lamp->script = "#end";
        bulb->PutTile(0, 0, 9, 8, 7, 6);
        bulb->vieww = 1;
        if (second) Add(vWorld->Root(), "Cellar", 4);
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
        for (const auto& child : node.children)
            inside += (inside.empty() ? "" : " ") + Shape(*child);
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

    ScriptedPlatform script;
    CQuiltApp app;
    Dobject *attic = nullptr, *lamp = nullptr, *bulb = nullptr, *shelf = nullptr;
};

}  // namespace

TEST_F(Shell, EntriesOfTheBarDoSomething) {
    const std::map<int, const char*> told{
        {kCmdFileNew, "new "},
        {kCmdFileOpen, "open : "},
        {kCmdFileSave, "save : "},
        {kCmdFileSaveAs, "save : "},
        {kCmdRun, "dialog Save Notification: save : "},
        {kCmdFileExit, "message Do you want to quit?: closed "},
        {kCmdAbout, "dialog About QUILT!: "},
        {kCmdVideoMode, "mode 0 "},
        {kCmdVideoMode + 1, ""},
        {kCmdVideoMode + 2, "mode 2 "},
        {kCmdVideoMode + 3, "mode 3 "},
        {kCmdWindowed, "window "},
        {kCmdStatusBar, "bar "},
        {kCmdFontEdit, "dialog Font Edit: "},
        {kCmdTileClipboard, "dialog Tile ClipBoard: "},
        {kCmdObjectClipboard, "dialog Object ClipBoard: "},
    };
    script.answersAll = true;
    std::size_t entries = 0;
    const Menu bar = Frame().bar;
    ForEachEntry(bar, [&](const MenuItem& item) {
        if (!item.enabled) return;
        SCOPED_TRACE(item.text);
        ++entries;
        vWorld->videoMode = vWorld->windowed = 1;
        Frame().statusBar = true;
        Frame().closed = false;
        Frame().InvalidateAll();
        Plant();
        Frame().Edit().invalidated = 0;
        Frame().Choose(item.command);
        std::string text = Outcome();
        text.resize(text.find('('));
        if (vWorld->Root().children.front()->name != "Attic") text += "new ";
        if (Frame().closed) text += "closed ";
        if (vWorld->videoMode != 1) text += "mode " + std::to_string(vWorld->videoMode) + " ";
        if (!vWorld->windowed) text += "window ";
        if (!Frame().statusBar) text += "bar ";
        EXPECT_EQ(text, told.at(item.command));
        for (int mode = 0; mode < kVideoModes; ++mode)
            EXPECT_EQ(FindEntry(Frame().bar, kCmdVideoMode + mode)->checked,
                      mode == vWorld->videoMode);
        EXPECT_EQ(FindEntry(Frame().bar, kCmdWindowed)->checked, vWorld->windowed == 1);
        EXPECT_EQ(FindEntry(Frame().bar, kCmdStatusBar)->checked, Frame().statusBar);
        const bool draws =
            text.starts_with("mode") || text == "new " || text == "dialog Font Edit: ";
        EXPECT_TRUE(!draws || Frame().Edit().invalidated);
    });
    EXPECT_EQ(entries, told.size());
}

TEST_F(Shell, EntriesOfTheListDoSomething) {
    const struct {
        int row, command;
        const char* after;
        char redraws;        ///< after that the list, all or none
        bool second = true;  ///< beside a second board
    } cases[] = {
        {kAttic, kCmdAddBoard, "dialog Name: (Attic(lamp#@3(bulb) shelf) Cellar NewBoard*)", 'l'},
        {kAttic, kCmdAddObject, "dialog Name: (Attic(lamp#@3(bulb) shelf NewObject*) Cellar)", 'l'},
        {kBulb, kCmdAddObject, "dialog Name: (Attic(lamp#@3(bulb(NewObject*)) shelf) Cellar)", 'l'},
        {kAttic, kCmdDuplicateBoard,
         "(Attic*(lamp#@3(bulb) shelf) Cellar Attic(lamp#@3(bulb) shelf))", 'l'},
        {kAttic, kCmdPasteBoard, "(Attic*(lamp#@3(bulb) shelf) Cellar Dummy)", 'l'},
        {kAttic, kCmdPasteOnBoard, "(Attic*(lamp#@3(bulb) shelf Dummy) Cellar)", 'l'},
        {kShelf, kCmdPasteOnObject, "(Attic(lamp#@3(bulb) shelf*(Dummy)) Cellar)", 'a'},
        {kAttic, kCmdCopyBoard, "(Attic*(lamp#@3(bulb) shelf) Cellar) Attic", 'n'},
        {kLamp, kCmdCopyObject, "(Attic(lamp#@3*(bulb) shelf) Cellar) lamp", 'n'},
        {kAttic, kCmdDelete, "message Delete Board?: (Cellar*)", 'a'},
        {kBulb, kCmdDelete, "message Delete Object?: (Attic*(lamp#@3 shelf) Cellar)", 'a'},
        {kBulb, kCmdDelete, "message Delete Object?: (Attic*(lamp#@3(bulb) shelf))", 'a', false},
        {kAttic, kCmdBoardName, "dialog Name: (Attic*(lamp#@3(bulb) shelf) Cellar)", 'l'},
        {kShelf, kCmdObjectName, "dialog Name: (Attic(lamp#@3(bulb) shelf*) Cellar)", 'a'},
        {kShelf, kCmdProgramming, "dialog Programming: (Attic(lamp#@3(bulb) shelf*) Cellar)", 'n'},
        {kShelf, kCmdLocation, "dialog Location: (Attic(lamp#@3(bulb) shelf*) Cellar)", 'a'},
        {kShelf, kCmdSize, "dialog Size: (Attic(lamp#@3(bulb) shelf*) Cellar)", 'a'},
        {kShelf, kCmdViewport, "dialog Viewport: (Attic(lamp#@3(bulb) shelf*) Cellar)", 'a'},
        {kAttic, kCmdExpandAll, "(Attic+*(lamp#@3+(bulb+) shelf+) Cellar)", 'a'},
        {kLamp, kCmdHide, "(Attic([lamp]#@3*(bulb) shelf) Cellar)", 'a'},
        {kBulb, kCmdMoveBase, "(Attic*(lamp#@3 shelf(bulb)) Cellar)", 'a'},
    };
    script.answersAll = true;
    std::set<int> seen{kCmdNone};
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        Plant(c.second);
        seen.insert(c.command);
        List().Click(At(c.row));
        Frame().Edit().invalidated = 0;
        std::string after = Choose(c.row, c.command + (c.command == kCmdMoveBase ? shelf->id : 0));
        after = std::regex_replace(after, std::regex("NewObject\\d+"), "NewObject");
        if (vObjectClip->name != "Dummy") after += " " + vObjectClip->name;
        EXPECT_EQ(after, c.after);
        EXPECT_EQ(List().invalidated > 0, c.redraws != 'n');
        EXPECT_EQ(Frame().Edit().invalidated > 0, c.redraws == 'a');
    }
    for (const Menu& menu : {MakeBoardMenu(), MakeObjectMenu()})
        ForEachEntry(menu, [&](const MenuItem& item) {
            EXPECT_TRUE(seen.count(item.command)) << item.text;
        });

    // What the menus offer. Beside every row the menu is the selection's.
    Plant();
    Choose(kAttic, 0);
    EXPECT_EQ(Outline(script.lastMenu),
              "&Add(&Board &Object &Duplicate &Paste(&Board &Object)) &Copy &Delete | &Name "
              "&Programming &Location &Size &Viewport | &Expand All | &Cancel");
    Choose(kLamp, kCmdHide);
    shelf->name = "&";
    Choose(30, 0);
    EXPECT_EQ(Outline(script.lastMenu),
              "&Add(&New &Paste) &Edit(&Copy Move(Attic(&Here ... !lamp(!&Here ... !bulb(!&Here "
              "...)) &&(&Here ...)) Cellar(&Here ...))) &Delete | &Name &Programming &Location "
              "&Size &Viewport | +&Hide | &Cancel");
    EXPECT_EQ(script.lastMenuAt, List().ClientToScreen({30, 310}));
    Choose(kLamp, kCmdHide);
    EXPECT_EQ(lamp->hidden, 0);

    // What is copied goes deep and is its own; it is pasted in the font of the present.
    Choose(kLamp, kCmdCopyObject);
    bulb->PutTile(0, 0, 1, 1, 1, 1);
    vPanelMode = kPanelProperties;
    for (int way = 0; way < 3; ++way) {
        Dfont& glyphs = *vWorld->GetFont();
        const int pixel = !glyphs.GetGlyphPixel(9, 3, 4);
        glyphs.PutGlyphPixel(9, 3, 4, pixel);
        if (way == 0) Frame().Choose(kCmdObjectClipboard);
        if (way == 1) Choose(kShelf, kCmdPasteOnObject);
        if (way == 2) Frame().Edit().Key(kKeySpace);
        const Dobject& copy = way ? *shelf->children.back() : *vObjectClip;
        EXPECT_EQ(*copy.children.front()->GetTile(0, 0), (Dtile{9, 8, 7, 6}));
        EXPECT_EQ(getpixel(copy.children.front()->vSurf.get(), 3, 4), pixel ? 8 : 7);
        EXPECT_EQ(copy.posx, 0);
    }

    // Cancel and refusals: onto itself, a descendant, the root, nothing, and without a clipboard.
    const std::string shape = Choose(kLamp, 0);
    script.ExpectMenu(kCmdDelete);
    script.ExpectMessage("Delete Object?", false);
    List().Send(&Events::OnRButtonDown, false, At(kLamp));
    vObjectClip.reset();
    for (int command :
         {kCmdMoveBase + lamp->id, kCmdMoveBase + bulb->id, int{kCmdMoveBase}, kCmdMoveBase + 77777,
          int{kCmdPasteBoard}, int{kCmdPasteOnBoard}, int{kCmdPasteOnObject}}) {
        app.Frame().List().OnCommand(command);
        vWorld->currentObject = lamp->id;
        EXPECT_EQ(Outcome(), shape) << command;
    }
    MakeObjectClip();

    // A new board is the one on view already while its name is asked for; and more nodes than
    // there are handles.
    Plant();
    script.ExpectMenu(kCmdAddBoard);
    script.ExpectDialog("Name", [&](ScriptedForm& form) {
        EXPECT_NE(attic->posy, 0);
        form.Click(kIdCancel);
    });
    List().Send(&Events::OnRButtonDown, false, At(kAttic));
    EXPECT_EQ(vWorld->Root().children.back()->posy, 0);
    for (int i = 0; i < 2000; ++i) Add(*attic, "n", 1);
    Choose(kLamp, kCmdMoveBase + attic->children.back()->id);
    EXPECT_EQ(lamp->parent, attic->children.back().get());
}

TEST_F(Shell, TheListSelectsScrollsAndSwaps) {
    Plant();
    List().Click(At(kLamp));
    EXPECT_EQ(Outcome(), "(Attic(lamp#@3*(bulb) shelf) Cellar)");
    const Dobject& cellar = *vWorld->Root().children.back();
    const int parked[] = {240, 480, 592, 768};
    for (vWorld->videoMode = 3; vWorld->videoMode > 0; --vWorld->videoMode) {
        List().Click(At(kBulb));
        EXPECT_EQ(cellar.posy, parked[vWorld->videoMode]) << "the other board";
    }
    List().Drag(At(kLamp), At(kCellar));
    EXPECT_EQ(vWorld->currentBoard, cellar.id) << "a drag runs through the rows";
    EXPECT_FALSE(List().captured);
    List().Send(&Events::OnMouseMove, false, At(kAttic));
    EXPECT_EQ(vWorld->currentBoard, cellar.id) << "no button is held";

    List().Click(At(kLamp));
    lamp->hidden = 1;
    const auto shows = [&](int columns, int rows, const std::string& description) {
        List().Paint();
        const Bitmap picture = MakeBitmap(200, 768);
        vWorld->DrawTreeList(columns, rows, picture.get());
        List().ExpectPicture(picture.get());
        EXPECT_EQ(List().description, description);
    };
    List().Drag({50, 50}, {21, 31}, true);
    shows(2, 1, "Object lamp, z 1, hidden, in Attic");
    List().Click({20, 15});
    EXPECT_EQ(vWorld->currentObject, lamp->id) << "the row that is shown there";
    List().Send(&Events::OnMouseWheel, 120);
    shows(2, 6, "The selected row is not among the rows shown");
    List().Drag({0, 0}, {500, 0}, true);
    List().Send(&Events::OnMouseWheel, -120);
    List().Send(&Events::OnMouseWheel, -120);
    List().Click(At(kAttic));
    shows(0, 0, "Board Attic, z 0");

    // A double click opens the script, with Ctrl it swaps the panels.
    script.ExpectDialog("Programming", [](ScriptedForm& form) { form.Click(kIdOk); });
    List().Send(&Events::OnLButtonDblClk, false, At(kAttic));
    attic->vieww = 2;
    for (const bool toPaint : {false, true, false}) {
        List().Send(&Events::OnLButtonDblClk, true, At(kAttic));
        EXPECT_EQ(vPanelMode, toPaint ? kPanelPaint : kPanelProperties);
        EXPECT_EQ(attic->evieww, toPaint ? 2 : 0);
        EXPECT_EQ(attic->vieww, toPaint ? 6 : 2);
        script.Run();
        EXPECT_EQ(Frame().panel->Picture(kBrushPreview) != nullptr, toPaint);
    }
}
