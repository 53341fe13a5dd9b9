// Every dialog and both panels as the screen shows them: at the scale factor of the run (the tests
// are run at several), in a small and a large window, on a light and a dark desktop.

#include "editor/commands.h"
#include "editor/script/do_programming.h"
#include "editor/shell/do_about.h"
#include "editor/shell/do_location.h"
#include "editor/shell/do_name.h"
#include "editor/shell/do_object_clip_board.h"
#include "editor/shell/do_save_notification.h"
#include "editor/shell/do_size.h"
#include "editor/shell/do_viewport.h"
#include "editor/shell/quilt_app.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/do_color_select.h"
#include "editor/tools/do_font_edit.h"
#include "editor/tools/do_tile_clip.h"
#include "editor/tools/open_area_dialog.h"
#include "editor/view/view_state.h"
#include "platform/qt/code_widget.h"
#include "platform/qt/picture_widget.h"
#include "platform/qt/qt_form.h"
#include "platform/qt/qt_frame.h"
#include "tests/gui/person.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QtTest>
#include <filesystem>
#include <map>

namespace {

struct OpenDialog {
    const char* title;
    std::function<void()> run;
};

const OpenDialog kDialogs[] = {
    {"Brush Settings", [] { DoBrushSettings().Run(); }},
    {"Color Select", [] { DoColorSelect().Run(); }},
    {"Name", [] { DoName().Run(); }},
    {"Location", [] { DoLocation().Run(); }},
    {"Size", [] { DoSize().Run(); }},
    {"Viewport", [] { DoViewport().Run(); }},
    {"Fade", [] { OpenAreaDialog(AreaDialog::Fade); }},
    {"Distance Fade", [] { OpenAreaDialog(AreaDialog::Distance); }},
    {"Slime fade", [] { OpenAreaDialog(AreaDialog::Slime); }},
    {"Speckle", [] { OpenAreaDialog(AreaDialog::Speckle); }},
    {"Filter", [] { OpenAreaDialog(AreaDialog::Filter); }},
    {"Font Edit", [] { DoFontEdit().Run(); }},
    {"Tile ClipBoard", [] { DoTileClip().Run(); }},
    {"Load BMP As", [] { AskForForeground(); }},
    {"Object ClipBoard", [] { DoObjectClipBoard().Run(); }},
    {"Save Notification", [] { DoSaveNotification::Confirm(); }},
    {"About QUILT!", [] { DoAbout().Run(); }},
    {"Programming", [] { DoProgramming().Run(); }},
};

// Nothing cut off, nothing over anything else, everything inside, even margins.
void CheckLayout(QWidget& form, const char* name) {
    std::vector<QWidget*> controls;
    QRect used;
    for (QWidget* widget : form.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (widget->isHidden() || widget->objectName().isEmpty()) continue;
        used |= widget->geometry();
        const std::string what = std::string(name) + " " + widget->accessibleName().toStdString();
        EXPECT_FALSE(widget->accessibleName().isEmpty()) << what;
        if (qobject_cast<QGroupBox*>(widget)) continue;
        const auto* label = qobject_cast<QLabel*>(widget);
        // A tip over a script would hide it.
        if (!label && !dynamic_cast<CodeWidget*>(widget)) {
            EXPECT_FALSE(widget->toolTip().isEmpty()) << what;
        }
        const auto* button = qobject_cast<QAbstractButton*>(widget);
        const QString text = label ? label->text() : button ? button->text() : QString();
        const bool wraps = label && label->wordWrap();
        const int wide = widget->fontMetrics().size(Qt::TextShowMnemonic, text).width();
        EXPECT_LE(wraps ? label->minimumSizeHint().width() : wide, widget->width()) << what;
        if (wraps) {
            EXPECT_LE(label->heightForWidth(label->width()), label->height()) << what;
        }
        EXPECT_LE(widget->fontMetrics().height(), widget->height()) << what;
        for (const QWidget* other : controls)
            EXPECT_FALSE(other->geometry().intersects(widget->geometry())) << what;
        controls.push_back(widget);
    }
    EXPECT_TRUE(form.rect().contains(used)) << name;
    EXPECT_NEAR(used.left(), form.width() - 1 - used.right(), 3) << name;
}

// The largest difference in brightness between a place on the form and the pixels of an area.
int Contrast(const QImage& image, QRect area, QRgb ground) {
    int most = 0;
    area &= image.rect();
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            most = std::max(most, std::abs(qGray(image.pixel(x, y)) - qGray(ground)));
    return most;
}

// Texts are read, and the edge of every field and box is seen, against what is behind them.
void CheckContrast(QWidget& form, const char* name) {
    constexpr int kReadable = 110, kVisible = 40;
    const QRgb ground = form.palette().color(QPalette::Window).rgb();
    for (QWidget* widget : form.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (widget->isHidden() || !widget->isEnabled()) continue;
        const bool toggle = qobject_cast<QCheckBox*>(widget) || qobject_cast<QRadioButton*>(widget);
        const bool field = qobject_cast<QLineEdit*>(widget);
        if (!toggle && !field && !qobject_cast<QLabel*>(widget)) continue;
        const std::string what = std::string(name) + " " + widget->accessibleName().toStdString();
        const QImage image = widget->grab().toImage();
        const int box = static_cast<int>(22 * image.devicePixelRatio());
        if (!field) {
            const QRect text = toggle ? image.rect().adjusted(box, 0, 0, 0) : image.rect();
            EXPECT_GT(Contrast(image, text, ground), kReadable) << what;
        }
        if (toggle || field) {
            const QRect edge = toggle ? QRect(0, 0, box, image.height())
                                      : QRect(0, image.height() / 2, box / 5, 2);
            EXPECT_GT(Contrast(image, edge, ground), kVisible) << what;
        }
    }
}

class Screens : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(app.InitInstance(std::filesystem::current_path().string(),
                                     "Library/samples/lamplight.zqlt"));
        window = static_cast<QtFrame*>(&app.Frame().Window());
        Settle();
    }

    static void Settle() { QTest::qWait(20); }
    QWidget& Edit() { return *window->findChild<QWidget*>(QStringLiteral("edit")); }
    QtForm& Panel() { return *window->findChild<QtForm*>(QStringLiteral("panel")); }
    void ShowPanel(int mode) {
        vPanelMode = mode;
        app.Frame().OnCommand(mode == kPanelPaint ? kCmdShowPaintPanel : kCmdShowPropertiesPanel);
        Settle();
    }
    void ForEachForm(const std::function<void(QWidget&, const char*)>& check) {
        for (const OpenDialog& open : kDialogs) {
            person.OnDialog([&](QDialog& dialog) {
                EXPECT_EQ(dialog.windowTitle().toStdString(), open.title);
                Settle();
                check(*dialog.findChild<QtForm*>(), open.title);
                // These ask whether the work is to be thrown away.
                const std::string title = open.title;
                if (title == "Font Edit" || title == "Programming") person.AnswerBox("");
                dialog.close();
            });
            open.run();
            Settle();
        }
        for (const int mode : {kPanelPaint, kPanelProperties}) {
            ShowPanel(mode);
            check(Panel(), mode == kPanelPaint ? "paint panel" : "properties panel");
        }
    }

    Person person;
    CQuiltApp app;
    QtFrame* window = nullptr;
};

}  // namespace

