#include "platform/qt/picture_widget.h"

#include "platform/keys.h"
#include "platform/qt/qt_keys.h"
#include "platform/qt/qt_menu.h"
#include "platform/qt/qt_text.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

using platform::Point;
using platform::Size;

std::array<std::uint32_t, 256> vScreenColors{};

namespace {

constexpr int kNotch = 120;

int CeilOf(double value) { return static_cast<int>(std::ceil(value - 1e-6)); }

// One row of a picture as screen colours, stretched by repeating or leaving out pixels.
class RowScaler {
public:
    RowScaler(int from, int to, int visible) : direct(from == to), columns(0) {
        if (direct) return;
        columns.resize(static_cast<std::size_t>(visible));
        for (int x = 0; x < visible; ++x)
            columns[static_cast<std::size_t>(x)] =
                static_cast<int>(static_cast<std::int64_t>(x) * from / to);
    }

    void Run(const unsigned char* row, std::uint32_t* out, int visible) const {
        if (direct) {
            for (int x = 0; x < visible; ++x) out[x] = vScreenColors[row[x]];
            return;
        }
        const int* column = columns.data();
        for (int x = 0; x < visible; ++x) out[x] = vScreenColors[row[column[x]]];
    }

private:
    bool direct;
    std::vector<int> columns;
};

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

void PictureWidget::ShowPicture(const platform::Rows8& picture, Size shown) {
    if (!painter || picture.w < 1 || picture.h < 1) return;
    const QSize device = DeviceSize();
    if (frame.size() != device) {
        frame = QImage(device, QImage::Format_RGB32);
        frame.fill(Qt::black);
    }
    const int w = shown.w * PixelSide();
    const int h = shown.h * PixelSide();
    const int visibleW = std::min(w, device.width());
    const int visibleH = std::min(h, device.height());
    const RowScaler scaler(picture.w, w, visibleW);
    const auto stride = static_cast<std::size_t>(frame.bytesPerLine());
    unsigned char* out = frame.bits();
    int last = -1;
    for (int y = 0; y < visibleH; ++y, out += stride) {
        const int row = static_cast<int>(static_cast<std::int64_t>(y) * picture.h / h);
        if (row == last)
            std::memcpy(out, out - stride, stride);
        else
            scaler.Run(picture.rows[row], reinterpret_cast<std::uint32_t*>(out), visibleW);
        last = row;
    }
    const double ratio = devicePixelRatioF();
    // At a broken factor the widget may begin inside a device pixel; the picture begins with
    // the next whole one.
    const QTransform place = painter->deviceTransform();
    const double left = (std::ceil(place.dx() - 1e-6) - place.dx()) / ratio;
    const double top = (std::ceil(place.dy() - 1e-6) - place.dy()) / ratio;
    // What lies before it is a part of a pixel, which goes on with the picture's edge.
    if (left > 0)
        painter->drawImage(QRectF(0, 0, left, height()), frame, QRectF(0, 0, 1, device.height()));
    if (top > 0)
        painter->drawImage(QRectF(0, 0, width(), top), frame, QRectF(0, 0, device.width(), 1));
    frame.setDevicePixelRatio(ratio);
    painter->drawImage(QPointF(left, top), frame);
    frame.setDevicePixelRatio(1);
}

void PictureWidget::paintEvent(QPaintEvent*) {
    if (painter) return;
    QPainter own(this);
    if (!events) {
        own.fillRect(rect(), palette().color(QPalette::Window));
        return;
    }
    painter = &own;
    events->OnDraw(*this);
    painter = nullptr;
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
    if (code) events->OnKeyDown(code);
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
