#include "tests/robot/robot.h"

#include "platform/qt/code_widget.h"
#include "platform/qt/qt_text.h"
#include "tests/robot/alarm.h"
#include "tests/robot/hands.h"
#include "tests/robot/steps.h"
#include "tests/robot/watch.h"

#include <unistd.h>
#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <cinttypes>
#include <cstdlib>

namespace {

constexpr unsigned kLongestStep = 20;  // seconds
constexpr long kCheckEvery = 1000;
constexpr long kWatchEvery = 20;
constexpr long kSurfacesEvery = 200;
constexpr int kMostWaiting = 2000;
// Turns of the event loop between two steps, in which what the step has posted is carried out.
constexpr int kSettle = 2;
// A larger world is left for a new one: a paste can double it.
constexpr WorldSize kMostWorld{600, 1'500'000};

bool IsTooLarge(const WorldSize& size) {
    return size.nodes > kMostWorld.nodes || size.cells > kMostWorld.cells;
}

// The text control measures its lines while it paints and shows a scroll bar accordingly: every
// text is painted before the next step, however busy the machine is.
void PaintText(const Scene& scene) {
    if (!scene.dialog) return;
    for (auto* code : scene.dialog->findChildren<QsciScintillaBase*>()) {
        // The first time may end where the text gets its colours.
        code->viewport()->repaint();
        code->viewport()->repaint();
    }
}

}  // namespace

Robot::Robot(const RobotOptions& asked, Files& own, Chance& source, std::FILE* lines,
             std::string name)
    : chance(source), files(own), options(asked), log(lines), logName(std::move(name)) {}

void Robot::Start() {
    began = std::chrono::steady_clock::now();
    QTimer::singleShot(0, &context, [this] { Turn(); });
}

std::string Robot::FirstGame(const std::string& given) {
    phase = Phase::Steps;
    const Files::Answer answer = given.empty() ? files.FirstGame(chance) : Files::Answer{given};
    if (answer.mayFail) Excuse();
    Say("start the program " + answer.name);
    return answer.name;
}

void Robot::Say(const std::string& text) {
    std::string line = files.Shown(text);
    std::replace(line.begin(), line.end(), '\n', '|');
    std::fprintf(log, "%ld %s\n", step, line.c_str());
    std::fflush(log);
}

void Robot::Finding(const std::string& text) {
    Say("finding: " + text);
    std::fprintf(stderr, "finding: %s\nseed %" PRIu64 ", step %ld, log %s\n", text.c_str(),
                 options.seed, step, logName.c_str());
    // What is open cannot be closed any more in an orderly way.
    _exit(EXIT_FAILURE);
}

// --- turns -------------------------------------------------------------------------------------

void Robot::Turn() {
    // First of all: what follows may not return before more turns have been taken.
    QTimer::singleShot(0, &context, [this] { Turn(); });
    if (done || settling-- > 0) return;
    settling = kSettle;
    const Scene scene = LookAround();
    if (scene.place == Place::Nothing) return;
    SetAlarm(step, kLongestStep);
    PaintText(scene);
    CheckBox(scene);
    if (phase != Phase::Steps) {
        if (++waiting > kMostWaiting) Finding("what is open does not close");
        return GoOn(scene);
    }
    if (IsIdle(scene)) CheckWorld();
    TakeStep(scene);
}

// No handler is running, so nothing holds a handle.
bool Robot::IsIdle(const Scene& scene) const {
    return scene.place == Place::Window && QThread::currentThread()->loopLevel() == 1;
}

bool Robot::IsTimeUp() const {
    const auto used = std::chrono::steady_clock::now() - began;
    return (options.steps > 0 && step >= options.steps) ||
           (options.seconds > 0 && used >= std::chrono::seconds(options.seconds));
}

void Robot::TakeStep(const Scene& scene) {
    if (step - checked >= kCheckEvery || IsTimeUp()) {
        phase = Phase::Closing;
        waiting = 0;
        return GoOn(scene);
    }
    ++step;
    // However often the program has painted itself, its own chance is the same in each step.
    std::srand(static_cast<unsigned>(options.seed) + static_cast<unsigned>(step));
    if (IsIdle(scene) && IsTooLarge(MeasureWorld())) {
        Say("leave a world that has grown too large");
        phase = Phase::Leaving;
        waiting = 0;
        return GoOn(scene);
    }
    RandomStep(*this, scene);
}

