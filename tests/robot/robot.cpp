// quilt-robot: uses the editor at random until something breaks or the time is up.
//
// A random step on whatever the toolkit shows, and every thousand steps a look whether the world
// survives being saved and opened. What is chosen depends on the seed and on what the program
// shows, never on the clock: the same seed takes the same steps. Steps are taken from the event
// loop, so that they go on inside the loops of dialogs and menus.

#include "editor/shell/quilt_app.h"
#include "engine/bitmap.h"
#include "engine/program_folder.h"
#include "engine/report.h"
#include "platform/qt/qt_platform.h"
#include "tests/robot/run.h"
#include "tests/support/hands/hands.h"
#include "tests/support/random_world.h"

#include <unistd.h>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QCommandLineParser>
#include <QHashSeed>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QRegularExpression>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <cstdlib>

namespace {

constexpr unsigned kLongestStep = 20;  // seconds; the signal of the alarm ends the process
constexpr long kCheckEvery = 1000;
constexpr long kWatchEvery = 20;
constexpr long kSurfacesEvery = 200;
constexpr int kMostWaiting = 2000;
// Turns of the event loop between two steps, in which what the step has posted is carried out.
constexpr int kSettle = 2;

class Robot {
public:
    Robot(Run& own, long stepCount, long secondCount)
        : run(own), steps(stepCount), seconds(secondCount) {}

    /// Steps are taken from the next turn of the event loop on.
    void Start() {
        QTimer::singleShot(0, &context, [this] { Turn(); });
    }
    bool IsDone() const { return done; }
    /// A life of the program begins with this game, or with any when it is empty. Gives the
    /// game's path, empty for a new one.
    std::string FirstGame(std::string given) {
        constexpr const char* kGames[] = {"good.zqlt", "bad-half.zqlt", "missing.zqlt", "", ""};
        phase = Phase::Steps;
        if (given.empty()) {
            const std::string game = run.chance.Pick(kGames);
            if (!game.empty() && game != kGames[0]) run.Excuse();
            given = game.empty() ? game : run.folder / game;
        }
        run.Say("start the program", given.c_str());
        return given;
    }
    /// Ends the process with a failure.
    [[noreturn]] void Finding(const QString& text) {
        run.Say("finding:", text);
        std::fprintf(stderr, "finding: %s at step %ld\n", text.toUtf8().constData(), run.step);
        // What is open cannot be closed any more in an orderly way.
        _exit(EXIT_FAILURE);
    }

private:
    /// What the robot is about between two thousands, and around them.
    enum class Phase { Steps, Closing, Saving, Opening };

    void Turn() {
        // First of all: what follows may not return before more turns have been taken.
        Start();
        if (done || settling-- > 0) return;
        settling = kSettle;
        QWidget* dialog = QApplication::activeModalWidget();
        QWidget* popup = QApplication::activePopupWidget();
        window = nullptr;
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (qobject_cast<QMainWindow*>(widget) && widget->isVisible()) window = widget;
        top = popup ? popup : dialog ? dialog : window;
        if (!top) return;
        alarm(kLongestStep);
        // A text control measures its lines while it paints and shows a scroll bar accordingly; the
        // first time may end where the text gets its colours.
        for (const auto* area : top->findChildren<QAbstractScrollArea*>())
            for (int times = 0; times < 2; ++times) area->viewport()->repaint();
        CheckBox();
        // No handler is running, so nothing holds a handle.
        const bool idle = top == window && QThread::currentThread()->loopLevel() == 1;
        if (phase == Phase::Steps) {
            if (idle && run.step % kWatchEvery == 0) CheckWorld(run.step % kSurfacesEvery == 0);
            if (run.step - checked >= kCheckEvery || IsTimeUp()) {
                phase = Phase::Closing;
                waiting = 0;
            } else {
                ++run.step;
                // However often the program has painted itself, its own run.chance is the same in
                // each run.step.
                std::srand(static_cast<unsigned>(run.seed) + static_cast<unsigned>(run.step));
                if (!idle || !IsTooLarge()) return RandomStep(run, *top);
                run.Say("leave a world that has grown too large");
                return Choose("&New");
            }
        }
        if (++waiting > kMostWaiting) Finding(QStringLiteral("what is open does not close"));
        return idle ? GoOn() : Close();
    }

    bool IsTimeUp() const {
        const auto used = std::chrono::steady_clock::now() - began;
        return (steps > 0 && run.step >= steps) ||
               (seconds > 0 && used >= std::chrono::seconds(seconds));
    }

    void CheckWorld(bool surfaces) {
        const std::string fault = WorldFault(surfaces);
        if (!fault.empty()) Finding(QString::fromStdString(fault));
        if (surfaces)
            run.Say("digest", vWorld->currentObject,
                    qHash(QByteArray::fromStdString(Account(*vWorld))));
    }

    // The engine reports in boxes of which the caption names the place.
    void CheckBox() {
        auto* box = qobject_cast<QMessageBox*>(top);
        if (!box || seen == box) return;
        seen = box;
        const QString caption = box->windowTitle(), text = box->text();
        run.Say("box", caption, text);
        const bool isReport =
            caption.startsWith(QLatin1String("Error in ")) || caption == QLatin1String("Oh No!!");
        const bool namesBadFile =
            text.contains(QRegularExpression(QStringLiteral("/(bad|missing|locked|run.folder)")));
        if (isReport && run.step > run.excusedUntil && !namesBadFile) Finding(text);
    }

