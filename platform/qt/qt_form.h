// A form's controls as Qt widgets, laid out in dialog units.
#pragma once

#include "platform/form.h"

#include <QButtonGroup>
#include <QKeySequence>
#include <QList>
#include <QWidget>
#include <functional>
#include <memory>
#include <unordered_map>

class PictureWidget;
class CodeWidget;

class QtForm final : public QWidget, public platform::FormWindow {
public:
    /// Makes the controls and calls OnInit. `listener` and the table of `form` outlive this.
    QtForm(QWidget* parent, const platform::Form& form, platform::FormEvents& listener);
    ~QtForm() override;

    /// What EndDialog tells; null, the default, for a panel.
    void SetEnd(std::function<void(int)> end) { onEnd = std::move(end); }
    /// Clicks on what takes no text give this widget the keyboard: for panels.
    void SetHome(std::function<void()> focusHome) { onHome = std::move(focusHome); }
    /// These Alt keys belong to others: the buttons that have them as well lose them.
    void GiveUp(const QList<QKeySequence>& mnemonics);
    /// The keyboard goes to the control that had it last, else to the first that takes it, with
    /// its text selected.
    void FocusFirst();

    // platform::FormWindow
    void SetText(int id, const std::string& text) override;
    std::string GetText(int id) const override;
    void SetCheck(int id, bool on) override;
    bool IsChecked(int id) const override;
    void SetValue(int id, int value) override;
    int GetValue(int id) const override;
    void Enable(int id, bool on) override;
    void SetFocus(int id) override;
    platform::Window* Picture(int id) override;
    platform::CodeControl* Code(int id) override;
    int TrackMenuBelow(int id, const platform::Menu& menu) override;
    platform::Size ClientSize() const override { return {width(), height()}; }
    void Invalidate() override;
    void EndDialog(int result) override;

    /// Of the form without a menu bar, in layout pixels.
    QSize sizeHint() const override { return formSize; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void MakeControls();
    QWidget* MakeControl(const platform::Control& control);
    QWidget* MakeButton(const platform::Control& control);
    QWidget* MakeToggle(const platform::Control& control);
    QWidget* MakeEdit(const platform::Control& control);
    QWidget* MakeSlider(const platform::Control& control);
    QWidget* MakeCode(const platform::Control& control);
    void Click(int id);
    void Dress(QWidget& widget, const platform::Control& control);
    void LayOut();
    template <typename Widget>
    Widget* Find(int id) const;
    bool TakesText(const QObject* watched) const;

    const platform::Form& form;
    platform::FormEvents& events;
    std::unordered_map<int, QWidget*> widgets;
    QButtonGroup radios;
    std::function<void(int)> onEnd;
    std::function<void()> onHome;
    QSize formSize;
};

/// Runs a form as a modal dialog and gives the value of EndDialog.
int RunFormDialog(const platform::Form& form, platform::FormEvents& events);
