#include "tests/robot/robot.h"

#include "engine/dinterface.h"
#include "tests/robot/watch.h"
#include "tests/support/hands/hands.h"
#include "tests/support/random_world.h"

#include <unistd.h>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QRegularExpression>
#include <QThread>
#include <QTimer>
#include <cstdlib>

namespace {

constexpr unsigned kLongestStep = 20;  // seconds; the signal of the alarm ends the process
constexpr long kCheckEvery = 1000;
constexpr long kWatchEvery = 20;
constexpr long kSurfacesEvery = 200;
constexpr int kMostWaiting = 2000;
// Turns of the event loop between two steps, in which what the step has posted is carried out.
constexpr int kSettle = 2;

QWidget* MainWindow() {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (qobject_cast<QMainWindow*>(widget) && widget->isVisible()) return widget;
    return nullptr;
}

}  // namespace

Robot::Robot(const RobotOptions& asked, const TempFolder& own, Chance& source, std::FILE* lines)
    : options(asked), folder(own), chance(source), log(lines) {}

void Robot::Start() {
    began = std::chrono::steady_clock::now();
    QTimer::singleShot(0, &context, [this] { Turn(); });
}

std::string Robot::FirstGame(std::string given) {
    constexpr const char* kGames[] = {"good.zqlt", "bad-half.zqlt", "missing.zqlt", "", ""};
    phase = Phase::Steps;
    if (given.empty()) {
        const std::string game = chance.Pick(kGames);
        if (!game.empty() && game != kGames[0]) excusedUntil = step + kExcused;
        given = game.empty() ? game : folder / game;
    }
    Say("start the program", given.c_str());
    return given;
}

void Robot::Finding(const QString& text) {
    Say("finding:", text);
    std::fprintf(stderr, "finding: %s at step %ld\n", text.toUtf8().constData(), step);
    // What is open cannot be closed any more in an orderly way.
    _exit(EXIT_FAILURE);
}

void Robot::Turn() {
    // First of all: what follows may not return before more turns have been taken.
    QTimer::singleShot(0, &context, [this] { Turn(); });
    if (done || settling-- > 0) return;
    settling = kSettle;
    QWidget* dialog = QApplication::activeModalWidget();
    QWidget* popup = QApplication::activePopupWidget();
    window = MainWindow();
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
        if (idle && step % kWatchEvery == 0) CheckWorld(step % kSurfacesEvery == 0);
        if (step - checked >= kCheckEvery || IsTimeUp()) {
            phase = Phase::Closing;
            waiting = 0;
        } else {
            ++step;
            // However often the program has painted itself, its own chance is the same in each
            // step.
            std::srand(static_cast<unsigned>(options.seed) + static_cast<unsigned>(step));
            if (!idle || !IsTooLarge()) return Step();
            Say("leave a world that has grown too large");
            return Choose("&New");
        }
    }
    if (++waiting > kMostWaiting) Finding(QStringLiteral("what is open does not close"));
    return idle ? GoOn() : Close();
}

bool Robot::IsTimeUp() const {
    const auto used = std::chrono::steady_clock::now() - began;
    return (options.steps > 0 && step >= options.steps) ||
           (options.seconds > 0 && used >= std::chrono::seconds(options.seconds));
}

void Robot::CheckWorld(bool surfaces) {
    std::string fault = WorldFault();
    if (fault.empty() && surfaces) fault = SurfaceFault();
    if (!fault.empty()) Finding(QString::fromStdString(fault));
    if (surfaces) Say("digest", WorldDigest());
}

// The engine reports in boxes of which the caption names the place.
void Robot::CheckBox() {
    auto* box = qobject_cast<QMessageBox*>(top);
    if (!box || seen == box) return;
    seen = box;
    const QString caption = box->windowTitle(), text = box->text();
    Say("box", caption, text);
    const bool isReport =
        caption.startsWith(QLatin1String("Error in ")) || caption == QLatin1String("Oh No!!");
    const bool namesBadFile =
        text.contains(QRegularExpression(QStringLiteral("/(bad|missing|locked|folder)")));
    if (isReport && step > excusedUntil && !namesBadFile) Finding(text);
}

// --- the check of every thousand steps ---------------------------------------------------------

void Robot::Choose(const char* entry) {
    for (const QAction* menu : window->findChild<QMenuBar*>()->actions())
        for (QAction* action : menu->menu()->actions())
            if (action->text() == QLatin1String(entry)) return action->trigger();
    Finding(QStringLiteral("there is no entry ") + QLatin1String(entry));
}

void Robot::GoOn() {
    if (phase == Phase::Closing) {
        held = nullptr;
        CheckWorld(true);
        Say("save the world, open it and compare");
        // Opening a game shows its first board.
        if (!vWorld->Root().children.empty())
            vWorld->ShowBoard(vWorld->Root().children.front()->id);
        wanted = Account(*vWorld, Kept::InFile);
        std::filesystem::remove(folder / "checked.zqlt");
        phase = Phase::Saving;
        return Choose("Save &As...");
    }
    if (phase == Phase::Saving) {
        // Nothing of the world that is opened may be there already.
        const int videoMode = (vWorld->videoMode + 1) % kVideoModes, windowed = !vWorld->windowed;
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
    checked = step;
    done = IsTimeUp();
    if (done) QApplication::exit();
}

void Robot::Close() {
    if (auto* name = top->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        name && phase != Phase::Closing) {
        name->setText(QString::fromStdString(folder / "checked.zqlt"));
        return Press(*name, Qt::Key_Return);
    }
    // A question whether to leave a dialog is answered with OK, one whether to leave the
    // program not.
    const bool leave = top->windowTitle() == QLatin1String("Confirm Cancel");
    Press(*top, leave || phase != Phase::Closing ? Qt::Key_Return : Qt::Key_Escape);
}
