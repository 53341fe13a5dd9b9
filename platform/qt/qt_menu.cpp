#include "platform/qt/qt_menu.h"

#include "platform/qt/qt_text.h"

using platform::MenuItem;

namespace {

void AddEntry(QMenu& to, const MenuItem& item, const std::function<void(int)>& use) {
    QAction* action = to.addAction(FromUtf8(item.text));
    action->setData(item.command);
    action->setEnabled(item.enabled);
    action->setStatusTip(FromUtf8(item.prompt));
    if (!item.key.empty()) action->setShortcut(QKeySequence::fromString(FromUtf8(item.key)));
    if (item.checked) {
        action->setCheckable(true);
        action->setChecked(true);
    }
    const int command = item.command;
    QObject::connect(action, &QAction::triggered, &to, [use, command] { use(command); });
}

}  // namespace

void FillMenu(QMenu& to, const platform::Menu& items, const std::function<void(int)>& use,
              Filling filling) {
    for (const MenuItem& item : items) {
        switch (item.kind) {
            case MenuItem::Kind::Entry:
                AddEntry(to, item, use);
                break;
            case MenuItem::Kind::Separator:
                to.addSeparator();
                break;
            case MenuItem::Kind::SubMenu: {
                QMenu* sub = to.addMenu(FromUtf8(item.text));
                sub->setEnabled(item.enabled);
                if (filling == Filling::AtOnce) {
                    FillMenu(*sub, item.items, use, filling);
                    break;
                }
                QObject::connect(sub, &QMenu::aboutToShow, sub, [sub, &item, use, filling] {
                    if (sub->isEmpty()) FillMenu(*sub, item.items, use, filling);
                });
                break;
            }
        }
    }
}

int RunMenu(QWidget* over, const platform::Menu& items, QPoint screen) {
    QMenu menu(over);
    int chosen = 0;
    FillMenu(
        menu, items, [&](int command) { chosen = command; }, Filling::WhenOpened);
    menu.exec(screen);
    return chosen;
}
