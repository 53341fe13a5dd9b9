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
    void NameIt(const std::string& name, int end = kIdOk) {
        ExpectDialog("Name", [=](ScriptedForm& form) {
            form.Type(kNameText, name);
            form.Click(end);
        });
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
    EXPECT_EQ(script.lastMenuAt, (Point{1030, 1020}));
    for (int time = 0; time < 2; ++time) {
        lamp->hidden = time;
        Choose(*lamp, 0);
        EXPECT_EQ(world->currentObject, lamp->id);
        EXPECT_EQ(Outline(script.lastMenu),
                  std::string("&Add(&New &Paste) &Edit(&Copy Move(Attic(&Here ... "
                              "!lamp(!&Here ... !bulb(!&Here ...)) shelf(&Here ...)))) &Delete | "
                              "&Name &Programming &Location &Size &Viewport | ") +
                      (time ? "+" : "") + "&Hide | &Cancel");
        EXPECT_EQ(script.lastMenuAt, (Point{1030, 1030}));
    }
    // Beside every row the menu is the selection's.
    script.ExpectMenu({}, 0);
    View().OnRButtonDown(false, {30, 500});
    EXPECT_EQ(script.lastMenu[1].text, "&Edit");
    lamp->name = kRootName;
    Choose(*bulb, 0);
    EXPECT_EQ(script.lastMenu[1].text, "&Copy") << "boards are told by their parent's name";
}

TEST_F(Tree, Adds) {
    NameIt("Big Hall\tEast");
    Choose(*attic, kCmdAddBoard);
    EXPECT_EQ(Shape(), "(Attic(lamp(bulb) shelf) Big_Hall_East)");
    EXPECT_EQ(world->currentBoard, world->Root().children.back()->id);
    NameIt("x", kIdCancel);
    Choose(*attic, kCmdAddBoard);
    EXPECT_EQ(world->Root().children.back()->name, "NewBoard");
    NameIt("pin");
    Choose(*attic, kCmdAddObject);
    NameIt(std::string(51, 'n'));
    Choose(*bulb, kCmdAddObject);
    EXPECT_EQ(Shape(),
              "(Attic(lamp(bulb(" + std::string(50, 'n') + ")) shelf pin) Big_Hall_East NewBoard)");
    EXPECT_EQ(world->currentObject, bulb->children.front()->id);
    EXPECT_EQ(attic->children.back()->posx, 0);
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
    EXPECT_EQ(pasted.posz, 1);
    EXPECT_NE(pasted.id, vObjectClip->id);

    Choose(*attic, kCmdCopyBoard);
    EXPECT_EQ(Shape(*vObjectClip), "Attic(changed(bulb) lamp(bulb) shelf(lamp(bulb)))");
    attic->posx = 5;
    Choose(*attic, kCmdDuplicateBoard);
    EXPECT_EQ(world->Root().children.size(), 3u);
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
    EXPECT_EQ(script.frame->List().name, "Board / Object List");
    Choose(*lamp, kCmdHide);
    EXPECT_EQ(lamp->hidden, 0);
    bulb->Resize(5, 5);
    attic->vieww = 2;
    Choose(*attic, kCmdExpandAll);
    EXPECT_EQ(attic->vieww, 6);
    EXPECT_EQ(bulb->vieww, 5);
    EXPECT_EQ(bulb->evieww, 1);
    script.ExpectDialog("Programming", [](ScriptedForm& form) { form.Click(platform::kIdOk); });
    View().OnLButtonDblClk(false, {30, RowOf(*lamp)});
    script.frame->List().Paint();
    EXPECT_EQ(script.frame->List().description, "Board Attic, z 0");
}

TEST_F(Tree, EveryHandleComesBack) {
    AddSecondBoard();
    NameIt("a");
    Choose(*attic, kCmdAddBoard);
    NameIt("b");
    Choose(*lamp, kCmdAddObject);
    const int move = kCmdMoveBase + cellar->id;
    for (int command : {int{kCmdCopyObject}, int{kCmdPasteOnObject}, int{kCmdHide}, move})
        Choose(*bulb, command);
    ExpectMessage("Delete Object?");
    Choose(*shelf, kCmdDelete);
    // All slots but the root's are free again.
    std::vector<Dobject> nodes(kMaxHandles);
    for (int i = 1; i < kMaxHandles; ++i) {
        nodes[static_cast<std::size_t>(i)].id = -i;
        EXPECT_EQ(world->AddHandle(&nodes[static_cast<std::size_t>(i)]), i);
    }
    for (int i = 1; i < kMaxHandles; ++i) world->ReleaseHandle(i);
}

// --- the property dialogs ----------------------------------------------------------------------

TEST_F(Tree, NameShowsTheOldNameAndTakesAnEmptyOne) {
    for (const auto& [end, name] : {std::pair(kIdCancel, "Attic"), std::pair(kIdOk, "")}) {
        ExpectDialog("Name", [end = end](ScriptedForm& form) {
            EXPECT_EQ(form.GetText(kNameText), "Attic");
            form.Type(kNameText, "");
            form.Click(end);
        });
        Choose(*attic, kCmdBoardName);
        EXPECT_EQ(attic->name, name);
    }
}

