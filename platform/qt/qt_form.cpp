#include "platform/qt/qt_form.h"

#include "platform/keys.h"
#include "platform/qt/code_widget.h"
#include "platform/qt/dialog_units.h"
#include "platform/qt/picture_widget.h"
#include "platform/qt/qt_keys.h"
#include "platform/qt/qt_menu.h"
#include "platform/qt/qt_text.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QSlider>
#include <QTextBrowser>
#include <algorithm>

using platform::CodeEvent;
using platform::Control;
using platform::ControlKind;

namespace {

/// How much a form may grow for a wide font.
constexpr double kMaxGrowth = 2.0;

bool HoldsText(ControlKind kind) {
    switch (kind) {
        case ControlKind::Label:
        case ControlKind::Button:
        case ControlKind::DefaultButton:
        case ControlKind::CheckBox:
        case ControlKind::Radio:
            return true;
        default:
            return false;
    }
}

// The width that a control's text needs. A button's own hint has a least width, which the small
// buttons of a form need not have.
int WantedWidth(const QWidget& widget) {
    constexpr int kButtonAir = 12;
    if (const auto* button = qobject_cast<const QPushButton*>(&widget))
        return button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width() +
               kButtonAir;
    const auto* label = qobject_cast<const QLabel*>(&widget);
    return label && label->wordWrap() ? label->minimumSizeHint().width()
                                      : widget.sizeHint().width();
}

bool IsToggle(ControlKind kind) {
    return kind == ControlKind::CheckBox || kind == ControlKind::Radio;
}

// How far a control's text may reach, in dialog units: to its own edge or, since check boxes and
// radio buttons have none that is seen, to what stands next in their row.
int Room(const platform::Form& form, const Control& control) {
    if (!IsToggle(control.kind)) return control.w;
    int end = 0;
    for (const Control& next : form.controls) {
        const bool behind = next.x >= control.x + control.w;
        const bool inRow = next.y < control.y + control.h && control.y < next.y + next.h;
        if (behind && inRow && (end == 0 || next.x < end)) end = next.x;
    }
    return end > 0 ? end - control.x : control.w;
}

// A text that needs more room than its control has makes the whole form that much wider.
double Growth(const QWidget& widget, const Control& control, int room, const QSize& base) {
    if (!HoldsText(control.kind) || control.w < 1) return 1;
    return static_cast<double>(WantedWidth(widget)) / Across(room, base);
}

}  // namespace

QtForm::QtForm(QWidget* parent, const platform::Form& table, platform::FormEvents& listener)
    : QWidget(parent), form(table), events(listener), radios(this) {
    setFont(FormFont(form.font, form.points));
    MakeControls();
    LayOut();
    events.OnInit(*this);
}

QtForm::~QtForm() {
    // Controls report changes while they go; nobody is left to hear of them.
    for (auto& [id, widget] : widgets) widget->blockSignals(true);
}

// --- making ------------------------------------------------------------------------------------

void QtForm::MakeControls() {
    QWidget* previous = nullptr;
    for (const Control& control : form.controls) {
        QWidget* widget = MakeControl(control);
        Dress(*widget, control);
        widgets[control.id] = widget;
        if (previous) setTabOrder(previous, widget);
        previous = widget;
    }
    // A label's mnemonic leads to the field behind it.
    QLabel* label = nullptr;
    for (const Control& control : form.controls) {
        QWidget* widget = widgets[control.id];
        if (label && widget->focusPolicy() != Qt::NoFocus) label->setBuddy(widget);
        label = qobject_cast<QLabel*>(widget);
    }
}

