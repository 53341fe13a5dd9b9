#include "platform/qt/qt_settings.h"

#include "platform/qt/qt_text.h"

#include <QSettings>

namespace {

QSettings OpenSettings() {
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Tessel Works"),
                     QStringLiteral("QUILT!"));
}

QString PathOf(const std::string& section, const std::string& key) {
    return FromUtf8(section) + QLatin1Char('/') + FromUtf8(key);
}

}  // namespace

std::optional<std::string> ReadSetting(const std::string& section, const std::string& key) {
    const QSettings settings = OpenSettings();
    const QString path = PathOf(section, key);
    if (!settings.contains(path)) return std::nullopt;
    return ToUtf8(settings.value(path).toString());
}

void WriteSetting(const std::string& section, const std::string& key, const std::string& value) {
    QSettings settings = OpenSettings();
    settings.setValue(PathOf(section, key), FromUtf8(value));
}