TEST_F(Screens, EveryTextHasRoom) { ForEachForm(CheckLayout); }

TEST_F(Screens, TheSmallestWindowCutsNoPanelAndALargeOneGivesItsRoomToTheEditView) {
    window->resize(800, 600);
    Settle();
    for (const int mode : {kPanelPaint, kPanelProperties}) {
        ShowPanel(mode);
        const QWidget* viewport = Panel().parentWidget();
        EXPECT_LE(Panel().width(), viewport->width());
        EXPECT_LE(Panel().height(), viewport->height());
        const auto* area = qobject_cast<QScrollArea*>(viewport->parentWidget());
        ASSERT_NE(area, nullptr);
        EXPECT_FALSE(area->horizontalScrollBar()->isVisible());
        EXPECT_FALSE(area->verticalScrollBar()->isVisible());
    }
    window->resize(3840, 2160);
    Settle();
    EXPECT_EQ(window->PaneSize(platform::Pane::Left).w, 200);
    EXPECT_EQ(window->PaneSize(platform::Pane::Lower).h, 135);
    EXPECT_GT(window->PaneSize(platform::Pane::Upper).w, 3600);
    EXPECT_GT(window->PaneSize(platform::Pane::Upper).h, 1900);
    // Past the board nothing is left over.
    const QImage shown = Edit().grab().toImage();
    EXPECT_EQ(shown.pixel(shown.width() - 1, shown.height() - 1) & 0xffffff, 0u);
}

