// A menu is a value: a tree of entries, separators and sub-menus with command numbers.
//
// The menu bar and every pop-up are such values; a backend builds its own widgets from them
// and keeps nothing of them. Texts are UTF-8, with "&" before the mnemonic and "&&" for an
// ampersand.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace platform {

struct MenuItem {
    enum class Kind { Entry, Separator, SubMenu };

    Kind kind = Kind::Entry;
    std::string text;
    int command = 0;     ///< what a choice reports; 0 only closes the menu
    std::string key;     ///< accelerator such as "Ctrl+N", menu bar only; empty for none
    std::string prompt;  ///< status line text while highlighted, menu bar only
    bool enabled = true;
    bool checked = false;
    std::vector<MenuItem> items;  ///< of a sub-menu
};

using Menu = std::vector<MenuItem>;

inline MenuItem Entry(std::string text, int command, std::string key = {},
                      std::string prompt = {}) {
    return {MenuItem::Kind::Entry,
            std::move(text),
            command,
            std::move(key),
            std::move(prompt),
            true,
            false,
            {}};
}

inline MenuItem Separator() {
    MenuItem item;
    item.kind = MenuItem::Kind::Separator;
    return item;
}

inline MenuItem SubMenu(std::string text, Menu items) {
    MenuItem item;
    item.kind = MenuItem::Kind::SubMenu;
    item.text = std::move(text);
    item.items = std::move(items);
    return item;
}

/// The text of an entry that shows `text` to the letter, ampersands included.
std::string MenuText(const std::string& text);

/// Calls `use` on every entry (not on separators and sub-menus themselves), depth first.
template <typename Items, typename Use>
void ForEachEntry(Items& items, Use use) {
    for (auto& item : items) {
        if (item.kind == MenuItem::Kind::Entry) use(item);
        ForEachEntry(item.items, use);
    }
}

/// The first entry with that command, depth first, or null.
MenuItem* FindEntry(Menu& menu, int command);
const MenuItem* FindEntry(const Menu& menu, int command);

}  // namespace platform
