#include "docs/screens/camera.h"

#include "platform/qt/qt_text.h"
#include "tests/support/hands/hands.h"

#include <QApplication>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <map>

namespace {

constexpr std::size_t kColors = 256;
// Only when a window has been painted it knows whether it needs a scroll bar.
constexpr int kUntilPainted = 10;  // milliseconds after it opens

int Distance(QRgb a, QRgb b) {
    const int r = qRed(a) - qRed(b), g = qGreen(a) - qGreen(b), blue = qBlue(a) - qBlue(b);
    return 2 * r * r + 4 * g * g + 3 * blue * blue;
}

// The 256 colours that occur most often; the others, which are edges of letters, become the
// nearest of them.
QImage WithFewColors(const QImage& image) {
    std::map<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) ++counts[image.pixel(x, y) | 0xff000000];
    std::vector<std::pair<int, QRgb>> byCount;
    for (const auto& [color, count] : counts) byCount.push_back({-count, color});
    std::sort(byCount.begin(), byCount.end());
    QList<QRgb> table;
    for (const auto& [count, color] : byCount)
        if (static_cast<std::size_t>(table.size()) < kColors) table.push_back(color);
    std::map<QRgb, int> index;
    for (const auto& [used, count] : counts) {
        const QRgb color = used;  // a lambda of clang 14 captures no binding
        const auto nearest = std::min_element(table.begin(), table.end(), [&](QRgb a, QRgb b) {
            return Distance(a, color) < Distance(b, color);
        });
        index[color] = static_cast<int>(nearest - table.begin());
    }
    QImage few(image.size(), QImage::Format_Indexed8);
    few.setColorTable(table);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            few.scanLine(y)[x] = static_cast<uchar>(index[image.pixel(x, y) | 0xff000000]);
    return few;
}

QPixmap UnderItsTitle(QDialog& dialog) {
    constexpr int kTitle = 20;
    const QPixmap inside = dialog.grab();
    const qreal ratio = inside.devicePixelRatio();
    const QSize size = inside.deviceIndependentSize().toSize();
    const int tall = dialog.windowTitle().isEmpty() ? 1 : kTitle;
    QPixmap whole((QSizeF(size.width() + 2, size.height() + tall + 1) * ratio).toSize());
    whole.setDevicePixelRatio(ratio);
    whole.fill(QColor(60, 80, 120));
    QPainter painter(&whole);
    painter.setPen(Qt::white);
    painter.drawText(QRect(6, 0, size.width(), tall), Qt::AlignVCenter, dialog.windowTitle());
    painter.drawPixmap(1, tall, inside);
    // What has opened over it: lists and tips.
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowType() == Qt::ToolTip)
            painter.drawPixmap(dialog.mapFromGlobal(window->pos()) + QPoint(1, tall),
                               window->grab());
    return whole;
}

// A menu and those that are open in it, over the part of the window that lies behind.
QPixmap WithMenus(QWidget& over, const std::vector<QMenu*>& menus) {
    QRect seen;
    for (const QMenu* menu : menus)
        seen |= QRect(over.mapFromGlobal(menu->pos()), menu->size()).adjusted(-140, -70, 12, 12);
    seen &= over.rect();
    QPixmap picture = over.grab(seen);
    QPainter painter(&picture);
    for (QMenu* menu : menus)
        painter.drawPixmap(over.mapFromGlobal(menu->pos()) - seen.topLeft(), menu->grab());
    return picture;
}

}  // namespace

void Settle() {
    for (int i = 0; i < 5; ++i) QApplication::processEvents();
}

void Camera::Save(const QPixmap& picture, const std::string& name) {
    constexpr int kSmallest = 0;  // of Qt's scale from small to quick
    const std::string path = folder + name;
    if (WithFewColors(picture.toImage()).save(FromUtf8(path), "PNG", kSmallest)) return;
    std::fprintf(stderr, "%s cannot be written\n", path.c_str());
    saved = false;
}

void Camera::TakeDialog(const std::string& name, const std::function<void()>& open,
                        const std::function<void(QDialog&)>& act) {
    QTimer::singleShot(kUntilPainted, [&] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog) return;
        if (act) act(*dialog);
        Settle();
        Save(UnderItsTitle(*dialog), name);
        // Some ask before they close without OK.
        QTimer::singleShot(0, [dialog] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box && box != dialog) box->button(QMessageBox::Ok)->click();
        });
        dialog->close();
    });
    open();
}

void Camera::TakeMenu(const std::string& name, QWidget& over, QPoint from, QPoint to,
                      Qt::KeyboardModifiers with, const std::vector<std::string>& path) {
    QTimer::singleShot(kUntilPainted, [&] {
        auto* first = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!first) return;
        std::vector<QMenu*> open{first};
        for (const std::string& text : path)
            for (QAction* action : open.back()->actions()) {
                if (ToUtf8(action->text()) != text) continue;
                open.back()->setActiveAction(action);
                if (action->menu()) open.push_back(action->menu());
                break;
            }
        Settle();
        Save(WithMenus(*over.window(), open), name);
        first->close();
    });
    Drag(over, to == from ? std::vector{from} : std::vector{from, to}, Qt::RightButton, with);
    Settle();
}