TEST_F(Tree, LocationTakesAnyNumber) {
    AddSecondBoard();
    ExpectDialog("Location", [&](ScriptedForm& form) {
        EXPECT_EQ(form.GetText(kLocationZ), "0");
        form.Type(kLocationY, "");
        script.ExpectMessage("Please enter an integer.");
        form.Click(kIdOk);
        EXPECT_EQ(form.focus, kLocationY);
        EXPECT_EQ(form.result, 0);
        form.Type(kLocationY, "40000");
        form.Type(kLocationZ, "10");
        form.Click(kIdOk);
    });
    Choose(*attic, kCmdLocation);
    EXPECT_EQ(attic->posy, 40000);
    EXPECT_EQ(Shape(), "(Cellar Attic(lamp(bulb) shelf))") << "boards by ascending z";
    shelf->posx = -7;
    ExpectDialog("Location", [&](ScriptedForm& form) {
        EXPECT_EQ(form.GetText(kLocationX), "-7");
        form.Type(kLocationZ, "5");
        form.Click(kIdOk);
    });
    Choose(*shelf, kCmdLocation);
    EXPECT_EQ(Shape(*attic), "Attic(shelf lamp(bulb))") << "objects by descending z";
    ExpectDialog("Location", [&](ScriptedForm& form) {
        form.Type(kLocationX, "99");
        form.Click(kIdCancel);
    });
    Choose(*shelf, kCmdLocation);
    EXPECT_EQ(shelf->posx, -7);
}

TEST_F(Tree, SizeRefusesWhatCannotBeMade) {
    attic->vieww = 2;
    ExpectDialog("Size", [&](ScriptedForm& form) {
        EXPECT_TRUE(form.IsChecked(kSizeChangeView));
        struct Case {
            const char* w;
            const char* h;
            const char* message;
            int focus;
        };
        for (const Case& c : {Case{"0", "5", "between 1 and 32767", kSizeW},
                              {"6", "0", "between 1 and 32767", kSizeH},
                              {"6", "32768", "between 1 and 32767", kSizeH},
                              {"", "5", "between 1 and 32767", kSizeW},
                              {"99999999999", "5", "between 1 and 32767", kSizeW},
                              {"30000", "20000", "30000 by 20000 tiles is too large", kSizeW},
                              {"20000", "30000", "20000 by 30000 tiles is too large", kSizeH}}) {
            form.Type(kSizeW, c.w);
            form.Type(kSizeH, c.h);
            form.focus = 0;
            script.ExpectMessage(c.message);
            form.Click(kIdOk);
            EXPECT_EQ(form.focus, c.focus) << c.w << " " << c.h;
            EXPECT_EQ(form.result, 0);
            EXPECT_EQ(attic->width, 6);
            EXPECT_EQ(attic->height, 5);
        }
        form.Type(kSizeW, "8");
        form.Type(kSizeH, "4");
        form.Click(kIdOk);
    });
    Choose(*attic, kCmdSize);
    EXPECT_EQ(std::pair(attic->width, attic->height), std::pair(8, 4));
    EXPECT_EQ(std::pair(attic->vieww, attic->viewh), std::pair(8, 4));

    const auto clear = [](const char* w, const char* h) {
        return [=](ScriptedForm& form) {
            form.Type(kSizeW, w);
            form.Type(kSizeH, h);
            form.Click(kSizeChangeView);
            form.Click(kIdOk);
        };
    };
    attic->vieww = 3;
    world->SetExpanded(HandleOf(*attic), 1);
    ExpectDialog("Size", clear("8", "4"));
    Choose(*attic, kCmdSize);
    EXPECT_EQ(attic->evieww, 3) << "without its viewport a node stays expanded";
    // Neither side passes through a grid that is too large.
    ExpectDialog("Size", clear("2", "32000"));
    Choose(*attic, kCmdSize);
    ExpectDialog("Size", clear("32000", "2"));
    Choose(*attic, kCmdSize);
    EXPECT_EQ(std::pair(attic->width, attic->height), std::pair(32000, 2));
    EXPECT_EQ(attic->vieww, 2);
}

TEST_F(Tree, ViewportGrowsTheGridAndEndsTheExpansion) {
    world->SetExpanded(HandleOf(*attic), 1);
    ExpectDialog("Viewport", [&](ScriptedForm& form) {
        EXPECT_EQ(form.GetText(kViewportW), "6");
        form.Type(kViewportW, "32768");
        script.ExpectMessage("32768 by 5 tiles is too large");
        form.Click(kIdOk);
        EXPECT_EQ(form.focus, kViewportW);
        EXPECT_EQ(attic->evieww, 6);
        form.Type(kViewportW, "9");
        form.Type(kViewportH, "3");
        form.Click(kIdOk);
    });
    Choose(*attic, kCmdViewport);
    EXPECT_EQ(std::pair(attic->width, attic->height), std::pair(9, 5));
    EXPECT_EQ(std::pair(attic->vieww, attic->viewh), std::pair(9, 3));
    EXPECT_EQ(attic->evieww, 0);
    EXPECT_EQ(*attic->GetTile(8, 0), kBlankTile);
}

// --- the panels --------------------------------------------------------------------------------

TEST_F(Tree, ThePanelsOpenTheDialogsAndHaveATipEverywhere) {
    const auto everyTip = [&] {
        for (const Control& control : script.frame->panel->layout.controls)
            EXPECT_GT(std::string(control.tip).size(), 0u) << control.text;
    };
    everyTip();
    auto& preview = static_cast<ScriptedWindow&>(*script.frame->panel->Picture(kBrushPreview));
    preview.Paint();
    script.frame->Edit().focused = false;
    script.ExpectDialog("Brush Settings", [](ScriptedForm& form) { form.Click(kIdOk); });
    preview.events->OnLButtonDown(false, {5, 5});
    preview.events->OnLButtonUp(false, {5, 5});
    EXPECT_TRUE(script.frame->Edit().focused);

    script.frame->panel->Click(kToProperties);
    script.Pump();
    everyTip();
    Select(*lamp);
    static_cast<ScriptedWindow&>(*script.frame->panel->Picture(kPropViewer)).Paint();
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
