// The frame: what every entry of every menu does, the list, and the two panels.

#include "editor/commands.h"
#include "editor/shell/menu_bar.h"
#include "editor/shell/panel_ids.h"
#include "editor/shell/quilt_app.h"
#include "editor/shell/tree_menus.h"
#include "editor/view/brush.h"
#include "editor/view/object_clip.h"
#include "editor/view/tool_menus.h"
#include "platform/keys.h"
#include "tests/support/scripted_platform.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <map>

using namespace platform;
using Events = WindowEvents;

namespace {

class Shell : public testing::Test {
protected:
    Shell() { EXPECT_TRUE(app.InitInstance(std::filesystem::current_path().string(), "")); }

    ScriptedFrame& Frame() { return *script.frame; }
    ScriptedForm& Panel() { return *Frame().panel; }
    ScriptedWindow& List() { return Frame().List(); }
    /// "Attic(lamp(bulb) shelf)" in place of what there is, and the tree in that form.
    void Plant(bool secondBoard) {
        vWorld->Root().EraseAll();
        attic = Add(vWorld->Root(), "Attic", 6);
        lamp = Add(*attic, "lamp", 2);
        bulb = Add(*lamp, "bulb", 3);
        shelf = Add(*attic, "shelf", 1);
        lamp->posx = 3;
        lamp->script = "#end";
        bulb->PutTile(0, 0, 9, 8, 7, 6);
        bulb->vieww = 1;
        if (secondBoard) Add(vWorld->Root(), "Cellar", 4);
        vWorld->currentBoard = vWorld->currentObject = attic->id;
        MakeObjectClip();
    }
    static Dobject* Add(Dobject& parent, const char* name, int w) {
        Dobject* node = &parent == &vWorld->Root() ? parent.Spawn_Back(vWorld->TakeId(), 0)
                                                   : parent.Spawn(vWorld->TakeId(), 1);
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
    static std::string Shape() { return Shape(vWorld->Root()).substr(kRootName.size()); }
    // A pixel that hits the node's row.
    static Point RowOf(const Dobject& node) {
        int row = 0, found = 0;
        const std::function<void(const Dobject&)> walk = [&](const Dobject& parent) {
            for (const auto& child : parent.children) {
                ++row;
                if (child.get() == &node) found = row;
                walk(*child);
            }
        };
        walk(vWorld->Root());
        return {30, found * 10 + 5};
    }
    // A right click on the node's row with that choice, and what was asked and came of it.
    std::string Choose(const Dobject& node, int command, const std::string& name = "") {
        script.asked.clear();
        script.ExpectMenu({}, command);
        if (!name.empty())
            script.ExpectDialog("Name", [&](ScriptedForm& form) {
                script.asked.push_back("dialog Name " + form.GetText(1001).substr(0, 9));
                form.Type(1001, name);
                form.Click(kIdOk);
            });
        List().Send(&Events::OnRButtonDown, false, RowOf(node));
        return Asked() + Shape();
    }
    std::string Asked() const {
        std::string text;
        for (const std::string& asked : script.asked)
            text += asked.substr(0, asked.find('\n')) + ": ";
        return text;
    }

    ScriptedPlatform script;
    CQuiltApp app;
    Dobject *attic = nullptr, *lamp = nullptr, *bulb = nullptr, *shelf = nullptr;
};

std::string Outline(const Menu& menu) {
    std::string text;
    for (const MenuItem& item : menu) {
        if (!text.empty()) text += " ";
        if (item.kind == MenuItem::Kind::Separator) text += "|";
        if (!item.enabled) text += "!";
        text += (item.checked ? "+" : "") + item.text;
        if (!item.key.empty()) text += "=" + item.key;
        if (!item.prompt.empty()) text += "{" + item.prompt + "}";
        if (item.kind == MenuItem::Kind::SubMenu) text += "(" + Outline(item.items) + ")";
    }
    return text;
}

}  // namespace

TEST_F(Shell, MenusReadAsTheyShould) {
    EXPECT_EQ(Outline(MakeMenuBar({"/a&b"})),
              "&File(&New=Ctrl+N{Create a new QUILT! game} &Open...=Ctrl+O{Open an existing QUILT! "
              "game} &Save=Ctrl+S{Save the currently loaded QUILT! game} Save &As...{Save the "
              "currently loaded QUILT! game with a new name} &Run=Ctrl+R{Run the currently loaded "
              "QUILT! game} | &1 /a&&b{Open this QUILT! game} | E&xit{Quit QUILT!; prompts to save "
              "currently loaded QUILT! game}) &Set Video Mode(320 x 240 640 x 480 800 x 600 1024 x "
              "768 | Windowed{Toggle windowed video mode}) &View(&Status Bar{Show or hide the "
              "status bar} &Font Edit=Ctrl+F{Edit the fontset} &Tile ClipBoard=Ctrl+T{Show the "
              "tile clipboard dialog} &Object Clipboard=Ctrl+C{Show the object clipboard dialog}) "
              "&Help(&About QUILT!...)");
    EXPECT_EQ(Outline(MakeToolMenu()),
              "&Fill Fa&de(&Normal &Distance &Slime) &Speckle | F&lood(&Fill Fa&de(&Normal "
              "&Distance &Slime) &Speckle) Same&As(&Fill Fa&de(&Normal &Distance) &Speckle) "
              "&Replace(&Fill &Speckle | F&lood(&Fill &Speckle) Same&As(&Fill &Speckle)) | "
              "&Copy(&Fill F&lood &SameAs) &Paste(&Fill F&lood &SameAs S&prite) | Zoom &In Zoom "
              "&Out | R&uler &Make Object | Cancel");
    EXPECT_EQ(Outline(MakePrimMenu()),
              "&Line(&Fill Fa&de(&Normal &Distance) &Speckle) &Rect(&Fill Fa&de(&Normal &Distance) "
              "&Speckle) &Circle(&Fill Fa&de(&Normal &Distance) &Speckle) | &Blend Fade(&Fill "
              "F&lood &SameAs) Cancel");
    Plant(true);
    script.answersAll = true;
    Choose(*attic, 0);
    EXPECT_EQ(Outline(script.lastMenu),
              "&Add(&Board &Object &Duplicate &Paste(&Board &Object)) &Copy &Delete | &Name "
              "&Programming &Location &Size &Viewport | &Expand All | &Cancel");
    lamp->hidden = 1;
    shelf->name = "&";
    Choose(*lamp, 0);
    EXPECT_EQ(Outline(script.lastMenu),
              "&Add(&New &Paste) &Edit(&Copy Move(Attic(&Here ... !lamp(!&Here ... !bulb(!&Here "
              "...)) &&(&Here ...)) Cellar(&Here ...))) &Delete | &Name &Programming &Location "
              "&Size &Viewport | +&Hide | &Cancel");
    EXPECT_EQ(script.lastMenuAt, List().ClientToScreen({30, RowOf(*lamp).y + 5}));
    // Beside every row the menu is the selection's.
    script.ExpectMenu({}, 0);
    List().Send(&Events::OnRButtonDown, false, Point{30, 500});
    EXPECT_EQ(script.lastMenu[1].text, "&Edit");
    lamp->name = kRootName;
    Choose(*bulb, 0);
    EXPECT_EQ(script.lastMenu[1].text, "&Copy") << "boards are told by their parent's name";
}

TEST_F(Shell, EntriesOfTheBarDoSomething) {
    const std::map<int, const char*> told{
        {kCmdFileNew, "new "},
        {kCmdFileOpen, "open "},
        {kCmdFileSave, "save "},
        {kCmdFileSaveAs, "save "},
        {kCmdRun, "dialog Save Notification: save "},
        {kCmdFileExit, "message Do you want to quit?: closed "},
        {kCmdAbout, "message QUILT! "},
        {kCmdVideoMode, "mode 0 "},
        {kCmdVideoMode + 1, ""},
        {kCmdVideoMode + 2, "mode 2 "},
        {kCmdVideoMode + 3, "mode 3 "},
        {kCmdWindowed, "window 0 "},
        {kCmdStatusBar, "bar 0 "},
        {kCmdFontEdit, "dialog Font Edit: "},
        {kCmdTileClipboard, "dialog Tile ClipBoard: "},
        {kCmdObjectClipboard, "dialog Object ClipBoard: "},
    };
    script.answersAll = true;
    const Menu bar = Frame().bar;
    int entries = 0;
    ForEachEntry(bar, [&](const MenuItem& item) {
        if (!item.enabled) return;
        SCOPED_TRACE(item.text);
        ++entries;
        vWorld->videoMode = 1;
        vWorld->windowed = 1;
        Frame().InvalidateAll();
        Frame().statusBar = true;
        script.asked.clear();
        vWorld->Root().children.front()->name = "old";
        Frame().Edit().invalidated = 0;
        Frame().Choose(item.command);
        std::string text;
        for (const std::string& asked : script.asked) {
            const bool file = asked.starts_with("open") || asked.starts_with("save");
            text += file ? asked.substr(0, 5) : asked.substr(0, asked.find('\n')) + ": ";
        }
        if (vWorld->Root().children.front()->name != "old") text += "new ";
        if (Frame().closed) text += "closed ";
        if (vWorld->videoMode != 1) text += "mode " + std::to_string(vWorld->videoMode) + " ";
        if (!vWorld->windowed) text += "window 0 ";
        if (!Frame().statusBar) text += "bar 0 ";
        ASSERT_TRUE(told.count(item.command));
        if (item.command == kCmdAbout) text.resize(std::min<std::size_t>(text.size(), 15));
        EXPECT_EQ(text, told.at(item.command));
        for (int mode = 0; mode < kVideoModes; ++mode)
            EXPECT_EQ(FindEntry(Frame().bar, kCmdVideoMode + mode)->checked,
                      mode == vWorld->videoMode);
        EXPECT_EQ(FindEntry(Frame().bar, kCmdWindowed)->checked, vWorld->windowed == 1);
        EXPECT_EQ(FindEntry(Frame().bar, kCmdStatusBar)->checked, Frame().statusBar);
        const bool draws = text.find("mode") == 0 || text == "new " || item.command == kCmdFontEdit;
        EXPECT_TRUE(!draws || Frame().Edit().invalidated);
        Frame().closed = false;
    });
    EXPECT_EQ(entries, 16);
}

TEST_F(Shell, EntriesOfTheListDoSomething) {
    const struct {
        char on;  ///< Attic, lamp, bulb or shelf
        int command;
        const char* name;  ///< typed
        const char* after;
        char redraws;        ///< after that the list, all or none
        bool second = true;  ///< beside a second board
    } cases[] = {
        {'A', kCmdAddBoard, "Hall",
         "dialog Name NewBoard: (Attic(lamp#@3(bulb) shelf) Cellar Hall*)", 'l'},
        {'A', kCmdAddObject, "cat",
         "dialog Name NewObject: (Attic(lamp#@3(bulb) shelf cat*) Cellar)", 'l'},
        {'b', kCmdAddObject, "cat",
         "dialog Name NewObject: (Attic(lamp#@3(bulb(cat*)) shelf) Cellar)", 'l'},
        {'A', kCmdDuplicateBoard, "",
         "(Attic*(lamp#@3(bulb) shelf) Cellar Attic(lamp#@3(bulb) shelf))", 'l'},
        {'A', kCmdPasteBoard, "", "(Attic*(lamp#@3(bulb) shelf) Cellar Dummy)", 'l'},
        {'A', kCmdPasteOnBoard, "", "(Attic*(lamp#@3(bulb) shelf Dummy) Cellar)", 'l'},
        {'s', kCmdPasteOnObject, "", "(Attic(lamp#@3(bulb) shelf*(Dummy)) Cellar)", 'a'},
        {'A', kCmdCopyBoard, "", "(Attic*(lamp#@3(bulb) shelf) Cellar) Attic", 'n'},
        {'l', kCmdCopyObject, "", "(Attic(lamp#@3*(bulb) shelf) Cellar) lamp", 'n'},
        {'A', kCmdDelete, "", "message Delete Board?: (Cellar*)", 'a'},
        {'b', kCmdDelete, "", "message Delete Object?: (Attic*(lamp#@3 shelf) Cellar)", 'a'},
        {'b', kCmdDelete, "", "message Delete Object?: (Attic*(lamp#@3(bulb) shelf))", 'a', false},
        {'A', kCmdBoardName, "x", "dialog Name Attic: (x*(lamp#@3(bulb) shelf) Cellar)", 'l'},
        {'s', kCmdObjectName, "x", "dialog Name shelf: (Attic(lamp#@3(bulb) x*) Cellar)", 'a'},
        {'s', kCmdProgramming, "", "dialog Programming: (Attic(lamp#@3(bulb) shelf*) Cellar)", 'n'},
        {'s', kCmdLocation, "", "dialog Location: (Attic(lamp#@3(bulb) shelf*) Cellar)", 'a'},
        {'s', kCmdSize, "", "dialog Size: (Attic(lamp#@3(bulb) shelf*) Cellar)", 'a'},
        {'s', kCmdViewport, "", "dialog Viewport: (Attic(lamp#@3(bulb) shelf*) Cellar)", 'a'},
        {'A', kCmdExpandAll, "", "(Attic+*(lamp#@3+(bulb+) shelf+) Cellar)", 'a'},
        {'l', kCmdHide, "", "(Attic([lamp]#@3*(bulb) shelf) Cellar)", 'a'},
        {'b', kCmdMoveBase, "", "(Attic*(lamp#@3 shelf(bulb)) Cellar)", 'a'},
    };
    script.answersAll = true;
    std::set<int> seen{kCmdNone};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(&c - cases) + std::string(" on ") + c.on);
        Plant(c.second);
        seen.insert(c.command);
        const Dobject& on = *(c.on == 'A'   ? attic
                              : c.on == 'l' ? lamp
                              : c.on == 'b' ? bulb
                                            : shelf);
        if (c.command == kCmdHide) {
            Choose(on, kCmdHide);
            EXPECT_EQ(lamp->hidden, 1);
            Choose(on, kCmdHide);
            EXPECT_EQ(lamp->hidden, 0);
        }
        Frame().Edit().invalidated = 0;
        std::string after =
            Choose(on, c.command + (c.command == kCmdMoveBase ? shelf->id : 0), c.name);
        if (vObjectClip->name != "Dummy") after += " " + vObjectClip->name;
        EXPECT_EQ(after, c.after);
        EXPECT_EQ(List().invalidated > 0, c.redraws != 'n');
        EXPECT_EQ(Frame().Edit().invalidated > 0, c.redraws == 'a');
    }
    for (const Menu& menu : {MakeBoardMenu(), MakeObjectMenu()})
        ForEachEntry(menu, [&](const MenuItem& item) {
            EXPECT_TRUE(seen.count(item.command)) << item.text;
        });

    // What is copied goes deep and is its own; it is pasted in the font of the present.
    Plant(true);
    Choose(*lamp, kCmdCopyObject);
    bulb->PutTile(0, 0, 1, 1, 1, 1);
    Dfont& glyphs = *vWorld->GetFont();
    const auto paste = [&](const std::function<void()>& act) {
        glyphs.PutGlyphPixel(9, 3, 4, !glyphs.GetGlyphPixel(9, 3, 4));
        act();
        const int wanted = glyphs.GetGlyphPixel(9, 3, 4) ? 8 : 7;
        const Dobject& copy = shelf->children.empty() ? *vObjectClip : *shelf->children.back();
        EXPECT_EQ(*copy.children.front()->GetTile(0, 0), (Dtile{9, 8, 7, 6}));
        EXPECT_EQ(getpixel(copy.children.front()->vSurf.get(), 3, 4), wanted);
        EXPECT_EQ(copy.posx, 0);
    };
    paste([&] { Frame().Choose(kCmdObjectClipboard); });
    paste([&] { Choose(*shelf, kCmdPasteOnObject); });
    vPanelMode = kPanelProperties;
    paste([&] { Frame().Edit().Keys({kKeySpace}); });
    vPanelMode = kPanelPaint;

    // Cancel and refusals: onto itself, a descendant, the root, nothing, and without a clipboard.
    const std::string shape = Choose(*lamp, 0);
    script.ExpectMenu({}, kCmdDelete);
    script.ExpectMessage("Delete Object?", false);
    List().Send(&Events::OnRButtonDown, false, RowOf(*lamp));
    EXPECT_EQ(script.lastCaption, "lamp");
    EXPECT_EQ(Shape(), shape);
    vObjectClip.reset();
    for (int command :
         {kCmdMoveBase + lamp->id, kCmdMoveBase + bulb->id, int{kCmdMoveBase}, kCmdMoveBase + 77777,
          int{kCmdPasteBoard}, int{kCmdPasteOnBoard}, int{kCmdPasteOnObject}}) {
        vWorld->currentObject = lamp->id;
        app.Frame().List().OnCommand(command);
        vWorld->currentObject = lamp->id;
        EXPECT_EQ(Shape(), shape) << command;
    }
    MakeObjectClip();

    // More nodes than there are handles.
    for (int i = 0; i < 2000; ++i) Add(*attic, "n", 1);
    Choose(*lamp, kCmdMoveBase + attic->children.back()->id);
    EXPECT_EQ(lamp->parent, attic->children.back().get());
}

