// What a person does with the program: keys, mouse, menus and dialogs of the real widgets.
#pragma once

#include <QDialog>
#include <QMenu>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <deque>
#include <functional>
#include <string>
#include <vector>

class Person {
public:
    Person();
    Person(const Person&) = delete;
    Person& operator=(const Person&) = delete;
    ~Person();

    /// What to do when the next pop-up menu or dialog opens; in the order of these calls. One
    /// that opens unforeseen, and one that never opens, fails the test.
    void OnMenu(std::function<void(QMenu&)> act);
    void OnDialog(std::function<void(QDialog&)> act);

    /// Ready-made answers. A menu is gone through by the keyboard, into its sub-menus.
    void ChooseInMenu(const std::vector<std::string>& path);
    void AnswerBox(const std::string& text, bool ok = true);
    void AnswerFileDialog(const std::string& path);

    static void Press(QWidget& widget, Qt::Key code, Qt::KeyboardModifiers with = Qt::NoModifier);
    static void Type(QWidget& widget, const QString& text);
    static void Click(QWidget& widget, QPoint at, Qt::MouseButton button = Qt::LeftButton,
                      Qt::KeyboardModifiers with = Qt::NoModifier);
    /// Press at the first point, move over the others, release at the last.
    static void Drag(QWidget& widget, const std::vector<QPoint>& path, Qt::MouseButton button,
                     Qt::KeyboardModifiers with = Qt::NoModifier);

    /// The entry of a menu with that text, mnemonics included, or null with a failure.
    static QAction* EntryOf(const QMenu& menu, const std::string& text);

private:
    struct Step {
        std::function<void(QMenu&)> menu;
        std::function<void(QDialog&)> dialog;
    };
    void Look();
    static void Act(const Step& step, QMenu* menu, QDialog* dialog);

    std::deque<Step> steps;
    QTimer timer;
    std::vector<QPointer<QWidget>> met;  ///< what steps were taken for, while it is open
};
