#include "platform/menu.h"

namespace platform {

std::string MenuText(const std::string& text) {
    std::string shown;
    for (char c : text) {
        shown += c;
        if (c == '&') shown += '&';
    }
    return shown;
}

const MenuItem* FindEntry(const Menu& menu, int command) {
    const MenuItem* found = nullptr;
    ForEachEntry(menu, [&](const MenuItem& item) {
        if (!found && item.command == command) found = &item;
    });
    return found;
}

MenuItem* FindEntry(Menu& menu, int command) {
    return const_cast<MenuItem*>(FindEntry(static_cast<const Menu&>(menu), command));
}

}  // namespace platform
