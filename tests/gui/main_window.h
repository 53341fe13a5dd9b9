// The program with its main window off screen, and hands for it.
#pragma once

#include "editor/shell/panel_ids.h"
#include "editor/shell/quilt_app.h"
#include "editor/view/brush.h"
#include "platform/qt/qt_frame.h"
#include "tests/gui/person.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QtTest>

struct MainWindow : testing::Test {
    ~MainWindow() override {
        EXPECT_TRUE(!vWorld || vWorld->FindFreeHandleList() == 0) << "lists are open";
        app.reset();
        std::filesystem::current_path(programFolder);
    }

    void Start(const std::string& game = "", const std::string& folder = ".") {
        app = std::make_unique<CQuiltApp>();
        ASSERT_TRUE(app->InitInstance(std::filesystem::absolute(folder).string(), game));
        window = static_cast<QtFrame*>(&app->Frame().Window());
        window->resize(1024, 768);
        window->activateWindow();
        Settle();
        edit = window->findChild<QWidget*>(QStringLiteral("edit"));
        list = window->findChild<QWidget*>(QStringLiteral("list"));
        ASSERT_TRUE(edit && list);
    }
    void Reopen(const std::string& game) {
        app->Document().OnNewDocument();
        ASSERT_TRUE(app->Document().OnOpenDocument(game));
    }
    /// Long enough for repaints, and for a person to see that a dialog has closed.
    static void Settle() { QTest::qWait(20); }

    template <typename Widget = QWidget>
    static Widget& In(QWidget& parent, int id) {
        auto* widget = parent.findChild<Widget*>(QString::number(id));
        EXPECT_NE(widget, nullptr) << id;
        return *widget;
    }
    template <typename Widget = QWidget>
    Widget& Control(int id) {
        return In<Widget>(*window, id);
    }
    void ClickOnPanel(int id) {
        Click(Control(id), {5, 8});
        Settle();
    }
    /// To whatever has the keyboard, shortcuts first.
    void Hit(const std::vector<Qt::Key>& keys, Qt::KeyboardModifiers with = {}) {
        for (const Qt::Key code : keys) QTest::keyClick(window->windowHandle(), code, with);
        Settle();
        window->activateWindow();
        Settle();
    }
    static void PressOk(QDialog& dialog) { In<QPushButton>(dialog, platform::kIdOk).click(); }

    /// An entry of the menu bar, which is to be enabled.
    void Choose(const std::string& menu, const std::string& text) {
        for (QAction* top : window->menuBar()->actions()) {
            if (top->text().toStdString() != menu) continue;
            QAction* entry = Person::EntryOf(*top->menu(), text);
            ASSERT_TRUE(entry && entry->isEnabled()) << text;
            entry->trigger();
            return Settle();
        }
        FAIL() << menu;
    }

    /// Keys to whatever has the focus of the dialog.
    static void Key(QDialog& dialog, std::initializer_list<Qt::Key> codes) {
        for (const Qt::Key code : codes)
            Press(dialog.focusWidget() ? *dialog.focusWidget() : dialog, code);
    }
    /// Types a name into a dialog, and Enter.
    static auto Named(const QString& name) {
        return [name](QDialog& dialog) {
            Type(*dialog.focusWidget(), name);
            Key(dialog, {Qt::Key_Return});
        };
    }
    static void Fill(QDialog& dialog, int id, const QString& text) {
        auto& field = In<QLineEdit>(dialog, id);
        field.setFocus();
        field.selectAll();
        Type(field, text);
    }

    /// The middle of a world tile in window pixels.
    QPoint At(int x, int y) {
        const CQuiltView& view = app->Frame().EditView();
        const double scale = 8.0 / static_cast<double>(view.Zoom());
        return {int((x + view.Scroll().x + 0.5) * scale), int((y + view.Scroll().y + 0.5) * scale)};
    }
    Dobject& Board() { return *vWorld->Root().children.front(); }

    const std::string programFolder = std::filesystem::current_path().string();
    TempFolder temp;
    Person person;
    std::unique_ptr<CQuiltApp> app;
    QtFrame* window = nullptr;
    QWidget *edit = nullptr, *list = nullptr;
};
