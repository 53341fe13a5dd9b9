// The main window: menu bar, status bar, and three panes in two splitters.
#pragma once

#include "platform/frame.h"

#include <QLabel>
#include <QMainWindow>
#include <QPointer>
#include <QSplitter>
#include <array>

class PictureWidget;
class QtForm;

class QtFrame final : public QMainWindow, public platform::Frame {
public:
    explicit QtFrame(platform::FrameEvents& listener);
    ~QtFrame() override;

    // platform::Frame
    void SetCaption(const std::string& caption) override;
    void SetMenuBar(const platform::Menu& menu) override;
    void CheckMenuItem(int command, bool checked) override;
    void SetIdleMessage(const std::string& text) override;
    void ShowNotice(const std::string& text) override;
    void ShowStatusBar(bool shown) override;
    bool IsStatusBarShown() const override;
    platform::Size ClientSize() const override;
    platform::Window* CreatePane(platform::Pane pane, platform::WindowEvents& listener) override;
    platform::FormWindow* CreateFormPane(platform::Pane pane, const platform::Form& form,
                                         platform::FormEvents& listener) override;
    void SetLeftWidth(int w) override;
    void SetLowerHeight(int h) override;
    platform::Size PaneSize(platform::Pane pane) const override;
    void InvalidateAll() override;
    void SetHomeFocus(platform::Window* window) override;
    void Show() override;
    void Close() override { close(); }

    /// Sends the command to OnCommand from the event loop.
    void Post(int command);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Puts a widget in a pane's place, in the size of what stood there.
    void Place(platform::Pane pane, QWidget* content);
    void FocusHome();
    /// The pane that has the keyboard, or null.
    QWidget* FocusedPane() const;
    /// Gives the keyboard to the next pane, or with -1 to the one before.
    void GoToPane(int step);
    /// Puts the ring around the pane that has the keyboard.
    void ShowFocus();
    /// Whether a notice has been seen by the time of this event.
    bool EndsNotice(const QObject& watched, const QEvent& event) const;
    void ShowLocks(const QKeyEvent& event);
    /// Takes the lights from the window system; before the first key nothing else tells.
    void AskLocks();
    /// The menu bar's Alt keys are its own, whatever the panel's buttons are called.
    void KeepMnemonics();
    bool IsMenuKey(const QKeyEvent& event) const;
    void ApplySizes();

    platform::FrameEvents& events;
    QSplitter* outer;
    QSplitter* inner;
    QLabel* message;
    QString idle;                    ///< its text while there is no notice
    std::array<QLabel*, 3> locks{};  ///< CAP, NUM, SCRL
    std::array<QPointer<QWidget>, 3> panes;
    QPointer<QtForm> form;
    QPointer<PictureWidget> home;
    QWidget* ring;
    int leftWidth = 0;
    int lowerHeight = 0;
};
