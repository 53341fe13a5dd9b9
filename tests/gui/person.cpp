#include "tests/gui/person.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>

namespace {

constexpr int kLookEvery = 2;  // milliseconds

}  // namespace

Person::Person() {
    QObject::connect(&timer, &QTimer::timeout, [this] { Look(); });
    timer.start(kLookEvery);
}

Person::~Person() {
    if (!steps.empty()) ADD_FAILURE() << steps.size() << " menus or dialogs never opened";
}

void Person::OnMenu(std::function<void(QMenu&)> act) { steps.push_back({std::move(act), {}}); }

void Person::OnDialog(std::function<void(QDialog&)> act) { steps.push_back({{}, std::move(act)}); }

void Person::Look() {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    QWidget* open = menu ? static_cast<QWidget*>(menu) : dialog;
    // What a step is busy with comes to the front again when what it opened has closed.
    std::erase_if(met,
                  [](const QPointer<QWidget>& widget) { return !widget || !widget->isVisible(); });
    if (!open || !open->isVisible() || std::find(met.begin(), met.end(), open) != met.end()) return;
    met.emplace_back(open);
    const Step step = steps.empty() ? Step{} : steps.front();
    if (!steps.empty()) steps.pop_front();
    // From the event loop, not from the timer: what the step does may open the next dialog, and
    // the timer must go on looking.
    QMetaObject::invokeMethod(
        open, [=] { Act(step, menu, dialog); }, Qt::QueuedConnection);
}

void Person::Act(const Step& step, QMenu* menu, QDialog* dialog) {
    if (menu && step.menu) return step.menu(*menu);
    if (!menu && step.dialog) return step.dialog(*dialog);
    const auto* box = qobject_cast<QMessageBox*>(dialog);
    ADD_FAILURE() << "unforeseen: " << (menu ? "a menu" : dialog->metaObject()->className()) << " "
                  << (box ? box->text().toStdString() : "");
    if (menu)
        menu->close();
    else
        dialog->done(QDialog::Rejected);
}

QAction* Person::EntryOf(const QMenu& menu, const std::string& text) {
    for (QAction* action : menu.actions())
        if (action->text().toStdString() == text) return action;
    ADD_FAILURE() << "no entry " << text;
    return nullptr;
}

void Person::ChooseInMenu(const std::vector<std::string>& path) {
    OnMenu([path](QMenu& menu) {
        QMenu* open = &menu;
        for (const std::string& text : path) {
            QAction* entry = EntryOf(*open, text);
            if (!entry) return menu.close(), void();
            open->setActiveAction(entry);
            Press(*open, entry->menu() ? Qt::Key_Right : Qt::Key_Return);
            open = entry->menu();
        }
    });
}

void Person::AnswerBox(const std::string& text, bool ok) {
    OnDialog([text, ok](QDialog& dialog) {
        auto* box = qobject_cast<QMessageBox*>(&dialog);
        ASSERT_NE(box, nullptr);
        EXPECT_NE(box->text().toStdString().find(text), std::string::npos)
            << box->text().toStdString();
        box->button(ok ? QMessageBox::Ok : QMessageBox::Cancel)->click();
    });
}

void Person::AnswerFileDialog(const std::string& path) {
    OnDialog([path](QDialog& dialog) { AnswerWith(dialog, path); });
}

void Person::AnswerWith(QDialog& dialog, const std::string& path) {
    auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    ASSERT_NE(name, nullptr);
    name->setText(QString::fromStdString(path));
    Press(*name, Qt::Key_Return);
}