QWidget* QtForm::MakeControl(const Control& control) {
    switch (control.kind) {
        case ControlKind::Label: {
            auto* label = new QLabel(FromUtf8(control.text), this);
            label->setWordWrap(control.h > 10);
            return label;
        }
        case ControlKind::Group: {
            auto* group = new QGroupBox(FromUtf8(control.text), this);
            group->lower();
            return group;
        }
        case ControlKind::Button:
        case ControlKind::DefaultButton:
            return MakeButton(control);
        case ControlKind::CheckBox:
        case ControlKind::Radio:
            return MakeToggle(control);
        case ControlKind::Slider:
        case ControlKind::VSlider:
            return MakeSlider(control);
        case ControlKind::Picture: {
            auto* picture = new PictureWidget(this, events.PictureEvents(control.id));
            picture->BePartOfForm();
            return picture;
        }
        case ControlKind::Page: {
            auto* page = new QTextBrowser(this);
            page->setTabChangesFocus(true);
            return page;
        }
        case ControlKind::Code:
            return MakeCode(control);
        default:
            return MakeEdit(control);
    }
}

void QtForm::Click(int id) {
    events.OnControl(*this, id);
    if (onHome) onHome();
}

QWidget* QtForm::MakeButton(const Control& control) {
    auto* button = new QPushButton(FromUtf8(control.text), this);
    // In a dialog Enter presses the button that has the focus.
    button->setDefault(control.kind == ControlKind::DefaultButton);
    const int id = control.id;
    connect(button, &QPushButton::clicked, this, [this, id] { Click(id); });
    return button;
}

QWidget* QtForm::MakeToggle(const Control& control) {
    QAbstractButton* button = nullptr;
    if (control.kind == ControlKind::Radio) {
        button = new QRadioButton(FromUtf8(control.text), this);
        radios.addButton(button, control.id);
    } else {
        button = new QCheckBox(FromUtf8(control.text), this);
    }
    const int id = control.id;
    connect(button, &QAbstractButton::clicked, this, [this, id] { Click(id); });
    return button;
}

QWidget* QtForm::MakeEdit(const Control& control) {
    auto* edit = new QLineEdit(FromUtf8(control.text), this);
    edit->clear();
    if (control.kind == ControlKind::ReadOnlyEdit) {
        edit->setReadOnly(true);
        edit->setFocusPolicy(Qt::NoFocus);
        return edit;
    }
    // A sign that stands there already may stay, but none can be typed.
    if (control.kind == ControlKind::NumberEdit)
        edit->setValidator(
            new QRegularExpressionValidator(QRegularExpression(QStringLiteral("-?[0-9]*")), edit));
    if (control.kind == ControlKind::Edit && control.high > 0) edit->setMaxLength(control.high);
    const int id = control.id;
    connect(edit, &QLineEdit::textEdited, this, [this, id] { events.OnChange(*this, id); });
    return edit;
}

QWidget* QtForm::MakeSlider(const Control& control) {
    const bool across = control.kind == ControlKind::Slider;
    auto* slider = new QSlider(across ? Qt::Horizontal : Qt::Vertical, this);
    slider->setInvertedAppearance(!across);
    slider->setInvertedControls(!across);
    slider->setRange(control.low, control.high);
    constexpr int kPages = 10;
    slider->setPageStep(std::max((control.high - control.low) / kPages, 1));
    const int id = control.id;
    connect(slider, &QSlider::valueChanged, this, [this, id] { events.OnChange(*this, id); });
    return slider;
}

QWidget* QtForm::MakeCode(const Control& control) {
    auto* code = new CodeWidget(this);
    const int id = control.id;
    connect(code, &QsciScintillaBase::SCN_CHARADDED, this, [this, id](int ch) {
        events.OnCode(*this, id, {CodeEvent::Kind::CharAdded, ch, 0, 0});
    });
    connect(code, &QsciScintillaBase::SCN_STYLENEEDED, this, [this, id](int position) {
        events.OnCode(*this, id, {CodeEvent::Kind::StyleNeeded, 0, position, 0});
    });
    connect(code, &QsciScintillaBase::SCN_ZOOM, this, [this, id] {
        events.OnCode(*this, id, {CodeEvent::Kind::Zoomed, 0, 0, 0});
    });
    connect(code, &QsciScintillaBase::SCN_MODIFIED, this,
            [this, id](int position, int type, const char*, int, int linesAdded) {
                constexpr int kText =
                    QsciScintillaBase::SC_MOD_INSERTTEXT | QsciScintillaBase::SC_MOD_DELETETEXT;
                if (type & kText)
                    events.OnCode(*this, id, {CodeEvent::Kind::Changed, 0, position, linesAdded});
            });
    return code;
}

