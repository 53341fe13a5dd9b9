// The list of boards and objects with its two menus, and the dialogs of a node's properties.

#include "editor/commands.h"
#include "editor/shell/do_location.h"
#include "editor/shell/do_name.h"
#include "editor/shell/do_object_clip_board.h"
#include "editor/shell/do_size.h"
#include "editor/shell/do_viewport.h"
#include "editor/shell/main_frame.h"
#include "editor/shell/panel_ids.h"
#include "editor/view/brush.h"
#include "editor/view/object_clip.h"
#include "platform/keys.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

using namespace platform;
using testing::ElementsAre;

namespace {

class Tree : public WorldTest {
protected:
    Tree() : frame([](int) {}) {
        EXPECT_TRUE(frame.Create());
        attic = &AddNode(world->Root(), "Attic", 6, 5);
        lamp = &AddNode(*attic, "lamp", 2, 2, 1);
        bulb = &AddNode(*lamp, "bulb", 1, 1);
        shelf = &AddNode(*attic, "shelf", 3, 1);
        world->currentBoard = attic->id;
        Select(*attic);
        reports.Clear();
    }
    void AddSecondBoard() { cellar = &AddNode(world->Root(), "Cellar", 4, 4, 9); }
    void Select(const Dobject& node) { world->currentObject = node.id; }
    CSelectView& View() { return *static_cast<CSelectView*>(script.frame->List().events); }
    // The row of a node in the list, as a pixel that hits it.
    static int RowOf(const Dobject& node) {
        int row = 0;
        int found = 0;
        std::function<void(const Dobject&)> walk = [&](const Dobject& parent) {
            for (const auto& child : parent.children) {
                ++row;
                if (child.get() == &node) found = row;
                walk(*child);
            }
        };
        walk(vWorld->Root());
        return found * 10 + 5;
    }
    // A right click on the node's row with that choice, and what it opens after it.
    void Choose(const Dobject& node, int command) {
        script.ExpectMenu({}, command);
        for (const auto& expect : later) expect();
        later.clear();
        View().OnRButtonDown(false, {30, RowOf(node)});
    }
    void ExpectDialog(const char* caption, const std::function<void(ScriptedForm&)>& person) {
        later.push_back([=, this] { script.ExpectDialog(caption, person); });
    }
    void ExpectMessage(const char* text, bool answer = true) {
        later.push_back([=, this] { script.ExpectMessage(text, answer); });
    }
    // Opens a dialog from a row's menu, sees what its fields hold, types and presses.
    struct Field {
        int id;
        std::string shown, typed;
    };
    void Change(const Dobject& node, int command, const char* caption,
                const std::vector<Field>& fields, const std::vector<int>& presses = {kIdOk}) {
        ExpectDialog(caption, [=](ScriptedForm& form) {
            for (const Field& field : fields) {
                EXPECT_EQ(form.GetText(field.id), field.shown);
                form.Type(field.id, field.typed);
            }
            for (int id : presses) form.Click(id);
        });
        Choose(node, command);
    }
    void Name(const Dobject& node, int command, const std::string& shown,
              const std::string& typed) {
        Change(node, command, "Name", {{kNameText, shown, typed}});
    }
    static std::string Shape(const Dobject& node) {
        std::string text = node.name;
        std::string inside;
        for (const auto& child : node.children)
            inside += (inside.empty() ? "" : " ") + Shape(*child);
        return inside.empty() ? text : text + "(" + inside + ")";
    }
    std::string Shape() { return Shape(world->Root()).substr(kRootName.size()); }

    ScriptedPlatform script;
    CMainFrame frame;
    std::vector<std::function<void()>> later;
    Dobject* attic = nullptr;
    Dobject* lamp = nullptr;
    Dobject* bulb = nullptr;
    Dobject* shelf = nullptr;
    Dobject* cellar = nullptr;
};

std::string Outline(const Menu& menu) {
    std::string text;
    for (const MenuItem& item : menu) {
        if (!text.empty()) text += " ";
        if (item.kind == MenuItem::Kind::Separator) text += "|";
        if (!item.enabled) text += "!";
        text += item.checked ? "+" + item.text : item.text;
        if (item.kind == MenuItem::Kind::SubMenu) text += "(" + Outline(item.items) + ")";
    }
    return text;
}

}  // namespace

