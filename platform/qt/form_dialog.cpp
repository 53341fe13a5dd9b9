// Forms run as modal dialogs.

#include "platform/qt/qt_form.h"
#include "platform/qt/qt_menu.h"
#include "platform/qt/qt_text.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QMenuBar>
#include <QPointer>
#include <QVBoxLayout>

namespace {

class FormDialog final : public QDialog {
public:
    FormDialog(QWidget* parent, const platform::Form& table, platform::FormEvents& listener)
        : QDialog(parent), events(listener) {
        setWindowTitle(FromUtf8(table.caption));
        const platform::Menu menu = events.FormMenu();
        form = new QtForm(this, table, listener);
        form->SetEnd([this](int result) {
            ended = true;
            done(result);
        });
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        AddMenuBar(*layout, menu);
        layout->addWidget(form);
        layout->setSizeConstraint(QLayout::SetFixedSize);
        form->FocusFirst();
    }

protected:
    // Escape and the close box: the client decides.
    void reject() override { events.OnControl(*form, platform::kIdCancel); }
    void closeEvent(QCloseEvent* event) override {
        event->ignore();
        if (!ended) reject();
    }

private:
    void AddMenuBar(QVBoxLayout& layout, const platform::Menu& menu) {
        if (menu.empty()) return;
        auto* bar = new QMenuBar(this);
        for (const platform::MenuItem& item : menu)
            FillMenu(*bar->addMenu(FromUtf8(item.text)), item.items,
                     [this](int command) { events.OnCommand(*form, command); });
        layout.setMenuBar(bar);
    }

    platform::FormEvents& events;
    QtForm* form = nullptr;
    bool ended = false;
};

}  // namespace

int RunFormDialog(const platform::Form& form, platform::FormEvents& events) {
    const QPointer<QWidget> over = QApplication::activeWindow();
    FormDialog dialog(over, form, events);
    const int result = dialog.exec();
    // A window manager may lose its way when a dialog closes together with a box over it.
    if (over) over->activateWindow();
    return result;
}
