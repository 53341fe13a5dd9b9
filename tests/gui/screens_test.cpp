// Every dialog and both panels as the screen shows them: at the scale factor of the run (the tests
// are run at several), in a small and a large window, on a light and a dark desktop.

#include "tests/gui/main_window.h"

#include "docs/screens/album.h"
#include "editor/shell/do_about.h"
#include "editor/tools/do_brush_settings.h"
#include "platform/qt/code_widget.h"
#include "platform/qt/picture_widget.h"
#include "platform/qt/qt_form.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QRadioButton>

namespace {

// The largest difference in brightness between a place on the form and the pixels of an area.
int Contrast(const QImage& image, const QRect& area, QRgb ground) {
    int most = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            most = std::max(most, std::abs(qGray(image.pixel(x, y)) - qGray(ground)));
    return most;
}

// Nothing cut off, nothing over anything else, everything inside; texts are read, and the
// edge of every field and box is seen, against what is behind them.
void CheckForm(const QWidget& form) {
    constexpr int kReadable = 110, kVisible = 40;
    const QRgb ground = form.palette().color(QPalette::Window).rgb();
    QRegion used;
    for (QWidget* widget : form.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (widget->isHidden() || widget->objectName().isEmpty()) continue;
        SCOPED_TRACE(widget->accessibleName().toStdString());
        EXPECT_FALSE(widget->accessibleName().isEmpty());
        EXPECT_TRUE(form.rect().contains(widget->geometry()));
        if (qobject_cast<QGroupBox*>(widget)) continue;
        EXPECT_FALSE(used.intersects(widget->geometry()));
        used += widget->geometry();
        const auto* label = qobject_cast<QLabel*>(widget);
        const auto* button = qobject_cast<QAbstractButton*>(widget);
        // A tip over a script would hide it.
        EXPECT_EQ(widget->toolTip().isEmpty(), label || dynamic_cast<CodeWidget*>(widget));
        const QString text = label ? label->text() : button ? button->text() : QString();
        const QFontMetrics metrics = widget->fontMetrics();
        const int wrap = Qt::TextShowMnemonic | (label && label->wordWrap() ? Qt::TextWordWrap : 0);
        const QRect room(0, 0, widget->width(), widget->height());
        EXPECT_TRUE(room.contains(metrics.boundingRect(room, wrap, text)));
        const bool toggle = qobject_cast<QCheckBox*>(widget) || qobject_cast<QRadioButton*>(widget);
        const bool field = qobject_cast<QLineEdit*>(widget);
        if (!widget->isEnabled() || !(label || toggle || field)) continue;
        const QImage image = widget->grab().toImage();
        const int box = toggle ? static_cast<int>(22 * image.devicePixelRatio()) : 0;
        const QRect edge =
            field ? QRect(0, image.height() / 2, 4, 2) : QRect(0, 0, box, image.height());
        EXPECT_GT(field ? 255 : Contrast(image, image.rect().adjusted(box, 0, 0, 0), ground),
                  kReadable);
        EXPECT_GT(label ? 255 : Contrast(image, edge, ground), kVisible);
    }
}

// Looks at what is to be in the manual instead of taking pictures of it.
class Inspector final : public Camera {
public:
    Inspector(Person& hands, const QtFrame& frame) : Camera(""), person(hands), window(frame) {}

    void TakeDialog(const std::string& name, const std::function<void()>& open,
                    const std::function<void(QDialog&)>& act) override {
        person.OnDialog([&](QDialog& dialog) {
            if (act) act(dialog);
            ::Settle();
            SCOPED_TRACE(name);
            CheckForm(*dialog.findChild<QtForm*>());
            // These ask whether the work is to be thrown away.
            if (name == "dialog-font-edit.png" || name.starts_with("script"))
                person.AnswerBox("Discard Changes ?");
            dialog.close();
        });
        open();
        ++forms;
    }
    void Save(const QPixmap&, const std::string& name) override {
        const auto& panel = *window.findChild<QWidget*>(QStringLiteral("panel"));
        EXPECT_EQ(panel.visibleRegion().boundingRect(), panel.rect());
        if (name.starts_with("panel")) CheckForm(panel);
    }
    void TakeMenu(const std::string&, QWidget&, QPoint, QPoint, Qt::KeyboardModifiers,
                  const std::vector<std::string>&) override {}

    Person& person;
    const QtFrame& window;
    int forms = 0;
};

struct Screens : MainWindow {
    Screens() { Start("Library/samples/lamplight.zqlt"); }
};

}  // namespace

TEST_F(Screens, EveryFormHasRoomAndIsReadOnLightAndDark) {
    Inspector inspector(person, *window);
    Studio studio{*app, *window, inspector};
    window->resize(800, 600);
    const QPalette light = QApplication::palette();
    QPalette dark(QColor(49, 54, 59), QColor(35, 38, 41));
    dark.setColor(QPalette::Base, QColor(27, 30, 32));
    for (const QPalette& palette : {dark, light}) {
        QApplication::setPalette(palette);
        TakeWindows(studio);
        TakeDialogs(studio);
        TakeScripts(studio);
        inspector.TakeDialog("about", [] { DoAbout().Run(); }, {});
    }
    EXPECT_GT(inspector.forms, 37);
}

// Upright stripes, a tile wide each: tiles keep whole device pixels.
TEST_F(Screens, TilesKeepWholeDevicePixels) {
    for (int i = 0; i < 40; ++i) Board().PutTile(i, 9, 219, i % 2 ? 47 : 63, 47, 0);
    Board().children.clear();
    app->Frame().Changed(Change::World);
    Settle();
    const QImage image = edit->grab().toImage();
    const int tile = 8 * static_cast<int>(image.devicePixelRatio());
    for (int x = 0; x < 30 * tile; ++x)
        ASSERT_EQ(image.pixel(x, 9 * tile + 4), vScreenColors[x / tile % 2 ? 47 : 63]) << x;
}

// What is clicked is what is seen there, and the cells fill the picker, whatever the screen's
// pixels are.
TEST_F(Screens, PickersChooseWhatIsShown) {
    person.OnDialog([](QDialog& dialog) {
        Settle();
        QWidget& colors = In(dialog, kBrushFg);
        const QImage shown = colors.grab().toImage();
        for (const int color : {1, 99, 254}) {
            const QRgb wanted = vScreenColors[static_cast<std::size_t>(color)];
            int x = 0, y = 0;
            const auto isThere = [&] {
                return shown.pixel(x, y) == wanted && shown.pixel(x + 4, y + 4) == wanted;
            };
            while (y < shown.height() - 5 && !isThere())
                if (++x == shown.width() - 5) x = 0, ++y;
            Click(colors, (QPointF(x + 2, y + 2) / shown.devicePixelRatio()).toPoint());
            EXPECT_EQ(vBrush.fg, color);
            EXPECT_GT(x, color == 254 ? shown.width() * 3 / 4 : 0);
        }
        dialog.close();
    });
    DoBrushSettings().Run();
}
