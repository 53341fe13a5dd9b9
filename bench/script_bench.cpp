// Opening the Programming dialog, off screen: on a long script, and on an empty one with the same
// text set in a bare text control beside it.

#include "bench/bench_world.h"
#include "editor/script/do_programming.h"
#include "platform/qt/code_widget.h"
#include "platform/qt/qt_platform.h"

#include <QPushButton>
#include <QTimer>
#include "bench/timed.h"

#include <cstdlib>
#include <string>

namespace {

constexpr std::size_t kLongScript = 60'000;

std::string LongScript() {
    std::string script;
    for (int i = 0; script.size() < kLongScript; ++i)
        script += "#char " + std::to_string(i) + " 2 \"three\" .self.four\nSome words to show.\n";
    script.resize(kLongScript);
    return script;
}

// Opened, painted and closed by OK.
void OpenDialog() {
    QTimer::singleShot(0, [] {
        QApplication::processEvents();
        QWidget* dialog = QApplication::activeModalWidget();
        dialog->grab();
        dialog->findChild<QPushButton*>(QString::number(platform::kIdOk))->click();
    });
    DoProgramming().Run();
}

void SetBareText(const std::string& script) {
    CodeWidget code(nullptr);
    code.resize(640, 360);
    code.show();
    code.Send(QsciScintillaBase::SCI_SETTEXT, 0, reinterpret_cast<std::intptr_t>(script.c_str()));
    QApplication::processEvents();
    code.grab();
}

void Prepare(const std::string& script) {
    Dinterface& world = BenchWorld();
    world.Root().EraseAll();
    Dobject& node = AddBenchNode(world.Root(), 1, 1);
    node.script = script;
    world.currentObject = node.id;
}

void OpenLongScript(benchmark::State& state) {
    Prepare(LongScript());
    for (auto _ : state) OpenDialog();
}

void OpenEmptyAndSetBareText(benchmark::State& state) {
    Prepare("");
    const std::string script = LongScript();
    for (auto _ : state) {
        OpenDialog();
        SetBareText(script);
    }
}

TIMED(OpenLongScript);
TIMED(OpenEmptyAndSetBareText);

}  // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QtPlatform qt(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
