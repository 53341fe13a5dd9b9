// quilt-dialog-pictures: takes the pictures of docs/scripts.md from the real dialog, off screen.
// To be started in the program's folder, where Library/ stands.

// Before Qt, which takes the word slots for itself.
#include "engine/dinterface.h"
#include "engine/report.h"

#include "editor/script/do_programming.h"
#include "platform/qt/qt_platform.h"

#include <QDialog>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QTimer>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr const char* kScript =
    "@Guard\n"
    "' Walks up and down before the gate until somebody comes.\n"
    "#char 2 15 1 1\n"
    "#collide normal\n"
    ":patrol\n"
    "/n/n/n?e/s/s/s?w\n"
    "#if near #patrolled\n"
    "#rand luck 10\n"
    "#ifex luck >= 7 #play \"tc-e-g\"\n"
    "#patrol\n"
    ":patrolled\n"
    "Halt! Who goes there? It is past nine.\n"
    "The gate stays shut. No exceptions.\n"
    "#put n 12 .self.Lamp\n"
    "#light 6 32 0 255\n"
    "#write 4 1 \"Closed\"\n"
    "#set alarm -1\n"
    "#end\n";

struct Scene {
    const char* file;
    const char* script;
    const char* typed;  ///< at the end of the script
};
constexpr Scene kScenes[] = {
    {"script-colors.png", kScript, ""},
    {"script-list.png", "@Guard\n#char 2 15 1 1\n:touch\nHalt! Who goes there?\n", "#put n .self."},
    {"script-tip.png", "@Guard\n#char 2 15 1 1\n:touch\nHalt! Who goes there?\n", "#walk "},
};

void Press(QWidget& widget, int key, const QString& text,
           Qt::KeyboardModifiers with = Qt::NoModifier) {
    QKeyEvent down(QEvent::KeyPress, key, with, text);
    QApplication::sendEvent(&widget, &down);
}

// The dialog with what has opened over it.
QPixmap Shot(QWidget& dialog) {
    QPixmap shot = dialog.grab();
    QPainter painter(&shot);
    for (QWidget* window : QApplication::topLevelWidgets()) {
        const bool over = window->isVisible() && window->windowType() == Qt::ToolTip;
        if (over) painter.drawPixmap(dialog.mapFromGlobal(window->pos()), window->grab());
    }
    return shot;
}

bool Take(const Scene& scene, const QString& folder) {
    const HandleGuard current(vWorld->GetCurrentObject());
    vWorld->SetScript(current, scene.script);
    bool good = false;
    QTimer::singleShot(200, [&] {
        QWidget& dialog = *QApplication::activeModalWidget();
        auto* code = dialog.findChild<QWidget*>(QString::number(kScriptText));
        Press(*code, Qt::Key_End, {}, Qt::ControlModifier);
        for (const QChar c : QString::fromUtf8(scene.typed)) Press(*code, 0, QString(c));
        QApplication::processEvents();
        good = Shot(dialog).save(folder + QLatin1Char('/') + QLatin1String(scene.file));
        dialog.findChild<QPushButton*>(QString::number(platform::kIdOk))->click();
    });
    DoProgramming().Run();
    return good;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: quilt-dialog-pictures FOLDER\n", stderr);
        return 2;
    }
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    // No settings of the user's: the pictures look alike everywhere.
    setenv("XDG_CONFIG_HOME", "/nonexistent", 1);
    QtPlatform qt(argc, argv);
    install_allegro(SYSTEM_NONE, &errno, nullptr);
    set_color_depth(8);
    StartTrace(nullptr);
    Dinterface world;
    vWorld->NewBoard();
    const HandleGuard board(vWorld->GetCurrentBoard());
    const HandleGuard guard(vWorld->SpawnObject(board, "Guard", 1, 1, 0));
    for (const char* name : {"Lamp", "Key", "Horn"})
        vWorld->ReleaseHandle(vWorld->SpawnObject(guard, name, 1, 1, 0));
    vWorld->SetCurrentObject(guard);
    bool good = true;
    for (const Scene& scene : kScenes) good &= Take(scene, QString::fromLocal8Bit(argv[1]));
    return good ? 0 : 1;
}
