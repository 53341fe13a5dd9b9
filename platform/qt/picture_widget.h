// A widget that shows one 8-bit picture: the window behind every pane and picture control.
//
// A window pixel is a square of whole device pixels: as many a side as the screen's scale
// factor has whole ones. Pictures are thus sharp at every factor.
#pragma once

#include "platform/window.h"

#include <QImage>
#include <QPainter>
#include <QWidget>
#include <array>
#include <cstdint>

/// The colours in which pictures are shown, as 0xRRGGBB.
extern std::array<std::uint32_t, 256> vScreenColors;

class PictureWidget : public QWidget, public platform::Window {
public:
    /// `listener` may be null: an empty area. It outlives the widget.
    PictureWidget(QWidget* parent, platform::WindowEvents* listener);
    /// A form's picture: Tab and a click give it the keyboard if the listener takes keys.
    void BePartOfForm();

    // platform::Window
    platform::Size ClientSize() const override;
    void Invalidate() override { update(); }
    void SetCapture() override { captured = true; }
    void ReleaseCapture() override { captured = false; }
    platform::Point ClientToScreen(platform::Point at) const override;
    void SetFocus() override { setFocus(Qt::OtherFocusReason); }
    void ShowPicture(const platform::Rows8& picture, platform::Size shown) override;
    int TrackPopupMenu(const platform::Menu& menu, platform::Point screen) override;
    void SetName(const std::string& name) override;
    void SetDescription(const std::string& description) override;

protected:
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

    platform::WindowEvents* events;
    QPainter* painter = nullptr;  ///< during OnDraw
    QImage frame;                 ///< what is shown, in device pixels
    bool captured = false;
    bool inForm = false;
    bool shiftDown = false;
    int wheel = 0;  ///< turns that are not yet a whole notch
};