TEST_F(Tree, ABoardAndAnObjectHaveTheirMenus) {
    Choose(*attic, 0);
    EXPECT_EQ(Outline(script.lastMenu),
              "&Add(&Board &Object &Duplicate &Paste(&Board &Object)) &Copy &Delete | &Name "
              "&Programming &Location &Size &Viewport | &Expand All | &Cancel");
    lamp->hidden = 1;
    Choose(*lamp, 0);
    EXPECT_EQ(world->currentObject, lamp->id);
    EXPECT_EQ(Outline(script.lastMenu),
              "&Add(&New &Paste) &Edit(&Copy Move(Attic(&Here ... !lamp(!&Here ... !bulb(!&Here "
              "...)) shelf(&Here ...)))) &Delete | &Name &Programming &Location &Size &Viewport | "
              "+&Hide | &Cancel");
    // Beside every row the menu is the selection's.
    script.ExpectMenu({}, 0);
    View().OnRButtonDown(false, {30, 500});
    EXPECT_EQ(script.lastMenu[1].text, "&Edit");
    lamp->name = kRootName;
    Choose(*bulb, 0);
    EXPECT_EQ(script.lastMenu[1].text, "&Copy") << "boards are told by their parent's name";
}

TEST_F(Tree, Adds) {
    Name(*attic, kCmdAddBoard, "NewBoard", "Big Hall\tEast");
    EXPECT_EQ(Shape(), "(Attic(lamp(bulb) shelf) Big_Hall_East)");
    EXPECT_EQ(world->currentBoard, world->Root().children.back()->id);
    Change(*attic, kCmdAddBoard, "Name", {{kNameText, "NewBoard", "x"}}, {kIdCancel});
    EXPECT_EQ(world->Root().children.back()->name, "NewBoard");
    Name(*bulb, kCmdAddObject, "NewObject" + std::to_string(world->TakeId() + 1),
         std::string(51, 'n'));
    const Dobject& added = *bulb->children.front();
    EXPECT_EQ(added.name, std::string(50, 'n'));
    EXPECT_EQ(world->currentObject, added.id);
    EXPECT_EQ(std::pair(added.posx, added.posy), std::pair(0, 0));
}

TEST_F(Tree, CopiesAndPastes) {
    lamp->posx = 3;
    lamp->script = "#end";
    bulb->PutTile(0, 0, 9, 8, 7, 6);
    Choose(*lamp, kCmdCopyObject);
    bulb->PutTile(0, 0, 1, 1, 1, 1);
    lamp->name = "changed";
    Choose(*attic, kCmdPasteBoard);
    Choose(*attic, kCmdPasteOnBoard);
    EXPECT_GT(script.frame->List().invalidated, 0);
    Choose(*shelf, kCmdPasteOnObject);
    EXPECT_EQ(Shape(), "(Attic(changed(bulb) lamp(bulb) shelf(lamp(bulb))) lamp(bulb))");
    const Dobject& pasted = *shelf->children.front();
    EXPECT_EQ(*pasted.children.front()->GetTile(0, 0), (Dtile{9, 8, 7, 6}));
    EXPECT_EQ(pasted.script, "#end");
    EXPECT_EQ(pasted.posx, 0);
    Choose(*attic, kCmdCopyBoard);
    EXPECT_EQ(Shape(*vObjectClip), "Attic(changed(bulb) lamp(bulb) shelf(lamp(bulb)))");
    attic->posx = 5;
    Choose(*attic, kCmdDuplicateBoard);
    const Dobject& twin = **std::next(world->Root().children.begin());
    EXPECT_EQ(Shape(twin), Shape(*attic));
    EXPECT_EQ(twin.children.front()->posx, 3) << "a duplicate keeps the positions";
    vObjectClip.reset();
    const std::string shape = Shape();
    for (int command : {kCmdPasteBoard, kCmdPasteOnBoard}) Choose(*attic, command);
    Choose(*shelf, kCmdPasteOnObject);
    EXPECT_EQ(Shape(), shape);
}

