#include "platform/qt/picture_widget.h"

#include "platform/keys.h"
#include "platform/qt/qt_keys.h"
#include "platform/qt/qt_menu.h"
#include "platform/qt/qt_text.h"

#include <QBackingStore>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPaintEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

using platform::Point;
using platform::Size;

namespace {

constexpr int kNotch = 120;

int CeilOf(double value) { return static_cast<int>(std::ceil(value - 1e-6)); }

// The pixels that the painter writes itself, if they are in memory and of 32 bits.
QImage* PixelsOf(QPainter& painter) {
    QPaintDevice* const device = painter.paintEngine()->paintDevice();
    if (device->devType() != QInternal::Image) return nullptr;
    auto* const image = static_cast<QImage*>(device);
    const bool fits = image->format() == QImage::Format_RGB32 ||
                      image->format() == QImage::Format_ARGB32_Premultiplied;
    return fits ? image : nullptr;
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

void PictureWidget::ShowPicture(const platform::Rows8& picture, Size size) {
    if (!drawing || picture.w < 1 || picture.h < 1) return;
    const int side = PixelSide();
    changedPixels |= shown.Take(picture, {size.w * side, size.h * side}, DeviceSize());
}

QRect PictureWidget::AreaOf(const QRect& pixels) const {
    const double ratio = devicePixelRatioF();
    const QRectF own(pixels.x() / ratio, pixels.y() / ratio, pixels.width() / ratio,
                     pixels.height() / ratio);
    // At a broken factor a device pixel lies in more than one of the widget's.
    const int margin = ratio == std::floor(ratio) ? 0 : 2;
    return own.toAlignedRect().adjusted(-margin, -margin, margin, margin);
}

void PictureWidget::PaintPicture(QPainter& own) const {
    // At a broken factor the widget may begin inside a device pixel; the picture begins with
    // the next whole one.
    const QTransform place = own.deviceTransform();
    const QPoint first(CeilOf(place.dx()), CeilOf(place.dy()));
    if (QImage* const screen = PixelsOf(own)) {
        for (const QRect& part : own.paintEngine()->systemClip() & screen->rect())
            shown.Paint(part, first, *screen);
        return;
    }
    // With a row and a column before its corner, for the part of a pixel there.
    const double ratio = devicePixelRatioF();
    QImage image(DeviceSize() + QSize(1, 1), QImage::Format_RGB32);
    shown.Paint(image.rect(), {1, 1}, image);
    image.setDevicePixelRatio(ratio);
    own.drawImage(QPointF(first.x() - 1 - place.dx(), first.y() - 1 - place.dy()) / ratio, image);
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
    PaintPicture(own);
    const QPaintDevice* screen = backingStore() ? backingStore()->paintDevice() : nullptr;
    const bool whole = event->region() == QRegion(rect()) && redirected(nullptr) == screen;
    if (!whole && !changed.isEmpty()) {
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
