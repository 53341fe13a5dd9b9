#include "editor/shell/menu_bar.h"

#include "editor/commands.h"

using platform::Entry;
using platform::Menu;
using platform::Separator;
using platform::SubMenu;

namespace {

void AppendRecentFiles(Menu& menu, const std::vector<std::string>& recent) {
    if (recent.empty()) {
        menu.push_back(Entry("Recent File", kCmdNone));
        menu.back().enabled = false;
    }
    for (std::size_t i = 0; i < recent.size(); ++i) {
        const std::string text = "&" + std::to_string(i + 1) + " " + platform::MenuText(recent[i]);
        menu.push_back(
            Entry(text, kCmdFileRecent + static_cast<int>(i), "", "Open this QUILT! game"));
    }
}

Menu MakeFileMenu(const std::vector<std::string>& recent) {
    Menu menu{
        Entry("&New", kCmdFileNew, "Ctrl+N", "Create a new QUILT! game"),
        Entry("&Open...", kCmdFileOpen, "Ctrl+O", "Open an existing QUILT! game"),
        Entry("&Save", kCmdFileSave, "Ctrl+S", "Save the currently loaded QUILT! game"),
        Entry("Save &As...", kCmdFileSaveAs, "",
              "Save the currently loaded QUILT! game with a new name"),
        Entry("&Run", kCmdRun, "Ctrl+R", "Run the currently loaded QUILT! game"),
        Separator(),
    };
    AppendRecentFiles(menu, recent);
    menu.push_back(Separator());
    menu.push_back(Entry("E&xit", kCmdFileExit, "",
                         "Quit QUILT!; prompts to save currently loaded QUILT! game"));
    return menu;
}

}  // namespace

Menu MakeMenuBar(const std::vector<std::string>& recent) {
    return {
        SubMenu("&File", MakeFileMenu(recent)),
        SubMenu("&Set Video Mode",
                {Entry("320 x 240", kCmdVideoMode), Entry("640 x 480", kCmdVideoMode + 1),
                 Entry("800 x 600", kCmdVideoMode + 2), Entry("1024 x 768", kCmdVideoMode + 3),
                 Separator(), Entry("Windowed", kCmdWindowed, "", "Toggle windowed video mode")}),
        SubMenu("&View", {Entry("&Status Bar", kCmdStatusBar, "", "Show or hide the status bar"),
                          Entry("&Font Edit", kCmdFontEdit, "Ctrl+F", "Edit the fontset"),
                          Entry("&Tile ClipBoard", kCmdTileClipboard, "Ctrl+T",
                                "Show the tile clipboard dialog"),
                          Entry("&Object Clipboard", kCmdObjectClipboard, "Ctrl+C",
                                "Show the object clipboard dialog")}),
        SubMenu("&Help", {Entry("&About QUILT!...", kCmdAbout)}),
    };
}
