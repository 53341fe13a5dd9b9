#include "platform/qt/picture_widget.h"

#include "platform/keys.h"
#include "platform/qt/qt_keys.h"
#include "platform/qt/qt_menu.h"
#include "platform/qt/qt_text.h"

#include <QBackingStore>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

using platform::Point;
using platform::Size;

std::array<std::uint32_t, 256> vScreenColors{};

namespace {

constexpr int kNotch = 120;

int CeilOf(double value) { return static_cast<int>(std::ceil(value - 1e-6)); }

// The first and, counted from the end, the last of `count` bytes that differ; they do differ.
int FirstDifference(const unsigned char* a, const unsigned char* b, int count) {
    int at = 0;
    for (; at + 8 <= count && std::memcmp(a + at, b + at, 8) == 0; at += 8) {
    }
    while (at < count && a[at] == b[at]) ++at;
    return at;
}
int LastDifference(const unsigned char* a, const unsigned char* b, int count) {
    for (; count >= 8 && std::memcmp(a + count - 8, b + count - 8, 8) == 0; count -= 8) {
    }
    while (count > 0 && a[count - 1] == b[count - 1]) --count;
    return count - 1;
}

// How `from` pixels of a picture lie on `to` of the screen, by repeating or leaving out whole
// ones.
struct Stretch {
    int from;
    int to;

    int Source(int at) const { return static_cast<int>(static_cast<std::int64_t>(at) * from / to); }
    /// The first screen pixel that shows the picture's or one after it.
    int Shown(int source) const {
        return static_cast<int>((static_cast<std::int64_t>(source) * to + from - 1) / from);
    }
};

// The screen pixels from `begin` to before `end` of one row.
void ExpandRow(const unsigned char* row, const Stretch& across, std::uint32_t* out, int begin,
               int end) {
    const auto& colors = vScreenColors;
    if (across.from == across.to)
        for (int x = begin; x < end; ++x) out[x] = colors[row[x]];
    else if (across.from == 2 * across.to)
        for (int x = begin; x < end; ++x) out[x] = colors[row[2 * x]];
    else
        for (int x = begin; x < end; ++x) out[x] = colors[row[across.Source(x)]];
}

}  // namespace

PictureWidget::PictureWidget(QWidget* parent, platform::WindowEvents* listener)
    : QWidget(parent), events(listener) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_InputMethodEnabled);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setMouseTracking(true);
}

void PictureWidget::BePartOfForm() {
    inForm = true;
    if (events && events->TakesKeys()) setFocusPolicy(Qt::StrongFocus);
}

// --- places ------------------------------------------------------------------------------------

int PictureWidget::PixelSide() const { return std::max(1, static_cast<int>(devicePixelRatioF())); }

QSize PictureWidget::DeviceSize() const {
    const double ratio = devicePixelRatioF();
    return {CeilOf(width() * ratio), CeilOf(height() * ratio)};
}

Size PictureWidget::ClientSize() const {
    const QSize device = DeviceSize();
    const int side = PixelSide();
    return {(device.width() + side - 1) / side, (device.height() + side - 1) / side};
}

Point PictureWidget::WindowPoint(QPointF at) const {
    const double unit = devicePixelRatioF() / PixelSide();
    return {static_cast<int>(std::floor(at.x() * unit)),
            static_cast<int>(std::floor(at.y() * unit))};
}

Point PictureWidget::ClientToScreen(Point at) const {
    const double unit = PixelSide() / devicePixelRatioF();
    const QPoint screen = mapToGlobal(QPointF(at.x * unit, at.y * unit)).toPoint();
    return {screen.x(), screen.y()};
}

// --- painting ----------------------------------------------------------------------------------

void PictureWidget::Invalidate() {
    if (asked) return;
    asked = true;
    QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::LowEventPriority);
}

void PictureWidget::customEvent(QEvent*) {
    asked = false;
    // What is hidden is drawn when it shows, and a box over an OnDraw lets that end first.
    if (!isVisible() || !events) return;
    if (drawing) return update();
    const QRect changed = Compose();
    if (changed.isEmpty()) return;
    ready = true;
    repaint(AreaOf(changed));
    ready = false;
}

QRect PictureWidget::Compose() {
    drawing = true;
    changedPixels = {};
    events->OnDraw(*this);
    drawing = false;
    return changedPixels;
}

bool PictureWidget::Prepare(const platform::Rows8& picture, Size stretched) {
    const QSize device = DeviceSize();
    const Size size{picture.w, picture.h};
    const bool sameFrame = frame.size() == device;
    if (sameFrame && size == lastSize && stretched == lastStretched && lastColors == vScreenColors)
        return false;
    if (!sameFrame) {
        frame = QImage(device, QImage::Format_RGB32);
        frame.fill(Qt::black);
    }
    lastSize = size;
    lastStretched = stretched;
    lastColors = vScreenColors;
    return true;
}