void Robot::CheckWorld() {
    if (step % kWatchEvery != 0) return;
    std::string fault = WorldFault();
    if (fault.empty() && step % kSurfacesEvery == 0) fault = SurfaceFault();
    if (!fault.empty()) Finding(fault);
    if (step % kSurfacesEvery == 0) Say("digest " + std::to_string(WorldDigest()));
}

// The engine reports in boxes of which the caption names the place.
void Robot::CheckBox(const Scene& scene) {
    if (!scene.box || seen == scene.box) return;
    seen = scene.box;
    const std::string caption = ToUtf8(scene.box->windowTitle());
    const std::string text = ToUtf8(scene.box->text());
    Say("box " + caption + ": " + text);
    const bool isReport = caption.starts_with("Error in ") || caption == "Oh No!!";
    if (isReport && step > excusedUntil && !Files::NamesBadFile(text))
        Finding(caption + ": " + text);
}

// --- the check of every thousand steps ---------------------------------------------------------

void Robot::GoOn(const Scene& scene) {
    switch (phase) {
        case Phase::Closing:
            return IsIdle(scene) ? StartSaving(scene) : CloseTop(scene);
        case Phase::Saving:
            return IsIdle(scene) ? StartOpening(scene) : AnswerTop(scene, CheckFile());
        case Phase::Opening:
            return IsIdle(scene) ? EndCheck() : AnswerTop(scene, CheckFile());
        case Phase::Leaving:
            return IsIdle(scene) ? void(scene.window->close()) : AnswerTop(scene, "");
        default:
            return;
    }
}

void Robot::CloseTop(const Scene& scene) {
    // A question whether to leave a dialog is answered with OK, one whether to leave the
    // program not.
    const bool leave = scene.box && scene.box->windowTitle() == QLatin1String("Confirm Cancel");
    if (scene.place == Place::Window) return;
    PressKey(*scene.Top(), leave ? Qt::Key_Return : Qt::Key_Escape);
}

void Robot::AnswerTop(const Scene& scene, const std::string& path) {
    if (scene.files) {
        auto* name = scene.files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        name->setText(FromUtf8(path));
        PressKey(*name, Qt::Key_Return);
    } else if (scene.box && scene.box->button(QMessageBox::Yes)) {
        scene.box->button(QMessageBox::Yes)->click();
    } else if (scene.place != Place::Window) {
        PressKey(*scene.Top(), Qt::Key_Return);
    }
}

void Robot::Choose(const Scene& scene, const char* entry) {
    for (const QAction* top : scene.window->menuBar()->actions())
        for (QAction* action : top->menu()->actions())
            if (action->text() == QLatin1String(entry)) return action->trigger();
    Finding(std::string("there is no entry ") + entry);
}

void Robot::StartSaving(const Scene& scene) {
    held = nullptr;
    const std::string fault = WorldFault() + SurfaceFault();
    if (!fault.empty()) Finding(fault);
    Say("save the world, open it and compare");
    wanted = AsFileKeeps(CopyWorld(*vWorld));
    std::remove(CheckFile().c_str());
    phase = Phase::Saving;
    Choose(scene, "Save &As...");
}

void Robot::StartOpening(const Scene& scene) {
    Game game;
    GameFault fault;
    if (!ReadGame(
            CheckFile(), [] { return 0; }, game, fault))
        Finding("the saved game cannot be read: " + fault.text);
    const std::string difference = Difference(wanted, CopyWorld(game));
    if (!difference.empty()) Finding("the saved game differs: " + difference);
    phase = Phase::Opening;
    // Nothing of the world that is opened may be there already.
    Choose(scene, "&New");
    vWorld->videoMode = (wanted.videoMode + 1) % kVideoModes;
    vWorld->windowed = wanted.windowed == 0;
    Choose(scene, "&Open...");
}

void Robot::EndCheck() {
    ShowFirstBoard(wanted);
    const std::string difference = Difference(wanted, CopyWorld(*vWorld));
    if (!difference.empty()) Finding("the opened game differs: " + difference);
    const std::string fault = WorldFault() + SurfaceFault();
    if (!fault.empty()) Finding(fault);
    phase = Phase::Steps;
    checked = step;
    done = IsTimeUp();
    if (done) QApplication::exit();
}
