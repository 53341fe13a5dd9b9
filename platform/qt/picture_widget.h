// A widget that shows one 8-bit picture: the window behind every pane and picture control.
//
// A window pixel is a square of whole device pixels: as many a side as the screen's scale
// factor has whole ones. Pictures are thus sharp at every factor.
#pragma once

#include "platform/qt/shown_picture.h"
#include "platform/window.h"

#include <QPainter>
#include <QWidget>

class PictureWidget : public QWidget, public platform::Window {
public:
    /// `listener` may be null: an empty area. It outlives the widget.
    PictureWidget(QWidget* parent, platform::WindowEvents* listener);
    /// A form's picture: Tab and a click give it the keyboard if the listener takes keys.
    void BePartOfForm();
    /// Space or Enter on a form's picture; true when the listener took it.
    bool PressByKey() { return events && events->OnPress(); }

    // platform::Window
    platform::Size ClientSize() const override;
    void Invalidate() override;
    void SetCapture() override { captured = true; }
    void ReleaseCapture() override { captured = false; }
    platform::Point ClientToScreen(platform::Point at) const override;
    void SetFocus() override { setFocus(Qt::OtherFocusReason); }
    void ShowPicture(const platform::Rows8& picture, platform::Size size) override;
    int TrackPopupMenu(const platform::Menu& menu, platform::Point screen) override;
    void SetName(const std::string& name) override;
    void SetDescription(const std::string& description) override;

protected:
    void customEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    /// Device pixels a side of a window pixel.
    int PixelSide() const;
    QSize DeviceSize() const;
    platform::Point WindowPoint(QPointF at) const;
    void Press(QMouseEvent& event);
    void PaintFocus(QPainter& own) const;

    /// Has the picture made; gives the device pixels that differ now.
    QRect Compose();
    void PaintPicture(QPainter& own) const;
    /// The part of the widget in which these device pixels lie.
    QRect AreaOf(const QRect& pixels) const;

    platform::WindowEvents* events;
    ShownPicture shown;
    QRect changedPixels;   ///< by the present OnDraw
    bool drawing = false;  ///< in OnDraw
    bool asked = false;    ///< for an OnDraw from the event loop
    bool ready = false;    ///< the next paint shows the picture as it is
    bool captured = false;
    bool inForm = false;
    bool shiftDown = false;
    int wheel = 0;  ///< turns that are not yet a whole notch
};