// Upright stripes, a tile wide each: tiles keep whole device pixels.
TEST_F(Screens, TilesKeepWholeDevicePixels) {
    window->resize(1000, 700);
    Dobject& board = *vWorld->Root().children.front();
    board.EraseAll();
    for (int i = 0; i < board.width * board.height; ++i)
        board.PutTile(i % board.width, i / board.width, 219, i % 2 ? 47 : 63, 47, 0);
    app.Frame().RedrawAll();
    Settle();
    const QImage image = window->grab().toImage();
    const QPoint origin = Edit().mapTo(window, QPoint(0, 0)) * image.devicePixelRatio();
    std::map<int, int> runs;  // length -> how often
    const int y = origin.y() + image.height() / 3;
    for (int x = origin.x(), start = x; x + 1 < image.width(); ++x) {
        const QRgb here = image.pixel(x, y);
        if (here == image.pixel(x + 1, y)) continue;
        for (const std::size_t stripe : {47, 63})
            if (here == (vScreenColors[stripe] | 0xff000000)) ++runs[x + 1 - start];
        start = x + 1;
    }
    const int tile = 8 * static_cast<int>(image.devicePixelRatio());
    EXPECT_GT(runs[tile], 20);
    // The first tile has the cursor over it, the last is cut by the window's edge.
    for (const auto& [length, count] : runs) EXPECT_TRUE(length == tile || count <= 2) << length;
}

TEST_F(Screens, NothingIsLostOnADarkDesktop) {
    ForEachForm(CheckContrast);
    const QPalette light = QApplication::palette();
    QPalette dark(QColor(49, 54, 59), QColor(35, 38, 41));
    dark.setColor(QPalette::Base, QColor(27, 30, 32));
    QApplication::setPalette(dark);
    Settle();
    ForEachForm(CheckContrast);
    QApplication::setPalette(light);
}

// What is clicked is what is seen there, and the cells fill the pickers, whatever the screen's
// pixels are.
TEST_F(Screens, PickersChooseWhatIsShown) {
    person.OnDialog([](QDialog& dialog) {
        Settle();
        auto& colors = *dialog.findChild<QWidget*>(QString::number(kBrushFg));
        const QImage shown = colors.grab().toImage();
        const double ratio = shown.devicePixelRatio();
        int filled = 0;
        for (int y = 0; y < shown.height(); ++y)
            for (int x = 0; x < shown.width(); ++x)
                filled += (shown.pixel(x, y) | 0xff000000) != (vScreenColors[115] | 0xff000000);
        EXPECT_GT(filled, shown.width() * shown.height() * 3 / 4);
        for (const int color : {1, 99, 254}) {
            const QRgb wanted = vScreenColors[static_cast<std::size_t>(color)] | 0xff000000;
            QPoint at(-1, -1);
            for (int y = 0; y + 4 < shown.height(); ++y)
                for (int x = 0; x + 4 < shown.width(); ++x)
                    if ((shown.pixel(x, y) | 0xff000000) == wanted &&
                        (shown.pixel(x + 4, y + 4) | 0xff000000) == wanted)
                        at = {x + 2, y + 2};
            ASSERT_GE(at.x(), 0) << color;
            Click(colors, (QPointF(at) / ratio).toPoint());
            EXPECT_EQ(vBrush.fg, color);
        }
        // The full block is the one glyph without a clear pixel.
        auto& glyphs = *dialog.findChild<QWidget*>(QString::number(kBrushChar));
        const QImage sheet = glyphs.grab().toImage();
        const int side = static_cast<int>(12 * ratio);
        for (int y = 0; y + side < sheet.height(); ++y)
            for (int x = 0; x + side < sheet.width(); ++x) {
                bool full = true;
                for (int i = 0; full && i < side * side; ++i)
                    full = qGray(sheet.pixel(x + i % side, y + i / side)) > 250;
                if (!full) continue;
                const QPointF middle(x + side / 2.0, y + side / 2.0);
                Click(glyphs, (middle / ratio).toPoint());
                EXPECT_EQ(vBrush.chr, 219);
                y = sheet.height();
                break;
            }
        EXPECT_EQ(vBrush.chr, 219);
        dialog.close();
    });
    vBrush = {1, 15, 1, 0};
    DoBrushSettings().Run();
}
