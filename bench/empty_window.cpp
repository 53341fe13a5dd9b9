// A window of the editor's size with a menu and a label, by Qt alone: shown, painted, ended.
#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.menuBar()->addMenu(QStringLiteral("File"))->addAction(QStringLiteral("Quit"));
    window.setCentralWidget(new QLabel(QStringLiteral("Hello")));
    window.resize(1024, 768);
    window.show();
    QApplication::processEvents();
    return 0;
}
