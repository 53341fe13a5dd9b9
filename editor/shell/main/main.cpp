// quilt-edit: picks the window system and runs the application.

#include "editor/shell/quilt_app.h"
#include "engine/program_folder.h"
#include "platform/qt/qt_platform.h"
#include "platform/qt/termination.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace {

constexpr int kBadCall = 2;

struct CommandLine {
    std::string game;     ///< empty for a new one
    std::string picture;  ///< where to write the main window's picture instead of running
    bool good = true;
};

CommandLine Parse(int argc, char** argv) {
    CommandLine line;
    bool options = true;
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        if (options && word == "--") {
            options = false;
        } else if (options && word == "--picture" && i + 1 < argc) {
            line.picture = std::filesystem::absolute(argv[++i]).string();
        } else if (!line.game.empty() || (options && word.starts_with("-"))) {
            line.good = false;
        } else {
            line.game = word;
        }
    }
    return line;
}

constexpr const char* kUsage =
    "usage: quilt-edit [GAME.zqlt]\n"
    "       quilt-edit --picture FILE.png [GAME.zqlt]\n"
    "       quilt-edit --help | --version\n"
    "\n"
    "Opens a game, or a new one. With --picture the main window opens off screen, is written\n"
    "to FILE.png and closes.\n";

}  // namespace

int main(int argc, char** argv) {
    const std::string_view first = argc > 1 ? argv[1] : "";
    // These need no window system.
    if (argc == 2 && first == "--help") return std::fputs(kUsage, stdout) < 0;
    if (argc == 2 && first == "--version") return std::puts("quilt-edit " QUILT_VERSION) < 0;
    if (first == "--picture") setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QtPlatform qt(argc, argv);
    const CommandLine line = Parse(argc, argv);
    if (!line.good) {
        std::fputs(kUsage, stderr);
        return kBadCall;
    }
    if (!line.picture.empty()) qt.BeQuiet();
    CQuiltApp app(line.picture.empty() ? KeptFolder() : "");
    if (!app.InitInstance(ProgramFolder(), line.game)) return EXIT_FAILURE;
    if (line.picture.empty()) {
        OnTermination([&app] { app.KeepWorld(); }, [&app] { app.Leave(); });
        return qt.Run();
    }
    if (qt.SavePicture(line.picture)) return EXIT_SUCCESS;
    std::fprintf(stderr, "quilt-edit: %s cannot be written\n", line.picture.c_str());
    return EXIT_FAILURE;
}
