#include "editor/shell/key_table.h"

#include "editor/shell/menu_bar.h"

namespace {

KeyTable MenuKeys() {
    KeyTable table{{"keys", "menu"}};
    for (const platform::MenuItem& menu : MakeMenuBar({})) {
        for (const platform::MenuItem& item : menu.items) {
            if (item.key.empty()) continue;
            std::string text = item.text;
            std::erase(text, '&');
            table.push_back({item.key, text});
        }
    }
    return table;
}

std::vector<KeyTable> MakeTables() {
    return {
        {
            {"keys", "paint panel", "properties panel"},
            {"Up, Down, Left, Right", "move the cursor", "move the cursor"},
            {"Space", "stamps the brush; with \"Blender\" a step through the shades",
             "puts a copy of the object clipboard here"},
            {"Shift", "paints while it is held", ""},
            {"Tab", "every step paints, until Tab again",
             "gives a grid of equal tiles another brush"},
            {"Enter", "picks the brush up from the tile", "selects the object at the cursor"},
            {"Menu", "opens the area tools, for the cursor's tile or the box", ""},
            {"Ctrl+Up, Ctrl+Down, Ctrl+Left, Ctrl+Right", "stretch a box from the cursor", ""},
            {"Ctrl+Menu", "opens the shapes between the two ends of the box", ""},
            {"Escape", "lets go of the box", ""},
            {"Home, End", "foreground colour down, up", ""},
            {"Page Up, Page Down", "background colour down, up", ""},
            {"Insert, Delete", "glyph down, up", ""},
            {"F1, F2", "scroll the object's grid back, on", ""},
            {"F4", "brings the cursor to the middle", "brings the cursor to the middle"},
            {"Ctrl+Shift+Up, Ctrl+Shift+Down, Ctrl+Shift+Left, Ctrl+Shift+Right", "scroll the view",
             "scroll the view"},
        },
        {
            {"keys", "list of boards and objects"},
            {"Up, Down, Home, End, Page Up, Page Down", "select a row"},
            {"Enter", "opens the script"},
            {"Ctrl+Enter", "changes the panel"},
            {"Menu", "opens the menu of the row"},
            {"Delete", "deletes, after a question"},
        },
        {
            {"keys", "everywhere in the main window"},
            {"F6, Shift+F6", "go round: list, edit view, panel"},
            {"Tab, Shift+Tab", "in the panel, go round its controls"},
            {"Escape", "in the panel and the list, back to the edit view"},
            {"Shift+F10", "is the Menu key on keyboards that have none"},
        },
        MenuKeys(),
        {
            {"mouse", "does"},
            {"left button", "moves the cursor; with the properties panel selects an object"},
            {"right button, dragged", "area tools; with the properties panel moves the object"},
            {"Ctrl and right button, dragged", "lines, rectangles, circles and ramps"},
            {"Ctrl and left button, dragged", "drags the view"},
            {"wheel", "zooms"},
            {"double click in the list", "opens the script"},
            {"Ctrl and double click in the list", "changes the panel"},
        },
    };
}

std::string Rows(const KeyTable& table, const char* begin, const char* cell, const char* end) {
    std::string text;
    for (const auto& row : table) {
        text += begin;
        for (const std::string& column : row) text += (column.empty() ? "" : " ") + column + cell;
        text += end;
    }
    return text;
}

}  // namespace

const std::vector<KeyTable>& KeyTables() {
    static const std::vector<KeyTable> tables = MakeTables();
    return tables;
}

std::string KeyTableAsMarkdown(const KeyTable& table) {
    std::string rule = "|";
    for (std::size_t i = 0; i < table.front().size(); ++i) rule += "---|";
    return Rows({table.front()}, "|", " |", "\n") + rule + "\n" +
           Rows({table.begin() + 1, table.end()}, "|", " |", "\n");
}

std::string KeyTableAsHtml(const KeyTable& table) {
    return "<table width=\"100%\" cellpadding=\"2\">" +
           Rows({table.front()}, "<tr><th align=\"left\">", "</th><th align=\"left\">",
                "</th></tr>") +
           Rows({table.begin() + 1, table.end()}, "<tr><td>", "</td><td>", "</td></tr>") +
           "</table>";
}
