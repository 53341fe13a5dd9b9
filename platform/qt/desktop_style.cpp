#include "platform/qt/desktop_style.h"

#include <QPainter>
#include <QStyleOption>

namespace {

constexpr int kDark = 128;  // lightness, of 255

// Between the window and the text on it.
QColor Outline(const QPalette& palette) {
    const QColor window = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    return QColor((window.red() * 3 + text.red() * 2) / 5,
                  (window.green() * 3 + text.green() * 2) / 5,
                  (window.blue() * 3 + text.blue() * 2) / 5);
}

bool IsOutlined(QStyle::PrimitiveElement element) {
    return element == QStyle::PE_PanelLineEdit || element == QStyle::PE_IndicatorCheckBox ||
           element == QStyle::PE_IndicatorRadioButton;
}

}  // namespace

void DesktopStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool dark = option->palette.color(QPalette::Window).lightness() < kDark;
    if (!dark || !IsOutlined(element) || baseStyle()->name() != QLatin1String("fusion")) return;
    // The field with the keyboard has an outline of its own.
    if (element == PE_PanelLineEdit && (option->state & State_HasFocus)) return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(Outline(option->palette));
    const QRectF inside = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    if (element == PE_IndicatorRadioButton)
        painter->drawEllipse(inside);
    else
        painter->drawRoundedRect(inside, 2, 2);
    painter->restore();
}

int DesktopStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* data) const {
    if (hint == SH_Menu_Scrollable) return 1;
    return QProxyStyle::styleHint(hint, option, widget, data);
}
