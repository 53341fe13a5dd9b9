// quilt-robot: uses the editor at random until something breaks or the time is up.
//
// A random step on whatever the toolkit shows, and every thousand steps a look whether the world
// survives being saved and opened. What is chosen depends on the seed and on what the program
// shows, never on the clock: the same seed takes the same steps. Steps are taken from the event
// loop, so that they go on inside the loops of dialogs and menus.

#include "editor/shell/quilt_app.h"
#include "editor/tools/tile_clip_files.h"
#include "editor/view/tile_clip.h"
#include "engine/picture_file.h"
#include "engine/program_folder.h"
#include "engine/random.h"
#include "engine/report.h"
#include "platform/qt/qt_platform.h"
#include "tests/robot/run.h"
#include "tests/support/random_world.h"

#include <unistd.h>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QBackingStore>
#include <QFileDialog>
#include <QHashSeed>
#include <QMainWindow>
#include <QMessageBox>
#include <QMetaProperty>
#include <QPushButton>
#include <QThread>
#include <QTimer>
#include <ctime>
#include <map>
#include <set>

namespace {

constexpr unsigned kLongestStep = 20;  // seconds; the signal of the alarm ends the process
constexpr long kWatchEvery = 50, kSaveEvery = 1000, kLongestOpen = 3000;
// Of turns of the event loop every third: in the others what a step has posted is carried out.
constexpr int kTurnsOfStep = 3;
constexpr std::size_t kMostNodes = 500, kMostPixels = 100'000'000;  // of a world

class Robot {
public:
    /// Takes steps from the event loop, so many, or for so many seconds, from now on.
    Robot(Run& own, unsigned chance, long stepCount, long secondCount)
        : run(own),
          seed(chance),
          steps(secondCount ? LONG_MAX : stepCount),
          end(std::time(nullptr) + (secondCount ? secondCount : LONG_MAX / 2)) {
        Turn();
    }
    /// The lives of the program, one after the other: File, Exit ends one.
    void Live(QtPlatform& qt) {
        while (!done) {
            // The first is a world of all kinds, which is saved and opened at once.
            const bool anew = run.step && run.OneIn(2);
            run.Say("start the program", anew);
            CQuiltApp own;
            app = &own;
            if (own.InitInstance(run.folder.Path(), anew ? "" : run.folder / "good.zqlt")) qt.Run();
        }
    }
    /// Ends the process with a failure if something is not as it shall be.
    void Expect(bool good, const QString& finding) {
        if (good) return;
        run.Say("finding:", finding);
        std::fprintf(stderr, "finding: %s at step %ld\n", finding.toUtf8().constData(), run.step);
        // What is open cannot be closed any more in an orderly way.
        _exit(EXIT_FAILURE);
    }

private:
    void Turn() {
        // First of all: what follows may not return before more turns have been taken.
        QTimer::singleShot(0, &context, [this] { Turn(); });
        if (done || ++turns % kTurnsOfStep) return;
        QWidget* window = nullptr;
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (qobject_cast<QMainWindow*>(widget) && widget->isVisible()) window = widget;
        QWidget* top = QApplication::activePopupWidget();
        if (!top) top = QApplication::activeModalWidget();
        if (!top) top = window;
        if (!top) return;
        // What opens later than a step, becomes active later, too: a key that presses a button
        // shows it pressed for a while before it acts.
        for (const auto* button : top->findChildren<QPushButton*>())
            if (button->isDown()) return;
        if (std::exchange(last, top) != top) return;
        alarm(kLongestStep);
        // A text control measures its lines while it paints and shows a scroll bar accordingly; the
        // first time may end where the text gets its colours.
        for (const auto* area : top->findChildren<QAbstractScrollArea*>())
            for (int times = 0; times < 2; ++times) area->viewport()->repaint();
        // The engine reports in boxes of which the caption names the place.
        if (const auto* box = qobject_cast<QMessageBox*>(top)) {
            const QString title = box->windowTitle();
            run.Say("box", title, box->text(), box->icon(), box->buttons().size());
            Expect(!(title.startsWith(QLatin1String("Error in ")) ||
                     title == QLatin1String("Oh No!!")) ||
                       run.step <= run.excusedUntil || box->text().contains(QLatin1String("/bad")),
                   box->text());
        }
        // No handler is running, so nothing holds a handle.
        if (top == window && QThread::currentThread()->loopLevel() == 1) OnIdle();
        if (done) return QApplication::exit();
        Expect(++run.step - idle < kLongestOpen, QStringLiteral("what is open does not close"));
        Look(*top);
        // However often the program has painted itself, its own chance is the same in each step.
        vRandom.Seed(seed + static_cast<unsigned>(run.step));
        RandomStep(run, *top);
    }