TEST_F(Tree, WhatWasCopiedIsPastedInTheFontOfThePresent) {
    bulb->PutTile(0, 0, 9, 8, 7, 0);
    Choose(*lamp, kCmdCopyObject);
    Dfont& glyphs = *world->GetFont();
    glyphs.PutGlyphPixel(9, 3, 4, !glyphs.GetGlyphPixel(9, 3, 4));
    world->RedrawAll();
    const auto shown = [](const Dobject& node) { return getpixel(node.vSurf.get(), 3, 4); };
    Choose(*shelf, kCmdPasteOnObject);
    EXPECT_EQ(shown(*shelf->children.front()->children.front()), shown(*bulb));

    glyphs.PutGlyphPixel(9, 3, 4, !glyphs.GetGlyphPixel(9, 3, 4));
    world->RedrawAll();
    Select(*shelf);
    vPanelMode = kPanelProperties;
    script.frame->Edit().events->OnKeyDown(kKeySpace);
    EXPECT_EQ(shown(*shelf->children.back()->children.front()), shown(*bulb)) << "by the key";

    glyphs.PutGlyphPixel(9, 3, 4, !glyphs.GetGlyphPixel(9, 3, 4));
    world->RedrawAll();
    script.ExpectDialog("Object ClipBoard", [](ScriptedForm& form) { form.Click(kIdOk); });
    DoObjectClipBoard().Run();
    EXPECT_EQ(shown(*vObjectClip->children.front()), shown(*bulb)) << "in the dialog";
}

TEST_F(Tree, Moves) {
    AddSecondBoard();
    bulb->posx = 4;
    Choose(*bulb, kCmdMoveBase + shelf->id);
    EXPECT_EQ(Shape(), "(Attic(lamp shelf(bulb)) Cellar)");
    EXPECT_EQ(bulb->posx, 4);
    EXPECT_EQ(bulb->parent, shelf);
    EXPECT_EQ(world->currentObject, attic->id) << "the first board is selected afterwards";
    cellar->id = 2'000'000'000;
    Choose(*shelf, kCmdMoveBase + cellar->id);
    EXPECT_EQ(Shape(), "(Attic(lamp) Cellar(shelf(bulb)))");

    // Refused whatever sends it: onto itself, a descendant, the root or nothing.
    for (int id : {shelf->id, bulb->id, 0, 77777}) {
        Select(*shelf);
        View().OnCommand(kCmdMoveBase + id);
        EXPECT_EQ(Shape(), "(Attic(lamp) Cellar(shelf(bulb)))") << id;
    }
}

TEST_F(Tree, MoveOffersMoreNodesThanThereAreHandles) {
    for (int i = 0; i < 2000; ++i) attic->Spawn(world->TakeId(), 0)->Create("n&", 1, 1);
    Dobject& last = *attic->children.back();
    Select(*lamp);
    script.ExpectMenu({}, kCmdMoveBase + last.id);
    View().OnRButtonDown(false, {0, 1});
    EXPECT_EQ(script.lastMenu[1].items[1].items[0].items.back().text, "n&&");
    EXPECT_EQ(Shape(last), "n&(lamp(bulb))");
}

TEST_F(Tree, DeletesAfterAQuestion) {
    ExpectMessage("Delete Object?");
    Choose(*bulb, kCmdDelete);
    EXPECT_EQ(script.lastCaption, "bulb");
    EXPECT_EQ(Shape(), "(Attic(lamp(bulb) shelf))") << "not in a world of one board";
    EXPECT_EQ(world->currentObject, attic->id);
    AddSecondBoard();
    ExpectMessage("Delete Object?", false);
    Choose(*bulb, kCmdDelete);
    EXPECT_EQ(world->currentObject, bulb->id) << "Cancel changes nothing";
    ExpectMessage("Delete Object?");
    Choose(*bulb, kCmdDelete);
    EXPECT_EQ(Shape(), "(Attic(lamp shelf) Cellar)");
    ExpectMessage("Delete Board?");
    Choose(*attic, kCmdDelete);
    EXPECT_EQ(Shape(), "(Cellar)");
    EXPECT_EQ(world->currentBoard, cellar->id);
    EXPECT_EQ(world->currentObject, cellar->id);
}

