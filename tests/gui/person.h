// What a person does with the menus and dialogs that open, by hand.
#pragma once

#include "tests/support/hands/hands.h"

#include <QDialog>
#include <QMenu>
#include <QPointer>
#include <QTimer>
#include <deque>
#include <functional>
#include <string>
#include <vector>

class Person {
public:
    Person();
    ~Person();

    /// What to do when the next pop-up menu or dialog opens; in the order of these calls. One
    /// that opens unforeseen, and one that never opens, fails the test.
    void OnMenu(const std::function<void(QMenu&)>& act) { steps.emplace_back(act, nullptr); }
    void OnDialog(const std::function<void(QDialog&)>& act) { steps.emplace_back(nullptr, act); }

    /// Ready-made answers. A menu is gone through by the keyboard, into its sub-menus.
    void ChooseInMenu(const std::vector<std::string>& path);
    void AnswerBox(const std::string& text, bool ok = true);
    void AnswerFileDialog(const std::string& path) {
        OnDialog([path](QDialog& dialog) { AnswerWith(dialog, path); });
    }
    /// Types a path into an open file dialog.
    static void AnswerWith(QDialog& dialog, const std::string& path);
    /// The entry of a menu with that text, with or without mnemonics, or null with a failure.
    static QAction* EntryOf(const QMenu& menu, const std::string& text);

private:
    /// For a menu or for a dialog.
    using Step = std::pair<std::function<void(QMenu&)>, std::function<void(QDialog&)>>;

    void Look();

    std::deque<Step> steps;
    QTimer timer;
    std::vector<QPointer<QWidget>> met;  ///< what steps were taken for, while it is open
};