void QtForm::Dress(QWidget& widget, const Control& control) {
    widget.setObjectName(QString::number(control.id));
    widget.setEnabled(control.enabled);
    widget.setToolTip(FromUtf8(control.tip));
    QString name = FromUtf8(control.text);
    widget.setAccessibleName(name.remove(QLatin1Char('&')));
    widget.setAccessibleDescription(FromUtf8(control.tip));
    widget.installEventFilter(this);
}

// --- layout ------------------------------------------------------------------------------------

void QtForm::LayOut() {
    const QSize base = BaseUnits(font());
    double growth = 1;
    for (const Control& control : form.controls)
        growth = std::max(growth, Growth(*widgets[control.id], control, Room(form, control), base));
    growth = std::min(growth, kMaxGrowth);
    for (const Control& control : form.controls) {
        const int x = Across(control.x * growth, base);
        const int y = Down(control.y, base);
        const int room = Across((control.x + Room(form, control)) * growth, base) - x;
        const int own = Across((control.x + control.w) * growth, base) - x;
        const int w = IsToggle(control.kind)
                          ? std::clamp(WantedWidth(*widgets[control.id]), own, std::max(own, room))
                          : own;
        widgets[control.id]->setGeometry(x, y, w, Down(control.y + control.h, base) - y);
    }
    formSize = {Across(form.w * growth, base), Down(form.h, base)};
    setMinimumSize(formSize);
    resize(formSize);
}

void QtForm::FocusFirst() {
    if (QWidget* last = focusWidget()) return last->setFocus(Qt::TabFocusReason);
    for (const Control& control : form.controls) {
        QWidget* widget = widgets[control.id];
        if (!widget->isEnabled() || !(widget->focusPolicy() & Qt::TabFocus)) continue;
        SetFocus(control.id);
        return;
    }
}

// --- platform::FormWindow ----------------------------------------------------------------------

template <typename Widget>
Widget* QtForm::Find(int id) const {
    const auto found = widgets.find(id);
    return found == widgets.end() ? nullptr : dynamic_cast<Widget*>(found->second);
}

void QtForm::SetText(int id, const std::string& text) {
    const QString shown = FromUtf8(text);
    if (auto* edit = Find<QLineEdit>(id)) {
        // An unchanged text keeps its caret.
        if (edit->text() != shown) edit->setText(shown);
        if (edit->isReadOnly()) edit->setCursorPosition(0);
    } else if (auto* button = Find<QAbstractButton>(id)) {
        button->setText(shown);
    } else if (auto* label = Find<QLabel>(id)) {
        label->setText(shown);
    } else if (auto* page = Find<QTextBrowser>(id)) {
        page->setHtml(shown);
    }
}

std::string QtForm::GetText(int id) const {
    if (const auto* edit = Find<QLineEdit>(id)) return ToUtf8(edit->text());
    if (const auto* button = Find<QAbstractButton>(id)) return ToUtf8(button->text());
    if (const auto* label = Find<QLabel>(id)) return ToUtf8(label->text());
    return {};
}

void QtForm::SetCheck(int id, bool on) {
    auto* button = Find<QAbstractButton>(id);
    if (!button) return;
    // The last radio button that is on can be cleared only outside of its group's rule.
    const bool exclusive = radios.exclusive();
    if (!on) radios.setExclusive(false);
    button->setChecked(on);
    radios.setExclusive(exclusive);
}

bool QtForm::IsChecked(int id) const {
    const auto* button = Find<QAbstractButton>(id);
    return button && button->isChecked();
}

