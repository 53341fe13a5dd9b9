// The robot: takes a random step on whatever stands open, as long as it is asked to, and every
// thousand steps sees whether the world survives being saved and opened.
//
// What is chosen depends on the seed and on what the program shows, never on the clock: the
// same seed takes the same steps. Steps are taken from the event loop, so that they go on
// inside the loops of dialogs and menus.
#pragma once

#include "tests/robot/chance.h"
#include "tests/robot/compare.h"
#include "tests/robot/files.h"
#include "tests/robot/scene.h"

#include <QObject>
#include <QPointer>
#include <chrono>
#include <cstdio>
#include <string>

struct RobotOptions {
    std::uint64_t seed = 1;
    long steps = 0;    ///< 0 for no limit
    long seconds = 0;  ///< 0 for no limit
};

class Robot {
public:
    /// `lines` is open for writing; its name is for messages.
    Robot(const RobotOptions& wanted, Files& own, Chance& source, std::FILE* lines,
          std::string logName);
    Robot(const Robot&) = delete;
    Robot& operator=(const Robot&) = delete;

    /// Steps are taken from the next turn of the event loop on.
    void Start();
    bool IsDone() const { return done; }
    long Steps() const { return step; }

    /// The game with which the program starts the next time: the one given, else any; empty
    /// for none.
    std::string FirstGame(const std::string& given);

    // --- for the steps ---
    Chance& chance;
    Files& files;
    /// Writes a line to the log; to be called before the step acts.
    void Say(const std::string& text);
    /// Ends the process with a failure.
    [[noreturn]] void Finding(const std::string& text);
    /// The program may report a bad file during the next few steps.
    void Excuse() { excusedUntil = step + kExcused; }
    /// A mouse button that is held from one step to the next.
    QPointer<QWidget> held;
    Qt::MouseButton heldButton = Qt::NoButton;

private:
    static constexpr long kExcused = 15;

    /// What the robot is about between two thousands, and around them.
    enum class Phase { Steps, Closing, Saving, Opening, Leaving };

    void Turn();
    void TakeStep(const Scene& scene);
    void CheckBox(const Scene& scene);
    void CheckWorld();
    bool IsIdle(const Scene& scene) const;
    bool IsTimeUp() const;
    void GoOn(const Scene& scene);
    void CloseTop(const Scene& scene);
    void AnswerTop(const Scene& scene, const std::string& path);
    void Choose(const Scene& scene, const char* entry);
    void StartSaving(const Scene& scene);
    void StartOpening(const Scene& scene);
    void EndCheck();
    std::string CheckFile() const { return files / "checked.zqlt"; }

    RobotOptions options;
    std::FILE* log;
    std::string logName;
    QObject context;
    std::chrono::steady_clock::time_point began;
    Phase phase = Phase::Steps;
    long step = 0;
    long checked = 0;  ///< the step of the last check
    long excusedUntil = -1;
    int settling = 0;
    int waiting = 0;  ///< turns in the present phase
    bool done = false;
    KeptWorld wanted;
    QPointer<QMessageBox> seen;
};