// --- the list ----------------------------------------------------------------------------------

TEST_F(Shell, TheListSelectsScrollsAndSwaps) {
    Plant(true);
    List().Click(RowOf(*lamp));
    EXPECT_EQ(Shape(), "(Attic(lamp#@3*(bulb) shelf) Cellar)");
    const Dobject& cellar = *vWorld->Root().children.back();
    for (const auto& [mode, row] :
         {std::pair(0, 240), std::pair(1, 480), std::pair(2, 592), std::pair(3, 768)}) {
        vWorld->videoMode = mode;
        List().Click(RowOf(*bulb));
        EXPECT_EQ(cellar.posy, row) << "the other board is parked";
    }
    List().Drag(RowOf(*lamp), RowOf(cellar));
    EXPECT_EQ(vWorld->currentBoard, cellar.id) << "a drag runs through the rows";
    EXPECT_FALSE(List().captured);
    List().Send(&Events::OnMouseMove, false, RowOf(*attic));
    EXPECT_EQ(vWorld->currentBoard, cellar.id) << "no button is held";

    List().Click(RowOf(*lamp));
    lamp->hidden = 1;
    const auto shows = [&](int columns, int rows, const std::string& description) {
        List().Paint();
        const Bitmap picture = MakeBitmap(200, 768);
        vWorld->DrawTreeList(columns, rows, picture.get());
        List().ExpectPicture(picture.get());
        EXPECT_EQ(List().description, description);
    };
    shows(0, 0, "Object lamp, z 1, hidden, in Attic");
    List().Drag({50, 50}, {21, 31}, true);
    shows(2, 1, "Object lamp, z 1, hidden, in Attic");
    List().Click({20, 15});
    EXPECT_EQ(vWorld->currentObject, lamp->id) << "the row that is shown there";
    List().Send(&Events::OnMouseWheel, 120);
    shows(2, 6, "The selected row is not among the rows shown");
    List().Send(&Events::OnMouseWheel, -120);
    shows(2, 1, "Object lamp, z 1, hidden, in Attic");
    List().Drag({0, 0}, {500, 0}, true);
    List().Send(&Events::OnMouseWheel, -120);
    List().Click(RowOf(*attic));
    shows(0, 0, "Board Attic, z 0");

    // A double click opens the script, with Ctrl it swaps the panels.
    script.ExpectDialog("Programming", [](ScriptedForm& form) { form.Click(kIdOk); });
    List().Send(&Events::OnLButtonDblClk, false, RowOf(*attic));
    attic->vieww = 2;
    for (const bool toPaint : {false, true, false}) {
        List().Send(&Events::OnLButtonDblClk, true, RowOf(*attic));
        EXPECT_EQ(vPanelMode, toPaint ? kPanelPaint : kPanelProperties);
        EXPECT_EQ(attic->evieww, toPaint ? 2 : 0);
        EXPECT_EQ(attic->vieww, toPaint ? 6 : 2);
        script.Pump();
        EXPECT_EQ(Panel().Picture(kBrushPreview) != nullptr, toPaint);
    }
}