    // Says what a person could now tell of it and not before, but for what hangs on the fonts.
    void Look(QWidget& top) {
        QEvent update(QEvent::UpdateRequest);
        QApplication::sendEvent(&top, &update);
        const auto* screen = static_cast<const QImage*>(top.backingStore()->paintDevice());
        std::set<QString> now;
        // These are as wide as the path of the folder, which has another name each time.
        const bool fitsPath = top.inherits("QMenu") || top.inherits("QMessageBox");
        for (QWidget* widget : QWidgetList{&top} + top.findChildren<QWidget*>()) {
            if (!widget->isVisible() || qobject_cast<QFileDialog*>(&top)) continue;
            const QMetaObject& kind = *widget->metaObject();
            QString sight;
            QDebug all(&sight);
            all << kind.className() << widget->accessibleName() << widget->windowTitle()
                << (fitsPath ? QRect() : widget->geometry()) << widget->isEnabled()
                << widget->hasFocus() << widget->property("text") << widget->accessibleDescription()
                << kind.userProperty().read(widget) << widget->cursor().shape();
            for (const QAction* entry : widget->actions())
                all << entry->text() << entry->statusTip() << entry->isEnabled()
                    << entry->isChecked();
            if (&kind == &QWidget::staticMetaObject && !widget->findChild<QWidget*>()) {
                const QPoint at = widget->mapTo(&top, QPoint());
                const QRect part = QRect(at, widget->size()) & screen->rect();
                // Of another format than the screen's, so that the bytes are compared as they are.
                const QImage picture(screen->constScanLine(part.y()) + part.x() * 4, part.width(),
                                     part.height(), screen->bytesPerLine(), QImage::Format_ARGB32);
                // Most show what they showed the last time.
                auto& [known, sum] = pictures[part.width()];
                if (picture != known)
                    known = picture.copy(), sum = qHashBits(known.constBits(), known.sizeInBytes());
                all << sum;
            }
            if (!seen.contains(*now.insert(sight).first)) run.Say("sees", sight);
        }
        seen = now;
    }

    void OnIdle() {
        idle = run.step;
        done = run.step >= steps || std::time(nullptr) >= end;
        if (run.step % kWatchEvery == 0) CheckWorld();
        if (done || run.step - saved >= kSaveEvery) SaveAndOpen();
    }

    // What must hold whenever nothing is going on.
    void CheckWorld() {
        ids.clear();
        const std::string before = LookAt(vWorld->Root());
        for (Handle h = kRootHandle + 1; h < kMaxHandles; ++h)
            Expect(!vWorld->Node(h), QStringLiteral("handle %1 is still held").arg(h));
        Expect(vWorld->FindFreeHandleList() == 0, QStringLiteral("a list of handles is open"));
        // A world without boards has nothing to select.
        Expect(ids.contains(vWorld->currentObject) || vWorld->Root().children.empty(),
               QStringLiteral("the selected id is no node's"));
        if (ids.size() > kMostNodes || before.size() > kMostPixels) {
            run.Say("leave a world that has grown too large");
            app->Document().OnNewDocument();
        } else {
            run.Say("world", SumOf(Account(*vWorld)));
            vWorld->Root().RedrawTiles();
            ids.clear();
            Expect(LookAt(vWorld->Root()) == before, QStringLiteral("a surface shows other tiles"));
        }
    }

    // Gives what the surfaces show.
    std::string LookAt(const Dobject& node) {
        const BITMAP* surface = node.vSurf.get();
        // The root has the size of the view, and no cells.
        const auto cells = static_cast<std::size_t>(node.width * node.height);
        const bool fits = (!node.parent || node.tiles.size() == cells) &&
                          (!surface || (surface->w == node.width * kTileSize &&
                                        surface->h == node.height * kTileSize));
        Expect(fits && ids.insert(node.id).second,
               QString::fromStdString("\"" + node.name + "\" has another size, or another's id"));
        std::string shown = Pixels(surface);
        for (const auto& child : node.children) shown += LookAt(*child);
        return shown;
    }

    void SaveAndOpen() {
        run.Say("save the world, open it and compare");
        saved = run.step;
        // Opening a game shows its first board.
        if (!vWorld->Root().children.empty())
            vWorld->ShowBoard(vWorld->Root().children.front()->id);
        const std::string own = Account(*vWorld, Kept::InFile);
        const std::string path = run.folder / "checked.zqlt";
        vWorld->Save(path);
        app->Document().OnNewDocument();
        app->Document().OnOpenDocument(path);
        Expect(Account(*vWorld) == own, QString::fromStdString(Difference(own, Account(*vWorld))));
    }

