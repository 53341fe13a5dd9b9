#include "platform/qt/qt_platform.h"

#include "platform/qt/desktop_style.h"
#include "platform/qt/picture_widget.h"
#include "platform/qt/qt_form.h"
#include "platform/qt/qt_frame.h"
#include "platform/qt/qt_settings.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/usual_cursor.h"

#include <QAccessibleWidget>
#include <QDesktopServices>
#include <QFontDatabase>
#include <QGridLayout>
#include <QIcon>
#include <QMessageBox>
#include <QProcess>
#include <QScreen>
#include <QUrl>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>

using platform::Buttons;
using platform::Icon;

namespace {

constexpr QSize kPictureSize(1024, 768);

QMessageBox::Icon BoxIcon(Icon icon) {
    switch (icon) {
        case Icon::Question:
            return QMessageBox::Question;
        case Icon::Warning:
            return QMessageBox::Warning;
        case Icon::Stop:
            return QMessageBox::Critical;
        default:
            return QMessageBox::NoIcon;
    }
}

// A box is as wide as its text needs; this makes it as wide as its title needs, with the frame's
// buttons beside it, as far as the screen allows.
void FitTitle(QMessageBox& box) {
    constexpr int kFrameButtons = 140;
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    if (!grid) return;
    const int wanted = box.fontMetrics().horizontalAdvance(box.windowTitle()) + kFrameButtons;
    const int most = box.screen()->availableSize().width() * 3 / 4;
    grid->addItem(new QSpacerItem(std::min(wanted, most), 0), grid->rowCount(), 0, 1,
                  grid->columnCount());
}

// Screen readers take what has no role of its own for mere space between other things.
QAccessibleInterface* TellOfPicture(const QString&, QObject* object) {
    auto* picture = dynamic_cast<PictureWidget*>(object);
    return picture ? new QAccessibleWidget(picture, QAccessible::Canvas) : nullptr;
}

// The icon that was installed with the program, without which the desktop shows its own. Two sizes
// do for a window, and their files are read by name: to search the icon theme, all that is
// installed in it, would take a fifth of the start.
QIcon InstalledIcon() {
    QIcon icon;
    for (const char* size : {"32x32", "64x64"})
        icon.addFile(QApplication::applicationDirPath() + "/../../share/icons/hicolor/" + size +
                     "/apps/quilt-edit.png");
    return icon;
}

}  // namespace

QtPlatform::QtPlatform(int& argc, char** argv) : app(argc, argv) {
    QApplication::setApplicationName(QStringLiteral("quilt-edit"));
    QApplication::setDesktopFileName(QStringLiteral("quilt-edit"));
    QApplication::setWindowIcon(InstalledIcon());
    // The numbers in texts and files are written with a point everywhere.
    QLocale::setDefault(QLocale::c());
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setStyle(new DesktopStyle);
    QAccessible::installFactory(TellOfPicture);
    vPlatform = this;
}

QtPlatform::~QtPlatform() { vPlatform = nullptr; }

void QtPlatform::BeQuiet() { quiet = true; }

bool QtPlatform::SavePicture(const std::string& path) {
    if (!frame) return false;
    frame->resize(kPictureSize);
    QApplication::processEvents();
    return frame->grab().save(FromUtf8(path), "PNG");
}

bool QtPlatform::MessageBox(const std::string& text, const std::string& caption, Buttons buttons,
                            Icon icon) {
    if (quiet) {
        std::fprintf(stderr, "quilt-edit: %s\n", text.c_str());
        return true;
    }
    const UsualCursor usual;
    QMessageBox box(BoxIcon(icon), FromUtf8(caption), FromUtf8(text), QMessageBox::Ok,
                    QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    if (buttons == Buttons::OkCancel) box.addButton(QMessageBox::Cancel);
    box.setDefaultButton(QMessageBox::Ok);
    FitTitle(box);
    return box.exec() == QMessageBox::Ok;
}

int QtPlatform::RunDialog(const platform::Form& form, platform::FormEvents& events) {
    const UsualCursor usual;
    return RunFormDialog(form, events);
}

std::string QtPlatform::GetProfileString(const std::string& section, const std::string& key,
                                         const std::string& absent) {
    return ReadSetting(section, key).value_or(absent);
}

void QtPlatform::WriteProfileString(const std::string& section, const std::string& key,
                                    const std::string& value) {
    if (!quiet) WriteSetting(section, key, value);
}

void QtPlatform::SetPalette(const std::array<std::uint32_t, 256>& colors) {
    constexpr std::uint32_t kOpaque = 0xff000000;
    for (std::size_t i = 0; i < colors.size(); ++i) vScreenColors[i] = colors[i] | kOpaque;
    for (QWidget* widget : QApplication::allWidgets()) widget->update();
}

std::unique_ptr<platform::Frame> QtPlatform::CreateFrame(platform::FrameEvents& events) {
    auto made = std::make_unique<QtFrame>(events);
    frame = made.get();
    return made;
}

std::vector<std::string> QtPlatform::FixedPitchFaces() {
    std::vector<std::string> faces;
    for (const QString& family : QFontDatabase::families())
        if (QFontDatabase::isFixedPitch(family)) faces.push_back(ToUtf8(family));
    return faces;
}

bool QtPlatform::StartProgram(const std::string& program, const std::string& argument,
                              const std::string& folder) {
    return QProcess::startDetached(FromUtf8(program), {FromUtf8(argument)}, FromUtf8(folder));
}

bool QtPlatform::ShowDocument(const std::string& path) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(FromUtf8(path)));
}

void QtPlatform::ShowWaitCursor(bool on) {
    if (on)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QGuiApplication::restoreOverrideCursor();
}

void QtPlatform::PostCommand(int command) {
    if (frame) frame->Post(command);
}

int QtPlatform::Run() { return QApplication::exec(); }
