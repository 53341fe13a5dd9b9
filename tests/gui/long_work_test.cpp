// What the real window says of long work: the pointer meanwhile, and the line after a save.

#include "engine/report.h"
#include "tests/gui/main_window.h"

#include <QStatusBar>
#include <fstream>

namespace {

using LongWork = MainWindow;

bool vWaited = false;

void LookAtPointer(const char*) {
    const QCursor* pointer = QGuiApplication::overrideCursor();
    vWaited |= pointer && pointer->shape() == Qt::WaitCursor;
}

TEST_F(LongWork, HasItsPointerButNotInABox) {
    Start();
    const std::string game = temp / "broken.zqlt";
    std::ofstream(game) << "no archive";
    bool inBox = true;
    person.OnDialog([&](QDialog& box) {
        inBox = QGuiApplication::overrideCursor();
        box.accept();
    });
    CaptureTrace(LookAtPointer);
    EXPECT_FALSE(app->Document().OnOpenDocument(game));
    CaptureTrace(nullptr);
    EXPECT_TRUE(vWaited);
    EXPECT_FALSE(inBox);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(LongWork, SaysWhatWasSavedUntilTheNextKeyOrMenu) {
    Start();
    auto* line = window->statusBar()->findChild<QLabel*>();
    const QString idle = line->text();
    vWorld->NewBoard();
    vWorld->NewObject(HandleGuard(vWorld->GetCurrentObject()), 0, 0);
    for (const bool byMenu : {false, true}) {
        const std::string game = temp / (byMenu ? "menu.zqlt" : "key.zqlt");
        person.AnswerFileDialog(game);
        Choose("&File", "Save &As...");
        EXPECT_EQ(line->text().toStdString(), "Saved " + game + ": 2 boards, 1 object, " +
                                                  std::to_string(std::filesystem::file_size(game)) +
                                                  " bytes");
        if (byMenu) {
            person.OnMenu([](QMenu& menu) { menu.close(); });
            Click(*list, {20, 15}, Qt::RightButton);
        } else {
            Press(*edit, Qt::Key_Right);
        }
        Settle();
        EXPECT_EQ(line->text(), idle);
    }
}

}  // namespace
