#include "platform/qt/qt_frame.h"

#include "platform/qt/picture_widget.h"
#include "platform/qt/qt_form.h"
#include "platform/qt/qt_menu.h"
#include "platform/qt/qt_text.h"

#include <xcb/xcb.h>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QStatusBar>
#include <QWindow>
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>

using platform::Pane;
using platform::Size;

namespace {

constexpr QSize kUsualSize(1024, 768);
// About what a title bar takes of the screen; how much it is, is known too late.
constexpr QSize kTitleBar(0, 40);

// Bits of the native key state on X11 and Wayland; elsewhere the indicators stay dark.
constexpr quint32 kCapsBit = 0x2;
constexpr quint32 kNumBit = 0x10;

// The bits as they are now; nothing where the window system tells them with key events alone.
std::optional<quint32> LockState() {
    // The platform that draws off screen has the interface too, with nothing behind it.
    if (QGuiApplication::platformName() != QLatin1String("xcb")) return {};
    const auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11) return {};
    xcb_connection_t* server = x11->connection();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
    const std::unique_ptr<xcb_query_pointer_reply_t, decltype(&std::free)> reply(
        xcb_query_pointer_reply(server, xcb_query_pointer(server, root), nullptr), &std::free);
    if (!reply) return {};
    return reply->mask;
}

std::size_t IndexOf(Pane pane) { return static_cast<std::size_t>(pane); }

// A panel in its pane: scrolled where the pane is too small for it.
class PanelArea final : public QScrollArea {
public:
    PanelArea(QWidget* parent, QtForm* form) : QScrollArea(parent) {
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setWidget(form);
    }
    QSize sizeHint() const override { return widget()->sizeHint(); }
};

// Lies around the pane that has the keyboard, over the bars between the panes.
class PaneRing final : public QWidget {
public:
    static constexpr int kWidth = 2;

    explicit PaneRing(QWidget* parent) : QWidget(parent) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

protected:
    void resizeEvent(QResizeEvent*) override {
        const QMargins inside(kWidth, kWidth, kWidth, kWidth);
        setMask(QRegion(rect()) - QRegion(rect().marginsRemoved(inside)));
    }
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(), palette().color(QPalette::Highlight));
    }
};

}  // namespace

QtFrame::QtFrame(platform::FrameEvents& listener)
    : events(listener),
      outer(new QSplitter(Qt::Horizontal, this)),
      inner(new QSplitter(Qt::Vertical, this)),
      message(new QLabel(this)),
      ring(new PaneRing(this)) {
    setCentralWidget(outer);
    outer->addWidget(inner);
    outer->setStretchFactor(0, 1);
    outer->setChildrenCollapsible(false);
    inner->setChildrenCollapsible(false);
    constexpr int kEdge = PaneRing::kWidth;
    outer->setContentsMargins(kEdge, kEdge, kEdge, kEdge);

    statusBar()->addWidget(message, 1);
    const char* const names[] = {"CAP", "NUM", "SCRL"};
    for (std::size_t i = 0; i < locks.size(); ++i) {
        locks[i] = new QLabel(QString::fromLatin1(names[i]), this);
        locks[i]->setEnabled(false);
        statusBar()->addPermanentWidget(locks[i]);
    }
    setAcceptDrops(true);
    qApp->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, [this] { ShowFocus(); });
    for (const int step : {1, -1}) {
        const QKeySequence keys(step > 0 ? Qt::Key_F6 : Qt::SHIFT | Qt::Key_F6);
        connect(new QShortcut(keys, this), &QShortcut::activated, this,
                [this, step] { GoToPane(step); });
    }
    const QSize room = screen()->availableSize() - kTitleBar;
    resize(kUsualSize.boundedTo(room));
}

// The focus moves once more when the panes are deleted, after this part of the window has gone.
QtFrame::~QtFrame() { disconnect(qApp, nullptr, this, nullptr); }

// --- caption, menu, status bar -----------------------------------------------------------------

void QtFrame::SetCaption(const std::string& caption) { setWindowTitle(FromUtf8(caption)); }

void QtFrame::SetMenuBar(const platform::Menu& menu) {
    // The old menus may be the ones whose entry has just been chosen.
    const auto old = menuBar()->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
    menuBar()->clear();
    for (QMenu* gone : old) gone->deleteLater();
    for (const platform::MenuItem& item : menu)
        FillMenu(*menuBar()->addMenu(FromUtf8(item.text)), item.items,
                 [this](int command) { events.OnCommand(command); });
    KeepMnemonics();
}

