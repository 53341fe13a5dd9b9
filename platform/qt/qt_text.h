// Texts and points between the platform layer and Qt.
#pragma once

#include <QPoint>
#include <QString>
#include <string>

inline QString FromUtf8(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string ToUtf8(const QString& text) { return text.toStdString(); }