TEST_F(Tree, HidesExpandsAndTellsWhatIsSelected) {
    Choose(*lamp, kCmdHide);
    EXPECT_EQ(lamp->hidden, 1);
    script.frame->List().Paint();
    EXPECT_EQ(script.frame->List().description, "Object lamp, z 1, hidden, in Attic");
    Choose(*lamp, kCmdHide);
    EXPECT_EQ(lamp->hidden, 0);
    bulb->Resize(5, 5);
    attic->vieww = 2;
    Choose(*attic, kCmdExpandAll);
    EXPECT_EQ(attic->vieww, 6);
    EXPECT_EQ(bulb->vieww, 5);
    EXPECT_EQ(bulb->evieww, 1);
    script.ExpectDialog("Programming", [](ScriptedForm& form) { form.Click(kIdOk); });
    View().OnLButtonDblClk(false, {30, RowOf(*lamp)});
    script.frame->List().Paint();
    EXPECT_EQ(script.frame->List().description, "Board Attic, z 0");
}

// --- the property dialogs ----------------------------------------------------------------------

TEST_F(Tree, NameShowsTheOldNameAndTakesAnEmptyOne) {
    Change(*attic, kCmdBoardName, "Name", {{kNameText, "Attic", "other"}}, {kIdCancel});
    Name(*attic, kCmdBoardName, "Attic", "");
    EXPECT_EQ(attic->name, "");
}

TEST_F(Tree, LocationTakesAnyNumber) {
    AddSecondBoard();
    Change(*attic, kCmdLocation, "Location", {{kLocationY, "0", "40000"}, {kLocationZ, "0", "10"}});
    EXPECT_EQ(attic->posy, 40000);
    EXPECT_EQ(Shape(), "(Cellar Attic(lamp(bulb) shelf))") << "boards by ascending z";
    shelf->posx = -7;
    Change(*shelf, kCmdLocation, "Location", {{kLocationX, "-7", "99"}}, {kIdCancel});
    Change(*shelf, kCmdLocation, "Location", {{kLocationX, "-7", "-8"}, {kLocationZ, "0", "5"}});
    EXPECT_EQ(shelf->posx, -8);
    EXPECT_EQ(Shape(*attic), "Attic(shelf lamp(bulb))") << "objects by descending z";
}

TEST_F(Tree, SizeAndViewportReachTheNode) {
    const auto size = [](const Dobject& node) {
        return std::vector<int>{node.width, node.height, node.vieww, node.viewh};
    };
    const std::vector<int> withoutView{kSizeChangeView, kIdOk};
    attic->vieww = 2;
    Change(*attic, kCmdSize, "Size", {{kSizeW, "6", "8"}, {kSizeH, "5", "4"}});
    EXPECT_THAT(size(*attic), ElementsAre(8, 4, 8, 4)) << "the viewport goes with the grid";
    attic->vieww = 3;
    world->SetExpanded(HandleOf(*attic), 1);
    Change(*attic, kCmdSize, "Size", {{kSizeW, "8", "8"}}, withoutView);
    EXPECT_EQ(attic->evieww, 3) << "without its viewport a node stays expanded";
    Change(*attic, kCmdViewport, "Viewport", {{kViewportW, "8", "9"}, {kViewportH, "4", "3"}});
    EXPECT_THAT(size(*attic), ElementsAre(9, 4, 9, 3)) << "a viewport grows the grid";
    EXPECT_EQ(attic->evieww, 0) << "and ends the expansion";
    EXPECT_EQ(*attic->GetTile(8, 0), kBlankTile);
    // Neither side passes through a grid that is too large.
    Change(*attic, kCmdSize, "Size", {{kSizeW, "9", "2"}, {kSizeH, "4", "32000"}}, withoutView);
    Change(*attic, kCmdSize, "Size", {{kSizeW, "2", "32000"}, {kSizeH, "32000", "2"}}, withoutView);
    EXPECT_THAT(size(*attic), ElementsAre(32000, 2, 2, 2));
}

