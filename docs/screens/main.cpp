// quilt-screens: takes the pictures of the manual. It runs the real program off screen with the
// sample game open, and saves what stands there. To be started in the program's folder. With
// --changed it compares two folders of pictures.

#include "docs/screens/album.h"

#include "platform/qt/qt_platform.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace {

constexpr const char* kSample = "Library/samples/lamplight.zqlt";
constexpr QSize kWindowSize(870, 700);

struct Options {
    std::string folder;
    QSize size = kWindowSize;
    bool dark = false;
};

bool Parse(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        int w = 0, h = 0;
        if (word == "--dark") {
            options.dark = true;
        } else if (word == "--size" && i + 1 < argc) {
            if (std::sscanf(argv[++i], "%dx%d", &w, &h) != 2) return false;
            options.size = {w, h};
        } else if (options.folder.empty() && !word.starts_with("-")) {
            options.folder = std::filesystem::absolute(word).string() + "/";
        } else {
            return false;
        }
    }
    return !options.folder.empty();
}

// What a dark desktop hands to its programs.
void UseDarkColors() {
    QPalette dark(QColor(49, 54, 59), QColor(35, 38, 41));
    dark.setColor(QPalette::Base, QColor(27, 30, 32));
    dark.setColor(QPalette::Highlight, QColor(61, 174, 233));
    dark.setColor(QPalette::Disabled, QPalette::Text, QColor(120, 124, 128));
    dark.setColor(QPalette::Disabled, QPalette::WindowText, QColor(120, 124, 128));
    dark.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(120, 124, 128));
    QApplication::setPalette(dark);
}

// Prints the names of the pictures in a folder whose pixels are others in the second one. Only the
// Qt that they were made with draws the same.
void PrintChanged(const QString& kept, const QString& made) {
    if (QLatin1String(qVersion()) != QLatin1String("6.4.2")) return;
    for (const QString& name : QDir(kept).entryList({QStringLiteral("*.png")})) {
        const auto pixels = [&](const QString& folder) {
            return QImage(folder + QLatin1Char('/') + name).convertToFormat(QImage::Format_RGB32);
        };
        if (pixels(kept) != pixels(made)) std::printf("%s\n", qUtf8Printable(name));
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::string_view(argv[1]) == "--changed")
        return PrintChanged(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3])), 0;
    Options options;
    if (!Parse(argc, argv, options)) {
        std::fprintf(stderr,
                     "usage: %s FOLDER [--dark] [--size WIDTHxHEIGHT] | --changed FOLDER FOLDER\n",
                     argv[0]);
        return 2;
    }
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    // No settings of the user's: the pictures look alike everywhere.
    setenv("XDG_CONFIG_HOME", "/nonexistent", 1);
    QtPlatform qt(argc, argv);
    if (options.dark) UseDarkColors();
    CQuiltApp app;
    if (!app.InitInstance(std::filesystem::current_path().string(), kSample)) return 1;
    auto& window = static_cast<QtFrame&>(app.Frame().Window());
    window.resize(options.size);
    Settle();
    Camera camera(options.folder);
    Studio studio{app, window, camera};
    TakeWindows(studio);
    TakeDialogs(studio);
    TakeScripts(studio);
    return camera.AllSaved() ? 0 : 1;
}
