#include "tests/gui/person.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

Person::Person() {
    QObject::connect(&timer, &QTimer::timeout, [this] { Look(); });
    timer.start(2);
}

Person::~Person() { EXPECT_TRUE(steps.empty()) << "menus or dialogs that never opened"; }

void Person::Look() {
    QWidget* open = QApplication::activePopupWidget();
    if (!open) open = QApplication::activeModalWidget();
    // What a step is busy with comes to the front again when what it opened has closed.
    std::erase_if(met, [](const auto& widget) { return !widget || !widget->isVisible(); });
    if (!open || !open->isVisible() || std::count(met.begin(), met.end(), open)) return;
    met.emplace_back(open);
    const Step step = steps.empty() ? Step() : steps.front();
    if (!steps.empty()) steps.pop_front();
    // From the event loop, not from the timer: what the step does may open the next dialog, and
    // the timer must go on looking.
    const auto act = [open, step] {
        auto* menu = qobject_cast<QMenu*>(open);
        auto* dialog = qobject_cast<QDialog*>(open);
        if (menu && step.first) return step.first(*menu);
        if (dialog && step.second) return step.second(*dialog);
        ADD_FAILURE() << "unforeseen: " << open->windowTitle().toStdString();
        dialog ? dialog->reject() : void(open->close());
    };
    QMetaObject::invokeMethod(open, act, Qt::QueuedConnection);
}

QAction* Person::EntryOf(const QMenu& menu, const std::string& text) {
    const QString name = QString::fromStdString(text).remove(QLatin1Char('&'));
    for (QAction* action : menu.actions())
        if (action->text().remove(QLatin1Char('&')) == name) return action;
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
        const auto& box = dynamic_cast<QMessageBox&>(dialog);
        EXPECT_NE(box.text().toStdString().find(text), std::string::npos);
        EXPECT_GT(box.width(), box.fontMetrics().horizontalAdvance(box.windowTitle()) + 99);
        box.button(ok ? QMessageBox::Ok : QMessageBox::Cancel)->click();
    });
}

void Person::AnswerWith(QDialog& dialog, const std::string& path) {
    auto& name = *dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    name.setText(QString::fromStdString(path));
    Press(name, Qt::Key_Return);
}