    void Choose(const char* entry) {
        for (const QAction* menu : window->findChild<QMenuBar*>()->actions())
            for (QAction* action : menu->menu()->actions())
                if (action->text() == QLatin1String(entry)) return action->trigger();
        Finding(QStringLiteral("there is no entry ") + QLatin1String(entry));
    }

    void GoOn() {
        if (phase == Phase::Closing) {
            run.held = nullptr;
            CheckWorld(true);
            run.Say("save the world, open it and compare");
            // Opening a game shows its first board.
            if (!vWorld->Root().children.empty())
                vWorld->ShowBoard(vWorld->Root().children.front()->id);
            wanted = Account(*vWorld, Kept::InFile);
            std::filesystem::remove(run.folder / "checked.zqlt");
            phase = Phase::Saving;
            return Choose("Save &As...");
        }
        if (phase == Phase::Saving) {
            // Nothing of the world that is opened may be there already.
            const int videoMode = (vWorld->videoMode + 1) % kVideoModes,
                      windowed = !vWorld->windowed;
            Choose("&New");
            vWorld->videoMode = videoMode;
            vWorld->windowed = windowed;
            phase = Phase::Opening;
            return Choose("&Open...");
        }
        const std::string difference = Difference(wanted, Account(*vWorld));
        if (!difference.empty()) Finding(QString::fromStdString(difference));
        CheckWorld(true);
        phase = Phase::Steps;
        checked = run.step;
        done = IsTimeUp();
        if (done) QApplication::exit();
    }

    void Close() {
        if (auto* name = top->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            name && phase != Phase::Closing) {
            name->setText(QString::fromStdString(run.folder / "checked.zqlt"));
            return Press(*name, Qt::Key_Return);
        }
        // A question whether to leave a dialog is answered with OK, one whether to leave the
        // program not.
        const bool leave = top->windowTitle() == QLatin1String("Confirm Cancel");
        Press(*top, leave || phase != Phase::Closing ? Qt::Key_Return : Qt::Key_Escape);
    }

    Run& run;
    long steps, seconds;  ///< 0 for no limit
    QObject context;
    std::chrono::steady_clock::time_point began = std::chrono::steady_clock::now();
    QWidget* window = nullptr;  ///< the main window
    QWidget* top = nullptr;     ///< what has the keyboard and the mouse: menu, dialog or window
    Phase phase = Phase::Steps;
    long checked = 0;  ///< the step of the last check
    int settling = 0;
    int waiting = 0;  ///< turns in the present phase
    bool done = false;
    std::string wanted;  ///< the account of the world that was saved
    QPointer<QMessageBox> seen;
};

Robot* vRobot = nullptr;

// What Qt complains of is a fault of the program, but for what an off-screen window cannot do.
void OnQtMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    const bool isOffscreen = text.startsWith(QLatin1String("This plugin does not support"));
    if (type == QtDebugMsg || type == QtInfoMsg || isOffscreen) return;
    vRobot->Finding(QLatin1String("Qt says: ") + text);
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

}  // namespace

int main(int argc, char** argv) {
    QCommandLineParser line;
    line.addOptions({{QStringLiteral("seed"), {}, QStringLiteral("N"), QStringLiteral("1")},
                     {QStringLiteral("steps"), {}, QStringLiteral("N")},
                     {QStringLiteral("seconds"), {}, QStringLiteral("N")},
                     {QStringLiteral("log"), {}, QStringLiteral("FILE")}});
    bool good = line.parse(QStringList(argv, argv + argc)) && line.positionalArguments().size() < 2;
    const auto number = [&](const char* option, const char* usual) {
        const QString text = line.value(QLatin1String(option));
        bool isNumber = true;
        const long value = (text.isEmpty() ? QString::fromLatin1(usual) : text).toLong(&isNumber);
        good = good && isNumber;
        return value;
    };
    const long seconds = number("seconds", "0");
    Run run{static_cast<std::uint64_t>(number("seed", "1"))};
    const long steps = number("steps", seconds ? "0" : "1000");
    if (!good) {
        std::fputs(
            "usage: quilt-robot [--seed N] [--steps N] [--seconds N] [--log FILE] "
            "[GAME.zqlt]\n",
            stderr);
        return 2;
    }
    // Of the game a copy is used: the robot saves over what it has opened.
    std::string game = line.positionalArguments().join(QString()).toStdString();
    const std::string bytes = FileBytes(game);
    StartAllegro();
    StartTrace(nullptr);

    const TempFolder& folder = run.folder;
    const std::string log = line.isSet(QStringLiteral("log"))
                                ? line.value(QStringLiteral("log")).toStdString()
                                : folder / "robot.log";
    run.log = std::fopen(log.c_str(), "w");
    if (!run.log) return std::perror(log.c_str()), 2;
    MakeFiles(run, ProgramFolder());
    if (!game.empty()) PutFile(game = folder / "first.zqlt", bytes);
    SetEnvironment(folder, run.seed);
    // However the process ends, the last line of the log is the step that did it.
    std::printf("seed %s, log %s\n", std::to_string(run.seed).c_str(), log.c_str());
    std::fflush(stdout);
    Robot robot(run, steps, seconds);
    vRobot = &robot;
    qInstallMessageHandler(OnQtMessage);
    {
        QtPlatform qt(argc, argv);
        QApplication::setCursorFlashTime(0);
        // The text control would tell double clicks by the time between two clicks.
        QApplication::setDoubleClickInterval(0);
        robot.Start();
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
    std::filesystem::current_path("/");
    std::filesystem::permissions(folder / "locked", std::filesystem::perms::owner_all);
    std::printf("%ld steps without a finding\n", run.step);
}