void QtFrame::KeepMnemonics() {
    if (!form) return;
    QList<QKeySequence> taken;
    for (const QAction* top : menuBar()->actions()) taken << QKeySequence::mnemonic(top->text());
    form->GiveUp(taken);
}

bool QtFrame::IsMenuKey(const QKeyEvent& event) const {
    const QKeySequence pressed(event.keyCombination());
    for (const QAction* top : menuBar()->actions())
        for (const QAction* action : top->menu()->actions())
            if (action->shortcut() == pressed) return true;
    return false;
}

void QtFrame::CheckMenuItem(int command, bool checked) {
    for (const QAction* top : menuBar()->actions()) {
        for (QAction* action : top->menu()->actions()) {
            if (action->data().toInt() != command || action->isSeparator()) continue;
            action->setCheckable(true);
            action->setChecked(checked);
        }
    }
}

void QtFrame::SetIdleMessage(const std::string& text) {
    idle = FromUtf8(text);
    message->setText(idle);
}

void QtFrame::ShowNotice(const std::string& text) { message->setText(FromUtf8(text)); }

bool QtFrame::EndsNotice(const QObject& watched, const QEvent& event) const {
    if (event.type() == QEvent::Show) return qobject_cast<const QMenu*>(&watched);
    const auto* widget = qobject_cast<const QWidget*>(&watched);
    return event.type() == QEvent::KeyPress &&
           (&watched == windowHandle() || (widget && widget->window() == this));
}

void QtFrame::ShowStatusBar(bool shown) { statusBar()->setVisible(shown); }

bool QtFrame::IsStatusBarShown() const {
    const auto* bar = findChild<QStatusBar*>();
    return bar && !bar->isHidden();
}

void QtFrame::ShowLocks(const QKeyEvent& event) {
    const quint32 state = event.nativeModifiers();
    // The state is that before the key: the lock's own key turns it.
    const bool pressed = event.type() == QEvent::KeyPress && !event.isAutoRepeat();
    const auto lit = [&](quint32 bit, int key) {
        const bool on = state & bit;
        return pressed && event.key() == key ? !on : on;
    };
    if (event.type() == QEvent::KeyPress) {
        locks[0]->setEnabled(lit(kCapsBit, Qt::Key_CapsLock));
        locks[1]->setEnabled(lit(kNumBit, Qt::Key_NumLock));
    }
    if (pressed && event.key() == Qt::Key_ScrollLock) locks[2]->setEnabled(!locks[2]->isEnabled());
}

void QtFrame::AskLocks() {
    const auto state = LockState();
    if (!state) return;
    locks[0]->setEnabled(*state & kCapsBit);
    locks[1]->setEnabled(*state & kNumBit);
}

void QtFrame::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) AskLocks();
}

bool QtFrame::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (message->text() != idle && EndsNotice(*watched, *event)) message->setText(idle);
    // Once for each event, on its way to the window.
    if (isKey && watched == windowHandle()) ShowLocks(*static_cast<QKeyEvent*>(event));
    if (std::find(panes.begin(), panes.end(), watched) != panes.end()) {
        if (event->type() == QEvent::MouseButtonRelease) FocusHome();
        if (event->type() == QEvent::Resize || event->type() == QEvent::Move) ShowFocus();
    }
    // A text field would keep some of the menu bar's keys to itself.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* widget = qobject_cast<QWidget*>(watched);
        if (widget && widget->window() == this && IsMenuKey(*static_cast<QKeyEvent*>(event))) {
            event->ignore();
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

// --- panes -------------------------------------------------------------------------------------

Size QtFrame::ClientSize() const { return {outer->width(), outer->height()}; }

void QtFrame::Place(Pane pane, QWidget* content) {
    QSplitter* splitter = pane == Pane::Left ? outer : inner;
    const int index = pane == Pane::Lower ? 1 : 0;
    QPointer<QWidget>& place = panes[IndexOf(pane)];
    if (place) {
        // The old content may be what sent the command that replaces it.
        QWidget* gone = splitter->replaceWidget(splitter->indexOf(place), content);
        gone->hide();
        gone->deleteLater();
        content->show();
    } else {
        splitter->insertWidget(index, content);
    }
    place = content;
}

platform::Window* QtFrame::CreatePane(Pane pane, platform::WindowEvents& listener) {
    auto* window = new PictureWidget(nullptr, &listener);
    constexpr int kLeast = 24;
    window->setMinimumSize(kLeast, kLeast);
    if (listener.TakesKeys()) window->setFocusPolicy(Qt::TabFocus);
    window->setObjectName(QString::fromLatin1(pane == Pane::Left ? "list" : "edit"));
    Place(pane, window);
    return window;
}

platform::FormWindow* QtFrame::CreateFormPane(Pane pane, const platform::Form& table,
                                              platform::FormEvents& listener) {
    form = new QtForm(nullptr, table, listener);
    form->setObjectName(QStringLiteral("panel"));
    form->SetHome([this] { FocusHome(); });
    KeepMnemonics();
    Place(pane, new PanelArea(nullptr, form));
    return form;
}

void QtFrame::ApplySizes() {
    if (leftWidth > 0)
        outer->setSizes(
            {leftWidth, std::max(outer->width() - leftWidth - outer->handleWidth(), 1)});
    if (lowerHeight > 0)
        inner->setSizes(
            {std::max(inner->height() - lowerHeight - inner->handleWidth(), 1), lowerHeight});
}

void QtFrame::SetLeftWidth(int w) {
    leftWidth = w;
    ApplySizes();
}

void QtFrame::SetLowerHeight(int h) {
    // A panel in a tall font is not cut.
    lowerHeight = form ? std::max(h, form->sizeHint().height()) : h;
    inner->setSizes(
        {std::max(inner->height() - lowerHeight - inner->handleWidth(), 1), lowerHeight});
}

Size QtFrame::PaneSize(Pane pane) const {
    const QWidget* widget = panes[IndexOf(pane)];
    return widget ? Size{widget->width(), widget->height()} : Size{};
}

void QtFrame::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    if (!isMinimized()) events.OnSize(ClientSize());
}

