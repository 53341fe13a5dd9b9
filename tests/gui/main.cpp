// The main function of the tests on the real window system, off screen and with settings of
// their own.

#include "engine/bitmap.h"
#include "engine/report.h"
#include "platform/qt/qt_platform.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const TempFolder settings;
    setenv("XDG_CONFIG_HOME", settings.Path().c_str(), 1);
    setenv("XDG_RUNTIME_DIR", settings.Path().c_str(), 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    unsetenv("QUILT_TRACE");
    // The tests of single parts make worlds without the application.
    StartAllegro();
    StartTrace(nullptr);
    // What Qt warns of is a fault, but for what it cannot do off screen.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
        EXPECT_TRUE(text.contains(QLatin1String("plugin does not support"))) << text.toStdString();
    });
    QtPlatform qt(argc, argv);
    return RUN_ALL_TESTS();
}