// --- the panels --------------------------------------------------------------------------------

TEST_F(Shell, ThePaintPanelWritesAtOnce) {
    Plant(true);
    EXPECT_EQ(Panel().Look(), "'Brush - Normal' =0 [x] [ ] [ ] [ ] ! '0' '0'");
    ScriptedWindow& preview = Panel().Shown(kBrushPreview);
    preview.invalidated = 0;
    Frame().Edit().Keys({kKeyTab});
    EXPECT_EQ(Panel().Look(), "'Brush - TAB' =0 [x] [ ] [ ] [ ] ! '0' '0'");
    EXPECT_EQ(preview.invalidated, 1);
    Panel().Click(kRadioText);
    EXPECT_EQ(Panel().Look(), "'Brush - Text' =0 [ ] [ ] [x] [ ] ! '0' '0'");
    Panel().Click(kRadioBlender);
    EXPECT_EQ(Panel().Look(), "'Brush - Blender' =0 [ ] [x] [ ] [ ] ! '0' '0'");
    Frame().Edit().Keys({kKeyTab});
    EXPECT_EQ(Panel().Look(), "'Brush - Blender TAB' =0 [ ] [x] [ ] [ ] ! '0' '0'");
    EXPECT_EQ(vBrushMode, kBrushBlenderTab);
    Panel().Click(kRadioBrush);
    EXPECT_EQ(vBrushMode, kBrushNormal);
    EXPECT_EQ(preview.invalidated, 5);

    vBrush = {65, -2, 1, 3};
    for (const int slot : {3, 8, 0}) {
        Panel().Slide(kSlotSlider, slot);
        EXPECT_EQ(vBrush, slot ? Brush{} : (Brush{65, -2, 1, 3}));
    }
    EXPECT_EQ(preview.invalidated, 8);
    attic->PutTile(5, 1, 1, 1, 1, 1);
    Panel().Click(kSaveBackup);
    attic->PutTile(5, 1, 2, 2, 2, 2);
    const auto redraws = [this](const std::function<void()>& act) {
        Frame().Edit().invalidated = 0;
        act();
        EXPECT_GT(Frame().Edit().invalidated, 0);
    };
    redraws([&] { Panel().Click(kRestoreBackup); });
    EXPECT_EQ(*attic->GetTile(5, 1), (Dtile{1, 1, 1, 1}));
    redraws([&] { Panel().Click(kShowAttrib); });
    EXPECT_TRUE(vShowAttrib);

    attic->vieww = 2;
    Panel().Type(kStepX, "3");
    Panel().Type(kStepY, "");
    redraws([&] { Panel().Click(kScrollForward); });
    EXPECT_EQ(attic->viewx, 3);
    Panel().Click(kScrollForward);
    EXPECT_EQ(attic->viewx, 4) << "not past the end";
    redraws([&] { Panel().Click(kScrollBack); });
    EXPECT_EQ(attic->viewx, 1);
    // A step box reports once and may be empty for a while.
    Panel().Type(kStepY, "100");
    EXPECT_EQ(vStepY, 100);
    Panel().Type(kStepX, "");
    for (const char* text : {"101", "x"}) {
        script.ExpectMessage("integer between 0 and 100");
        Panel().Type(kStepY, text);
        EXPECT_EQ(Panel().focus, kStepY);
    }
    EXPECT_EQ(Panel().Look(), "'Brush - Normal' =0 [x] [ ] [ ] [x] '' '100'");
    EXPECT_FALSE(Panel().Press(kKeyEnter));
    EXPECT_EQ(Panel().GetText(kStepX), "3");

    Frame().Edit().focused = false;
    script.ExpectDialog("Brush Settings", [](ScriptedForm& form) { form.Click(kIdOk); });
    preview.Click({5, 5});
    EXPECT_TRUE(Frame().Edit().focused);
}