TEST_F(Tree, DialogsRefuseWhatCannotBe) {
    struct Case {
        int command;
        const char* caption;
        std::vector<std::pair<int, const char*>> typed;
        const char* message;
        int focus;
    };
    const Case cases[] = {
        {kCmdLocation, "Location", {{kLocationY, ""}}, "Please enter an integer.", kLocationY},
        {kCmdSize, "Size", {{kSizeW, "0"}}, "between 1 and 32767", kSizeW},
        {kCmdSize, "Size", {{kSizeW, "99999999999"}}, "between 1 and 32767", kSizeW},
        {kCmdSize, "Size", {{kSizeH, ""}}, "between 1 and 32767", kSizeH},
        {kCmdSize, "Size", {{kSizeH, "32768"}}, "between 1 and 32767", kSizeH},
        {kCmdSize, "Size", {{kSizeW, "30000"}, {kSizeH, "20000"}}, "is too large", kSizeW},
        {kCmdSize, "Size", {{kSizeW, "20000"}, {kSizeH, "30000"}}, "is too large", kSizeH},
        {kCmdViewport, "Viewport", {{kViewportW, "32768"}}, "32768 by 5 tiles", kViewportW},
    };
    for (const Case& c : cases) {
        ExpectDialog(c.caption, [&](ScriptedForm& form) {
            for (const auto& [id, text] : c.typed) form.Type(id, text);
            form.focus = 0;
            script.ExpectMessage(c.message);
            form.Click(kIdOk);
            EXPECT_EQ(form.focus, c.focus) << c.typed[0].second;
            EXPECT_EQ(form.result, 0);
            form.Click(kIdCancel);
        });
        Choose(*attic, c.command);
        EXPECT_EQ(attic->tiles.size(), 30u);
        EXPECT_EQ(attic->vieww, 6);
    }
}

// --- the panels --------------------------------------------------------------------------------

TEST_F(Tree, ThePanelsOpenTheDialogs) {
    auto& preview = static_cast<ScriptedWindow&>(*script.frame->panel->Picture(kBrushPreview));
    script.frame->Edit().focused = false;
    script.ExpectDialog("Brush Settings", [](ScriptedForm& form) { form.Click(kIdOk); });
    preview.events->OnLButtonDown(false, {5, 5});
    preview.events->OnLButtonUp(false, {5, 5});
    EXPECT_TRUE(script.frame->Edit().focused);

    script.frame->panel->Click(kToProperties);
    script.Pump();
    for (const auto& [button, caption] :
         {std::pair(kNodeName, "Name"), std::pair(kNodeSize, "Size"),
          std::pair(kNodeViewport, "Viewport"), std::pair(kNodeLocation, "Location")}) {
        script.ExpectDialog(caption, [](ScriptedForm& form) { form.Click(kIdOk); });
        script.frame->List().invalidated = 0;
        script.frame->panel->Click(button);
        EXPECT_EQ(script.frame->List().invalidated, 1) << "all is redrawn";
    }
}

TEST_F(Tree, AStepBoxReportsOnceAndMayBeEmptyForAWhile) {
    ScriptedForm& panel = *script.frame->panel;
    panel.Type(kStepX, "");
    panel.Type(kStepY, "12");
    EXPECT_EQ(vStepY, 12) << "the empty box is none of this one's";
    script.ExpectMessage("between 0 and 100");
    panel.Type(kStepY, "121");
    EXPECT_EQ(panel.GetText(kStepY), "12");
    EXPECT_FALSE(panel.Press(kKeyEnter));
    EXPECT_EQ(panel.GetText(kStepX), "0");
}
