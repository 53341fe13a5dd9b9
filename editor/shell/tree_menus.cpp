#include "editor/shell/tree_menus.h"

#include "editor/commands.h"
#include "engine/dinterface.h"

using platform::Entry;
using platform::Menu;
using platform::MenuItem;
using platform::Separator;
using platform::SubMenu;

namespace {

constexpr std::size_t kEditPlace = 1;  ///< of "&Edit" in the object menu

// The new parents in and below a node. They are taken from the tree itself: a handle list ends
// at 1,024 nodes.
MenuItem MoveTargets(const Dobject& node, const Dobject& moved, bool barred) {
    barred |= &node == &moved;
    MenuItem here = Entry("&Here ...", kCmdMoveBase + node.id);
    here.enabled = !barred;
    Menu items{std::move(here)};
    for (const auto& child : node.children) items.push_back(MoveTargets(*child, moved, barred));
    MenuItem branch = SubMenu(platform::MenuText(node.name), std::move(items));
    branch.enabled = !barred;
    return branch;
}

}  // namespace

Menu MakeBoardMenu() {
    return {
        SubMenu("&Add", {Entry("&Board", kCmdAddBoard), Entry("&Object", kCmdAddObject),
                         Entry("&Duplicate", kCmdDuplicateBoard),
                         SubMenu("&Paste", {Entry("&Board", kCmdPasteBoard),
                                            Entry("&Object", kCmdPasteOnBoard)})}),
        Entry("&Copy", kCmdCopyBoard),
        Entry("&Delete", kCmdDelete),
        Separator(),
        Entry("&Name", kCmdBoardName),
        Entry("&Programming", kCmdProgramming),
        Entry("&Location", kCmdLocation),
        Entry("&Size", kCmdSize),
        Entry("&Viewport", kCmdViewport),
        Separator(),
        Entry("&Expand All", kCmdExpandAll),
        Separator(),
        Entry("&Cancel", kCmdNone),
    };
}

Menu MakeObjectMenu() {
    return {
        SubMenu("&Add", {Entry("&New", kCmdAddObject), Entry("&Paste", kCmdPasteOnObject)}),
        SubMenu("&Edit", {Entry("&Copy", kCmdCopyObject)}),
        Entry("&Delete", kCmdDelete),
        Separator(),
        Entry("&Name", kCmdObjectName),
        Entry("&Programming", kCmdProgramming),
        Entry("&Location", kCmdLocation),
        Entry("&Size", kCmdSize),
        Entry("&Viewport", kCmdViewport),
        Separator(),
        Entry("&Hide", kCmdHide),
        Separator(),
        Entry("&Cancel", kCmdNone),
    };
}

void ShowNode(Menu& objectMenu, const Dobject& node) {
    platform::FindEntry(objectMenu, kCmdHide)->checked = node.hidden != 0;
    DropMoveMenu(objectMenu);
    Menu boards;
    for (const auto& board : vWorld->Root().children)
        boards.push_back(MoveTargets(*board, node, false));
    objectMenu[kEditPlace].items.push_back(SubMenu("Move", std::move(boards)));
}

void DropMoveMenu(Menu& objectMenu) { objectMenu[kEditPlace].items.resize(1); }
