// The dialogs in which a file is chosen.

#include "platform/qt/qt_platform.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/usual_cursor.h"

#include <QFileDialog>
#include <QUrl>

namespace {

// "text|pattern|text|pattern||" as the list that Qt shows, which wants a pattern in brackets.
QStringList NameFilters(const std::string& filter) {
    const QStringList parts = FromUtf8(filter).split(QLatin1Char('|'), Qt::SkipEmptyParts);
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString pattern = QStringLiteral("(%1)").arg(parts[i + 1]);
        filters << (parts[i].endsWith(pattern) ? parts[i] : parts[i] + QLatin1Char(' ') + pattern);
    }
    return filters;
}

std::optional<std::string> RunFileDialog(const platform::FileDialog& asked, bool save) {
    const UsualCursor usual;
    QFileDialog dialog(QApplication::activeWindow(), FromUtf8(asked.title));
    QList<QUrl> places = dialog.sidebarUrls();
    for (const std::string& place : asked.places)
        if (!place.empty()) places.append(QUrl::fromLocalFile(FromUtf8(place)));
    dialog.setSidebarUrls(places);
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setNameFilters(NameFilters(asked.filter));
    QString suffix = FromUtf8(asked.extension);
    if (suffix.startsWith(QLatin1Char('.'))) suffix.remove(0, 1);
    dialog.setDefaultSuffix(suffix);
    const QString path = FromUtf8(asked.path);
    if (!path.isEmpty()) {
        dialog.setDirectory(path.section(QLatin1Char('/'), 0, -2) + QLatin1Char('/'));
        const QString name = path.section(QLatin1Char('/'), -1);
        if (!name.isEmpty()) dialog.selectFile(name);
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return ToUtf8(dialog.selectedFiles().constFirst());
}

}  // namespace

std::optional<std::string> QtPlatform::OpenFileDialog(const platform::FileDialog& dialog) {
    return RunFileDialog(dialog, false);
}

std::optional<std::string> QtPlatform::SaveFileDialog(const platform::FileDialog& dialog) {
    return RunFileDialog(dialog, true);
}