    Run& run;
    CQuiltApp* app = nullptr;
    unsigned seed;
    long steps;
    std::time_t end;
    QObject context;
    long saved = -kSaveEvery, idle = 0;  ///< the last steps of a save, and with nothing open
    int turns = 0;
    const QWidget* last = nullptr;  ///< what was on top at the last turn
    bool done = false;
    std::set<QString> seen;                                  ///< what the last look told
    std::map<int, std::pair<QImage, std::size_t>> pictures;  ///< the last of a width, and its sum
    std::set<std::int32_t> ids;                              ///< of the nodes looked at
};

// Good files, a bad one beside each, and what comes with the program, which may be saved over.
void MakeFiles(const TempFolder& folder, unsigned seed) {
    std::filesystem::copy("Library", folder / "Library", std::filesystem::copy_options::recursive);
    std::mt19937 random(seed);
    Dinterface world;
    PlantRandomWorld(world, random);
    world.Export(HandleGuard(world.AddHandle(world.Root().children.front().get())),
                 folder / "good.zobj");
    world.Save(folder / "good.zqlt");
    world.GetFont()->AddRow();
    PutFile(folder / "good.bmp", MakeBmp(world.GetFont()->Sheet(), world.GetFont()->GetPalette()));
    vTileClipW = vTileClipH = 4;
    vTileClip.assign(16, {1, 2, 3, 1});
    SaveTileClip(folder / "good.qcf");
    ClearTileClip();
    for (const std::string kind : {".zobj", ".zqlt", ".bmp", ".qcf"}) {
        const std::string bytes = FileBytes(folder / ("good" + kind));
        PutFile(folder / ("bad" + kind), bytes.substr(0, bytes.size() / 2));
    }
}

Robot* vRobot = nullptr;

}  // namespace

// quilt-robot [--seed N] [--steps N] [--seconds N] [--log FILE] [--digest DIGEST]
int main(int argc, char** argv) {
    static Run run;
    std::map<std::string, std::string> options = {{"--seed", "1"},
                                                  {"--steps", "1000"},
                                                  {"--seconds", "0"},
                                                  {"--digest", ""},
                                                  {"--log", run.folder / "robot.log"}};
    for (int i = 1; i + 1 < argc; i += 2) options.at(argv[i]) = argv[i + 1];
    const auto number = [&](const char* option) { return std::stol(options[option]); };
    const auto seed = static_cast<unsigned>(number("--seed"));
    run.random.seed(seed);
    run.log = std::fopen(options["--log"].c_str(), "w");
    if (!run.log) return std::perror(options["--log"].c_str()), 2;
    StartAllegro();
    StartTrace(nullptr);
    std::filesystem::current_path(ProgramFolder());
    MakeFiles(run.folder, seed);
    std::filesystem::current_path(run.folder.Path());
    CaptureTrace([](const char* line) { run.Say("trace", line); });
    // Nothing of the user's is read or written, and nothing differs from run to run. Every other
    // seed has a screen of another scale.
    setenv("QT_SCALE_FACTOR", seed % 4 == 0 ? "1.5" : seed % 4 == 2 ? "2" : "1", 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
        setenv(name, run.folder.Path().c_str(), 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    for (const char* name : {"QUILT_TRACE", "QT_STYLE_OVERRIDE"}) unsetenv(name);
    QHashSeed::setDeterministicGlobalSeed();
    // However the process ends, the last line of the log is the step that did it.
    std::printf("seed %u, log %s\n", seed, options["--log"].c_str());
    std::fflush(stdout);
    {
        QtPlatform qt(argc, argv);
        QApplication::setCursorFlashTime(0);
        // The text control would tell double clicks by the time between two clicks.
        QApplication::setDoubleClickInterval(0);
        Robot robot(run, seed, number("--steps"), number("--seconds"));
        vRobot = &robot;
        // What Qt complains of is a fault, but for what an off-screen window cannot do.
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
            vRobot->Expect(text.startsWith(QLatin1String("This plugin does not support")), text);
        });
        robot.Live(qt);
        qInstallMessageHandler(nullptr);
        alarm(0);
    }
    const std::string digest = QString::number(run.digest, 16).toStdString();
    std::printf("%ld steps without a finding, digest %s\n", run.step, digest.c_str());
    return options["--digest"].empty() || options["--digest"] == digest ? 0 : EXIT_FAILURE;
}
