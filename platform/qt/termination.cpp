#include "platform/qt/termination.h"

#include <fcntl.h>
#include <unistd.h>
#include <QApplication>
#include <QSessionManager>
#include <QSocketNotifier>

#include <csignal>

namespace {

int vSignalPipe[2] = {-1, -1};

// Only what a handler may do: the event loop does the rest.
void OnSignal(int number) {
    const auto byte = static_cast<char>(number);
    if (write(vSignalPipe[1], &byte, 1) == 1) return;
    std::signal(number, SIG_DFL);
    std::raise(number);
}

}  // namespace

void OnTermination(std::function<void()> keep, std::function<void()> leave) {
    if (pipe2(vSignalPipe, O_CLOEXEC | O_NONBLOCK) != 0) return;
    auto* notifier = new QSocketNotifier(vSignalPipe[0], QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, [leave] {
        char number = 0;
        if (read(vSignalPipe[0], &number, 1) != 1) return;
        leave();
        std::signal(number, SIG_DFL);
        std::raise(number);
    });
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, qApp,
                     [keep](QSessionManager&) { keep(); });
    for (int number : {SIGTERM, SIGHUP, SIGINT}) std::signal(number, OnSignal);
}