void QtForm::SetValue(int id, int value) {
    if (auto* slider = Find<QSlider>(id)) {
        const QSignalBlocker quiet(slider);
        slider->setValue(value);
    }
}

int QtForm::GetValue(int id) const {
    const auto* slider = Find<QSlider>(id);
    return slider ? slider->value() : 0;
}

void QtForm::Enable(int id, bool on) {
    if (auto* widget = Find<QWidget>(id)) widget->setEnabled(on);
}

void QtForm::SetFocus(int id) {
    auto* widget = Find<QWidget>(id);
    if (!widget) return;
    widget->setFocus(Qt::OtherFocusReason);
    if (auto* edit = qobject_cast<QLineEdit*>(widget)) edit->selectAll();
}

platform::Window* QtForm::Picture(int id) { return Find<PictureWidget>(id); }

platform::CodeControl* QtForm::Code(int id) { return Find<CodeWidget>(id); }

int QtForm::TrackMenuBelow(int id, const platform::Menu& menu) {
    auto* widget = Find<QWidget>(id);
    if (!widget) return 0;
    return RunMenu(widget, menu, widget->mapToGlobal(QPoint(0, widget->height())));
}

void QtForm::Invalidate() {
    events.OnFormPaint(*this);
    for (auto& [id, widget] : widgets) widget->update();
}

void QtForm::EndDialog(int result) {
    if (onEnd) onEnd(result);
}

void QtForm::GiveUp(const QList<QKeySequence>& mnemonics) {
    for (auto& [id, widget] : widgets) {
        auto* button = qobject_cast<QAbstractButton*>(widget);
        if (button && mnemonics.contains(QKeySequence::mnemonic(button->text())))
            button->setText(button->text().remove(QLatin1Char('&')));
    }
}

// --- events ------------------------------------------------------------------------------------

// In a panel Tab goes round.
bool QtForm::focusNextPrevChild(bool next) {
    if (!onHome) return QWidget::focusNextPrevChild(next);
    std::vector<QWidget*> stops;
    for (const Control& control : form.controls) {
        QWidget* widget = widgets[control.id];
        if (widget->isEnabled() && widget->focusPolicy() & Qt::TabFocus) stops.push_back(widget);
    }
    const auto present = std::find(stops.begin(), stops.end(), focusWidget());
    const auto count = static_cast<std::ptrdiff_t>(stops.size());
    if (present == stops.end()) return false;
    const auto to = (present - stops.begin() + (next ? 1 : count - 1)) % count;
    stops[static_cast<std::size_t>(to)]->setFocus(next ? Qt::TabFocusReason
                                                       : Qt::BacktabFocusReason);
    return true;
}

void QtForm::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    events.OnFormPaint(*this);
}

bool QtForm::TakesText(const QObject* watched) const {
    const auto* edit = qobject_cast<const QLineEdit*>(watched);
    return (edit && !edit->isReadOnly()) || qobject_cast<const QsciScintillaBase*>(watched);
}

bool QtForm::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto& key = *static_cast<const QKeyEvent*>(event);
        const bool plain = !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
        const int code = KeyCode(key);
        if (plain && code && events.OnFormKey(*this, code)) return true;
        const auto* edit = qobject_cast<const QLineEdit*>(watched);
        if (edit && edit->validator() && key.text() == QLatin1String("-")) return true;
        const bool presses = code == platform::kKeySpace || (onHome && code == platform::kKeyEnter);
        auto* picture = dynamic_cast<PictureWidget*>(watched);
        if (plain && presses && picture && picture->PressByKey()) return true;
        const bool leaves = code == platform::kKeyEscape || code == platform::kKeyEnter;
        if (onHome && leaves) {
            onHome();
            return true;
        }
    }
    if (onHome && event->type() == QEvent::MouseButtonRelease && !TakesText(watched)) {
        // After the control has handled its click: it may open a dialog.
        QMetaObject::invokeMethod(
            this, [this] { onHome(); }, Qt::QueuedConnection);
    }
    return QWidget::eventFilter(watched, event);
}
