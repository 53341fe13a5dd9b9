#include "platform/qt/dialog_units.h"

#include <QFontMetrics>

#include <algorithm>

QFont FormFont(const char* family, int points) {
    QFont font(QString::fromLatin1(family), points);
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    return font;
}

QSize BaseUnits(const QFont& font) {
    const QFontMetrics metrics(font);
    const QString letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    const int mean = (metrics.horizontalAdvance(letters) / 26 + 1) / 2;
    // Courier New at 8 points is 7 by 14 pixels, at 10 points 8 by 16.
    const bool small = font.pointSize() < 10;
    return {std::max(mean, small ? 7 : 8), std::max(metrics.height(), small ? 14 : 16)};
}