void QtFrame::InvalidateAll() {
    events.OnFramePaint();
    for (const auto& pane : panes) {
        if (auto* picture = dynamic_cast<PictureWidget*>(pane.data()))
            picture->Invalidate();
        else if (pane)
            pane->update();
    }
    if (form) form->Invalidate();
}

// --- focus, showing, closing -------------------------------------------------------------------

void QtFrame::SetHomeFocus(platform::Window* window) {
    home = dynamic_cast<PictureWidget*>(window);
    if (!home) return;
    home->setFocusPolicy(Qt::StrongFocus);
    home->setFocus();
}

void QtFrame::FocusHome() {
    // While a dialog is open this says who gets the keyboard after it.
    if (home) home->setFocus(Qt::OtherFocusReason);
}

QWidget* QtFrame::FocusedPane() const {
    const QWidget* focus = QApplication::focusWidget();
    const auto has = [focus](const QWidget* pane) {
        return pane && focus && (pane == focus || pane->isAncestorOf(focus));
    };
    const auto found = std::find_if(panes.begin(), panes.end(), has);
    return found == panes.end() ? nullptr : found->data();
}

void QtFrame::GoToPane(int step) {
    const auto count = static_cast<std::ptrdiff_t>(panes.size());
    const auto present = std::find(panes.begin(), panes.end(), FocusedPane()) - panes.begin();
    if (present == count) return FocusHome();
    QWidget* next = panes[static_cast<std::size_t>((present + step + count) % count)];
    if (next == panes[IndexOf(Pane::Lower)])
        form->FocusFirst();
    else
        next->setFocus(Qt::TabFocusReason);
}

void QtFrame::ShowFocus() {
    const QWidget* pane = FocusedPane();
    ring->setVisible(pane);
    if (!pane) return;
    constexpr int kOut = PaneRing::kWidth;
    ring->setGeometry(
        QRect(pane->mapTo(this, QPoint()), pane->size()).adjusted(-kOut, -kOut, kOut, kOut));
}

void QtFrame::Show() {
    show();
    // The panes have their real sizes only now.
    QApplication::sendPostedEvents();
    ApplySizes();
    if (home) home->setFocus();
    AskLocks();
}

void QtFrame::Post(int command) {
    QMetaObject::invokeMethod(
        this, [this, command] { events.OnCommand(command); }, Qt::QueuedConnection);
}

void QtFrame::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void QtFrame::dropEvent(QDropEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    const std::string path = urls.size() == 1 ? ToUtf8(urls.front().toLocalFile()) : "";
    event->acceptProposedAction();
    // Whoever the file comes from waits until the drop has been answered.
    QMetaObject::invokeMethod(
        this, [this, path] { events.OnDrop(path); }, Qt::QueuedConnection);
}

void QtFrame::closeEvent(QCloseEvent* event) {
    if (events.OnClose())
        event->accept();
    else
        event->ignore();
}
