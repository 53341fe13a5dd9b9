// The desktop's own style, with lighter outlines on a dark desktop: Qt's Fusion draws those of
// text fields, check boxes and radio buttons darker than the window, where nobody sees them. And
// a menu that is higher than the screen scrolls; columns beside each other would leave the screen.
#pragma once

#include <QProxyStyle>

class DesktopStyle final : public QProxyStyle {
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
};