TEST_F(Shell, ThePropertiesPanelWritesAtOnce) {
    Plant(true);
    vBrushSlot = 4;
    Panel().Click(kShowAttrib);
    Panel().Click(kToProperties);
    script.Pump();
    EXPECT_EQ(vPanelMode, kPanelProperties);
    EXPECT_FALSE(vShowAttrib);
    EXPECT_EQ(Panel().Look(), "[ ] [ ] [ ]");
    Panel().Click(kFocusMode);
    EXPECT_EQ(vViewMode, kViewFocus);
    Panel().Click(kHideObjs);
    EXPECT_EQ(vViewMode, kViewFocus | kViewHideObjs);
    Panel().Click(kFocusMode);
    EXPECT_EQ(Panel().Look(), "[ ] [ ] [x]");
    attic->vieww = 2;
    for (const int shown : {6, 2}) {
        Frame().Edit().invalidated = 0;
        Panel().Click(kShowAll);
        EXPECT_EQ(attic->vieww, shown);
        EXPECT_GT(Frame().Edit().invalidated, 0);
    }
    for (const auto& [button, caption] :
         {std::pair(kNodeName, "Name"), std::pair(kNodeSize, "Size"),
          std::pair(kNodeViewport, "Viewport"), std::pair(kNodeLocation, "Location"),
          std::pair(kNodeProgramming, "Programming")}) {
        script.ExpectDialog(caption, [](ScriptedForm& form) { form.Click(kIdOk); });
        List().invalidated = 0;
        Panel().Click(button);
        EXPECT_EQ(List().invalidated, button != kNodeProgramming) << "all is redrawn";
    }
    lamp->posz = 7;
    vWorld->currentObject = lamp->id;
    ScriptedWindow& viewer = Panel().Shown(kPropViewer);
    viewer.invalidated = 0;
    Frame().Edit().Send(&Events::OnRButtonDown, false, Point{9, 9});
    EXPECT_EQ(viewer.invalidated, 1);
    viewer.Paint();
    EXPECT_EQ(viewer.description, "lamp, Location: 1 x 1 z 7, Size: 2 x 2, View: 2 x 2");
    const Bitmap picture = MakeBitmap(viewer.w, viewer.h);
    clear_to_color(picture.get(), 255);
    int row = 1;
    for (const char* text : {"lamp", "Location: 1 x 1 z 7", "Size: 2 x 2", "View: 2 x 2"}) {
        vWorld->GetFont()->DrawText(picture.get(), text, 15, 255, 1, row);
        row += 2;
    }
    viewer.ExpectPicture(picture.get());
    Panel().Click(kToPaint);
    script.Pump();
    EXPECT_EQ(vPanelMode, kPanelPaint);
    EXPECT_EQ(Panel().GetValue(kSlotSlider), 4);
}
