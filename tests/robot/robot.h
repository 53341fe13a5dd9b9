// The robot: takes a random step on whatever the toolkit shows, as long as it is asked to, and
// every thousand steps sees whether the world survives being saved and opened.
//
// What is chosen depends on the seed and on what the program shows, never on the clock: the
// same seed takes the same steps. Steps are taken from the event loop, so that they go on
// inside the loops of dialogs and menus.
#pragma once

#include "tests/robot/files.h"

#include <QDebug>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <chrono>
#include <cstdio>

struct RobotOptions {
    std::uint64_t seed = 1;
    long steps = 0;    ///< 0 for no limit
    long seconds = 0;  ///< 0 for no limit
};

class Robot {
public:
    /// `lines` is open for writing.
    Robot(const RobotOptions& wanted, const TempFolder& own, Chance& source, std::FILE* lines);

    /// Steps are taken from the next turn of the event loop on.
    void Start();
    bool IsDone() const { return done; }
    long Steps() const { return step; }
    /// A life of the program begins with this game, or with any when it is empty. Gives the
    /// game's path, empty for a new one.
    std::string FirstGame(std::string given);
    /// Ends the process with a failure.
    [[noreturn]] void Finding(const QString& text);

private:
    static constexpr long kExcused = 15;  ///< steps in which a bad file may be reported

    /// What the robot is about between two thousands, and around them.
    enum class Phase { Steps, Closing, Saving, Opening };

    void Turn();
    bool IsTimeUp() const;
    void CheckBox();
    void CheckWorld(bool surfaces);
    void Choose(const char* entry);
    void GoOn();
    void Close();

    // --- steps ---
    void Step();
    void MenuStep(QMenu& menu);
    void FileStep(QFileDialog& dialog);
    void KeyStep();
    void TextStep();
    void ControlStep();
    void MouseStep(QWidget& widget);
    void HoldStep(QWidget& widget);
    void FrameStep();
    std::vector<QWidget*> Controls() const;
    QPoint PointOf(const QWidget& widget);
    Qt::KeyboardModifiers Modifiers();
    QString Text();

    /// A line of the log; to be called before the step acts. The folder's name, which differs
    /// from run to run, is left out.
    template <typename... Parts>
    void Say(const Parts&... parts) {
        QString line;
        (QDebug(&line) << ... << parts);
        line.replace(QString::fromStdString(folder.Path()), QStringLiteral("~"));
        std::fprintf(log, "%ld %s\n", step, line.toUtf8().constData());
        std::fflush(log);
    }

    RobotOptions options;
    const TempFolder& folder;
    Chance& chance;
    std::FILE* log;
    QObject context;
    std::chrono::steady_clock::time_point began;
    QWidget* window = nullptr;  ///< the main window
    QWidget* top = nullptr;     ///< what has the keyboard and the mouse: menu, dialog or window
    Phase phase = Phase::Steps;
    long step = 0;
    long checked = 0;  ///< the step of the last check
    long excusedUntil = -1;
    int settling = 0;
    int waiting = 0;  ///< turns in the present phase
    bool done = false;
    std::string wanted;  ///< the account of the world that was saved
    QPointer<QMessageBox> seen;
    QPointer<QWidget> held;  ///< a mouse button is held on it from one step to the next
    Qt::MouseButton heldButton = Qt::NoButton;
};