void PictureWidget::ShowPicture(const platform::Rows8& picture, Size shown) {
    if (!drawing || picture.w < 1 || picture.h < 1) return;
    const Stretch across{picture.w, shown.w * PixelSide()};
    const Stretch down{picture.h, shown.h * PixelSide()};
    const bool whole = Prepare(picture, {across.to, down.to});
    const int visibleW = std::min(across.to, frame.width());
    const int visibleH = std::min(down.to, frame.height());
    if (visibleW < 1 || visibleH < 1) return;
    // Only what shows is compared: of a picture shown at half its size every second row.
    const int width = across.Source(visibleW - 1) + 1;
    lastRows.resize(static_cast<std::size_t>(std::min(visibleH, picture.h)) *
                    static_cast<std::size_t>(width));
    unsigned char* known = lastRows.data();
    const auto stride = static_cast<std::size_t>(frame.bytesPerLine());
    unsigned char* bits = frame.bits();
    QRect changed;
    for (int y = 0; y < visibleH; known += width) {
        const int source = down.Source(y);
        const int end = std::min(down.Shown(source + 1), visibleH);
        const unsigned char* row = picture.rows[source];
        if (whole || std::memcmp(known, row, static_cast<std::size_t>(width)) != 0) {
            int left = 0;
            int right = visibleW;
            if (!whole) {
                left = across.Shown(FirstDifference(known, row, width));
                right = std::min(across.Shown(LastDifference(known, row, width) + 1), visibleW);
            }
            std::memcpy(known, row, static_cast<std::size_t>(width));
            if (left < right) {
                const auto begin = static_cast<std::size_t>(left) * sizeof(std::uint32_t);
                const auto bytes = static_cast<std::size_t>(right - left) * sizeof(std::uint32_t);
                unsigned char* out = bits + static_cast<std::size_t>(y) * stride;
                ExpandRow(row, across, reinterpret_cast<std::uint32_t*>(out), left, right);
                for (int copy = y + 1; copy < end; ++copy)
                    std::memcpy(bits + static_cast<std::size_t>(copy) * stride + begin, out + begin,
                                bytes);
                changed |= QRect(left, y, right - left, end - y);
            }
        }
        y = end;
    }
    changedPixels |= changed;
}

QRect PictureWidget::AreaOf(const QRect& pixels) const {
    const double ratio = devicePixelRatioF();
    const QRectF own(pixels.x() / ratio, pixels.y() / ratio, pixels.width() / ratio,
                     pixels.height() / ratio);
    // At a broken factor a device pixel lies in more than one of the widget's.
    const int margin = ratio == std::floor(ratio) ? 0 : 2;
    return own.toAlignedRect().adjusted(-margin, -margin, margin, margin);
}

void PictureWidget::ShowFrame(QPainter& own) {
    if (frame.isNull()) return;
    const QSize device = frame.size();
    const double ratio = devicePixelRatioF();
    // At a broken factor the widget may begin inside a device pixel; the picture begins with
    // the next whole one.
    const QTransform place = own.deviceTransform();
    const double left = (std::ceil(place.dx() - 1e-6) - place.dx()) / ratio;
    const double top = (std::ceil(place.dy() - 1e-6) - place.dy()) / ratio;
    // What lies before it is a part of a pixel, which goes on with the picture's edge.
    if (left > 0)
        own.drawImage(QRectF(0, 0, left, height()), frame, QRectF(0, 0, 1, device.height()));
    if (top > 0) own.drawImage(QRectF(0, 0, width(), top), frame, QRectF(0, 0, device.width(), 1));
    frame.setDevicePixelRatio(ratio);
    own.drawImage(QPointF(left, top), frame);
    frame.setDevicePixelRatio(1);
}

void PictureWidget::paintEvent(QPaintEvent* event) {
    if (drawing) return;
    QPainter own(this);
    if (!events) {
        own.fillRect(rect(), palette().color(QPalette::Window));
        return;
    }
    // Whoever asked for this paint may expect any change in it, and may want a part of the
    // window or take it for something else than the screen.
    const bool asIs = std::exchange(ready, false);
    const QRect changed = asIs ? QRect() : Compose();
    ShowFrame(own);
    const QPaintDevice* screen = backingStore() ? backingStore()->paintDevice() : nullptr;
    const bool shown = event->region() == QRegion(rect()) && redirected(nullptr) == screen;
    if (!shown && !changed.isEmpty()) {
        ready = true;
        update(AreaOf(changed));
    }
    if (inForm && hasFocus()) PaintFocus(own);
}

