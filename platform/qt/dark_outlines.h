// The desktop's own style, with lighter outlines on a dark desktop: Qt's Fusion draws those of
// text fields, check boxes and radio buttons darker than the window, where nobody sees them.
#pragma once

#include <QProxyStyle>

class DarkOutlines final : public QProxyStyle {
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};
