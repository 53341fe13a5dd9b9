// quilt-robot: uses the editor at random until something breaks or the time is up.

#include "editor/shell/quilt_app.h"
#include "engine/bitmap.h"
#include "engine/program_folder.h"
#include "engine/report.h"
#include "platform/qt/qt_platform.h"
#include "tests/robot/robot.h"

#include <unistd.h>
#include <QApplication>
#include <QHashSeed>

#include <charconv>
#include <cinttypes>
#include <cstdlib>
#include <string_view>

namespace {

constexpr int kBadCall = 2;
constexpr long kUsualSteps = 1000;

struct CommandLine {
    RobotOptions options;
    std::string log;   ///< empty for one in the robot's own folder
    std::string game;  ///< the first to open; empty for a new one
    bool good = true;
};

template <typename Number>
bool Read(std::string_view text, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size();
}

CommandLine Parse(int argc, char** argv) {
    CommandLine line;
    for (int i = 1; i < argc && line.good; ++i) {
        const std::string_view word = argv[i];
        if (!word.starts_with("--")) {
            line.good = line.game.empty();
            line.game = std::filesystem::absolute(word).string();
            continue;
        }
        const std::string_view value = i + 1 < argc ? argv[++i] : "";
        if (word == "--log") line.log = std::filesystem::absolute(value).string();
        line.good = !value.empty() &&
                    (word == "--log" || (word == "--seed" && Read(value, line.options.seed)) ||
                     (word == "--steps" && Read(value, line.options.steps)) ||
                     (word == "--seconds" && Read(value, line.options.seconds)));
    }
    if (line.options.steps == 0 && line.options.seconds == 0) line.options.steps = kUsualSteps;
    return line;
}

// Nothing of the user's is read or written, and nothing differs from run to run. Every other seed
// has a screen of another scale.
void SetEnvironment(const TempFolder& folder, std::uint64_t seed) {
    constexpr const char* kScales[] = {"1.5", "1", "2", "1"};
    setenv("QT_SCALE_FACTOR", kScales[seed % std::size(kScales)], 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
        setenv(name, (folder / "settings").c_str(), 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    unsetenv("QUILT_TRACE");
    QHashSeed::setDeterministicGlobalSeed();
}

Robot* vRobot = nullptr;

// What Qt complains of is a fault of the program, but for what an off-screen window cannot do.
void OnQtMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    const bool isOffscreen = text.startsWith(QLatin1String("This plugin does not support"));
    if (type == QtDebugMsg || type == QtInfoMsg || isOffscreen) return;
    vRobot->Finding(QLatin1String("Qt says: ") + text);
}

}  // namespace

int main(int argc, char** argv) {
    CommandLine line = Parse(argc, argv);
    if (!line.good) {
        std::fputs(
            "usage: quilt-robot [--seed N] [--steps N] [--seconds N] [--log FILE] [GAME.zqlt]\n\n"
            "Uses the editor at random, off screen. The same seed takes the same steps.\n",
            stderr);
        return kBadCall;
    }
    StartAllegro();
    StartTrace(nullptr);

    Chance chance(line.options.seed);
    const TempFolder folder;
    MakeFiles(folder, ProgramFolder(), chance);
    SetEnvironment(folder, line.options.seed);
    if (line.log.empty()) line.log = folder / "robot.log";
    std::FILE* lines = std::fopen(line.log.c_str(), "w");
    if (!lines) return std::fprintf(stderr, "%s cannot be written\n", line.log.c_str()), kBadCall;
    // However the process ends, the last line of the log is the step that did it.
    std::printf("seed %" PRIu64 ", log %s\n", line.options.seed, line.log.c_str());
    std::fflush(stdout);
    Robot robot(line.options, folder, chance, lines);
    vRobot = &robot;
    qInstallMessageHandler(OnQtMessage);
    {
        QtPlatform qt(argc, argv);
        QApplication::setCursorFlashTime(0);
        // The text control would tell double clicks by the time between two clicks.
        QApplication::setDoubleClickInterval(0);
        robot.Start();
        // Of the game a copy is used: the robot saves over what it has opened.
        std::string game =
            line.game.empty() ? "" : PutFile(folder / "first.zqlt", FileBytes(line.game));
        // One life of the program after the other: File, Exit ends one.
        while (!robot.IsDone()) {
            CQuiltApp app;
            const std::string first = robot.FirstGame(game);
            // File dialogs begin here.
            std::filesystem::current_path(folder / "folder");
            if (app.InitInstance(folder / "program", first)) qt.Run();
            game.clear();
        }
        alarm(0);
    }
    std::fclose(lines);
    std::filesystem::current_path("/");
    std::filesystem::permissions(folder / "locked", std::filesystem::perms::owner_all);
    std::printf("%ld steps without a finding\n", robot.Steps());
    return EXIT_SUCCESS;
}