// Two lines, so that one of them is seen on any picture.
void PictureWidget::PaintFocus(QPainter& own) const {
    const QRectF all(0.5, 0.5, width() - 1, height() - 1);
    own.setPen(palette().color(QPalette::Highlight));
    own.drawRect(all);
    own.setPen(palette().color(QPalette::HighlightedText));
    own.drawRect(all.adjusted(1, 1, -1, -1));
}

int PictureWidget::TrackPopupMenu(const platform::Menu& menu, Point screen) {
    return RunMenu(this, menu, {screen.x, screen.y});
}

void PictureWidget::SetName(const std::string& name) { setAccessibleName(FromUtf8(name)); }

void PictureWidget::SetDescription(const std::string& description) {
    // Told at each repaint: only a change is news.
    const QString text = FromUtf8(description);
    if (accessibleDescription() != text) setAccessibleDescription(text);
}

// --- mouse -------------------------------------------------------------------------------------

void PictureWidget::Press(QMouseEvent& event) {
    const bool ctrl = event.modifiers() & Qt::ControlModifier;
    const Point at = WindowPoint(event.position());
    if (event.button() == Qt::LeftButton) events->OnLButtonDown(ctrl, at);
    if (event.button() == Qt::RightButton) events->OnRButtonDown(ctrl, at);
}

void PictureWidget::mousePressEvent(QMouseEvent* event) {
    if (events) Press(*event);
}

void PictureWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (!events) return;
    if (event->button() == Qt::LeftButton)
        events->OnLButtonDblClk(event->modifiers() & Qt::ControlModifier,
                                WindowPoint(event->position()));
    else
        Press(*event);
}

void PictureWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (!events) return;
    const bool ctrl = event->modifiers() & Qt::ControlModifier;
    const Point at = WindowPoint(event->position());
    if (event->button() == Qt::LeftButton) events->OnLButtonUp(ctrl, at);
    if (event->button() == Qt::RightButton) events->OnRButtonUp(ctrl, at);
}

void PictureWidget::mouseMoveEvent(QMouseEvent* event) {
    if (!events) return;
    // Qt goes on telling of a drag outside the widget; the editor asks for that by capturing.
    if (!captured && !rect().contains(event->position().toPoint())) return;
    events->OnMouseMove(event->modifiers() & Qt::ControlModifier, WindowPoint(event->position()));
}

void PictureWidget::wheelEvent(QWheelEvent* event) {
    event->accept();
    if (!events) return;
    // Touch pads turn in small steps: they are collected to whole notches.
    wheel += event->angleDelta().y();
    for (; std::abs(wheel) >= kNotch; wheel -= wheel > 0 ? kNotch : -kNotch)
        events->OnMouseWheel(wheel > 0 ? kNotch : -kNotch);
}

// --- keyboard ----------------------------------------------------------------------------------

bool PictureWidget::focusNextPrevChild(bool next) {
    return inForm && QWidget::focusNextPrevChild(next);
}

void PictureWidget::keyPressEvent(QKeyEvent* event) {
    const bool alt = event->modifiers() & Qt::AltModifier;
    const bool ctrl = event->modifiers() & Qt::ControlModifier;
    const int code = KeyCode(*event);
    const bool moves = (code >= platform::kKeyPageUp && code <= platform::kKeyDown) ||
                       code == platform::kKeyInsert || code == platform::kKeyDelete;
    const bool forForm = inForm && (!moves || ctrl);
    if (!events || forForm || (alt && !ctrl)) return QWidget::keyPressEvent(event);
    if (code == platform::kKeyShift) shiftDown = true;
    const bool flagged = code && ctrl && !alt && !inForm;
    const bool shift = event->modifiers() & Qt::ShiftModifier && code != platform::kKeyShift;
    const int flags = platform::kWithCtrl | (shift ? platform::kWithShift : 0);
    if (code) events->OnKeyDown(flagged ? code | flags : code);
    // Ctrl with Alt types the third level of some keyboards, as AltGr does.
    if (ctrl && !alt) return;
    for (int ch : TypedCodes(event->text())) events->OnChar(ch);
}

void PictureWidget::keyReleaseEvent(QKeyEvent* event) {
    if (!events || inForm || event->isAutoRepeat()) return;
    const int code = KeyCode(*event);
    if (code == platform::kKeyShift) shiftDown = false;
    if (code) events->OnKeyUp(code);
}

void PictureWidget::inputMethodEvent(QInputMethodEvent* event) {
    if (events)
        for (int ch : TypedCodes(event->commitString())) events->OnChar(ch);
    event->accept();
}

void PictureWidget::focusOutEvent(QFocusEvent* event) {
    // The key will be let go elsewhere.
    if (events && shiftDown) events->OnKeyUp(platform::kKeyShift);
    shiftDown = false;
    QWidget::focusOutEvent(event);
}
