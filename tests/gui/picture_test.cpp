// A picture's window: what the toolkit's keys, characters and mouse become.

#include "platform/qt/picture_widget.h"
#include "tests/support/hands/hands.h"

#include <gtest/gtest.h>
#include <QtTest>
#include <sstream>

namespace {

struct Picture : testing::Test, platform::WindowEvents {
    Picture() {
        widget.resize(100, 80);
        widget.setFocusPolicy(Qt::StrongFocus);
        widget.show();
        widget.activateWindow();
        widget.setFocus();
        QTest::qWait(10);
    }
    void Write(const char* what, bool ctrl, platform::Point at) {
        mouse << what << (ctrl ? "^" : "") << at.x << ',' << at.y << ' ';
    }
    void OnDraw(platform::Window&) override {}
    void OnKeyDown(int key) override { keys << key << ' '; }
    void OnKeyUp(int key) override { keys << '-' << key << ' '; }
    void OnChar(int ch) override { chars << ch << ' '; }
    void OnLButtonDown(bool ctrl, platform::Point at) override { Write("L", ctrl, at); }
    void OnLButtonUp(bool ctrl, platform::Point at) override { Write("l", ctrl, at); }
    void OnLButtonDblClk(bool ctrl, platform::Point at) override { Write("D", ctrl, at); }
    void OnRButtonDown(bool ctrl, platform::Point at) override { Write("R", ctrl, at); }
    void OnRButtonUp(bool ctrl, platform::Point at) override { Write("r", ctrl, at); }
    void OnMouseMove(bool ctrl, platform::Point at) override { Write("m", ctrl, at); }
    void OnMouseWheel(int delta) override { mouse << 'w' << delta << ' '; }
    static std::string Heard(std::ostringstream& part) {
        return std::exchange(part, std::ostringstream()).str();
    }

    std::ostringstream keys, chars, mouse;
    PictureWidget widget{nullptr, this};
};

}  // namespace

TEST_F(Picture, HearsKeysAndCharacters) {
    // Those that no session of the other tests presses.
    constexpr std::pair<Qt::Key, int> kKeys[] = {
        {Qt::Key_Backspace, 8}, {Qt::Key_Shift, 16}, {Qt::Key_PageDown, 34},
        {Qt::Key_Insert, 45},   {Qt::Key_F1, 112},   {Qt::Key_F2, 113},
        {Qt::Key_F4, 115},      {Qt::Key_9, 57},     {Qt::Key_Z, 90},
    };
    for (const auto& [key, code] : kKeys) {
        Press(widget, key);
        EXPECT_EQ(Heard(keys), std::to_string(code) + " -" + std::to_string(code) + " ");
        Press(widget, key, Qt::AltModifier);
        EXPECT_EQ(Heard(keys)[0], '-') << "a mnemonic is no key";
    }
    Press(widget, Qt::Key_F3);
    Press(widget, Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(Heard(keys), "16 93 -93 -16 ");
    Heard(chars);
    Press(widget, Qt::Key_A, Qt::ControlModifier);
    QKeyEvent third(QEvent::KeyPress, Qt::Key_Q, Qt::ControlModifier | Qt::AltModifier,
                    QStringLiteral("@"));
    QApplication::sendEvent(&widget, &third);
    Type(widget, QStringLiteral("aE\r\b\t\u00e9\u263a\u4e2d\U0001f600"));
    Compose(widget, QStringLiteral("\u00fc\u25d8\u4e2d\u2588"));
    EXPECT_EQ(Heard(chars), "64 97 69 13 8 9 130 1 129 219 ");

    // Shift let go in another window is let go, once.
    widget.clearFocus();
    widget.setFocus();
    EXPECT_EQ(Heard(keys).find("-16"), std::string::npos);
    QTest::keyPress(&widget, Qt::Key_Shift);
    widget.clearFocus();
    EXPECT_EQ(Heard(keys), "16 -16 ");
}

TEST_F(Picture, HearsTheMouseOutsideWhileItHasCapturedIt) {
    Click(widget, {5, 6}, Qt::LeftButton, Qt::ControlModifier);
    DoubleClick(widget, {1, 2}, Qt::LeftButton);
    DoubleClick(widget, {3, 4}, Qt::RightButton);
    EXPECT_EQ(Heard(mouse), "L^5,6 l^5,6 L1,2 l1,2 D1,2 l1,2 R3,4 r3,4 R3,4 r3,4 ");
    const std::vector<QPoint> path{{9, 9}, {99, 79}, {100, 9}, {-30, -40}};
    Drag(widget, path, Qt::RightButton);
    widget.SetCapture();
    Drag(widget, path, Qt::LeftButton);
    widget.ReleaseCapture();
    MouseMove(widget, {-1, 0}, Qt::LeftButton);
    EXPECT_EQ(Heard(mouse), "R9,9 m99,79 r-30,-40 L9,9 m99,79 m100,9 m-30,-40 l-30,-40 ");
    // Touch pads turn in small steps.
    for (const int turn : {60, 60, -120, 250, 110}) TurnWheel(widget, {5, 5}, turn);
    EXPECT_EQ(Heard(mouse), "w120 w-120 w120 w120 w120 ");
}
