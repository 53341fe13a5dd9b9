// The real dialogs of the font editor and of both clipboards, and a real player started by Run.

// Before Qt, which takes the word slots for itself.
#include "editor/shell/quilt_app.h"
#include "engine/picture_file.h"

#include "editor/shell/do_object_clip_board.h"
#include "editor/shell/do_save_notification.h"
#include "editor/tools/color_select.h"
#include "editor/tools/do_color_select.h"
#include "editor/tools/do_font_edit.h"
#include "editor/tools/do_tile_clip.h"
#include "editor/view/brush.h"
#include "editor/view/object_clip.h"
#include "editor/view/tile_clip.h"
#include "platform/qt/picture_widget.h"
#include "platform/qt/qt_frame.h"
#include "platform/qt/qt_platform.h"
#include "tests/gui/person.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>
#include <QApplication>
#include <QCheckBox>
#include <QImage>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QtTest>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace {

// A program folder of the test's own, so that it can hold a player.
class ClipDialogs : public testing::Test {
protected:
    ClipDialogs() {
        std::filesystem::create_directory(temp / "program folder");
        std::filesystem::create_directory_symlink(startFolder + "/Library", Program("Library"));
        ClearTileClip();
        ResetBrushes();
        EXPECT_TRUE(app->InitInstance(temp / "program folder", ""));
        window = static_cast<QtFrame*>(&app->Frame().Window());
        window->resize(1024, 768);
        window->activateWindow();
        QApplication::processEvents();
    }
    ~ClipDialogs() override {
        app.reset();
        ClearTileClip();
        std::filesystem::current_path(startFolder);
    }

    std::string Program(const std::string& file) const { return temp / ("program folder/" + file); }
    void Choose(const std::string& menu, const std::string& text) {
        for (QAction* top : window->menuBar()->actions())
            if (top->text().toStdString() == menu) Person::EntryOf(*top->menu(), text)->trigger();
    }
    template <typename Widget = QWidget>
    static Widget& In(QDialog& dialog, int id) {
        auto* widget = dialog.findChild<Widget*>(QString::number(id));
        EXPECT_NE(widget, nullptr) << id;
        return *widget;
    }
    static void ChooseIn(QDialog& dialog, const std::string& text) {
        QMenu* menu = dialog.findChild<QMenuBar*>()->actions().front()->menu();
        if (QAction* entry = Person::EntryOf(*menu, text)) entry->trigger();
    }
    // A key to whatever has the focus of the dialog.
    static void Key(QDialog& dialog, Qt::Key key) {
        QWidget* focus = dialog.focusWidget();
        ASSERT_NE(focus, nullptr);
        QTest::keyClick(focus, key);
    }

    const std::string startFolder = std::filesystem::current_path().string();
    TempFolder temp;
    Person person;
    std::unique_ptr<CQuiltApp> app = std::make_unique<CQuiltApp>();
    QtFrame* window = nullptr;
};

}  // namespace

TEST_F(ClipDialogs, TheFontEditorTakesItsKeysWhereverTheFocusStands) {
    Dfont& glyphs = *vWorld->GetFont();
    vBrush = {33, 7, 2, 1};
    person.OnDialog([&](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle().toStdString(), "Font Edit");
        int x = 0;
        for (const int id : {int{kFontCharEdit}, int{kFontSlider}, int{kFontInvert},
                             int{kFontCharMode}, int{platform::kIdOk}}) {
            In(dialog, id).setFocus();
            const GlyphPixels before = ReadGlyph(33);
            Key(dialog, Qt::Key_Space);
            const GlyphPixels after = ReadGlyph(33);
            int changed = 0;
            for (std::size_t i = 0; i < 64; ++i) changed += before[i] != after[i];
            EXPECT_EQ(changed, 1) << "focus on " << id;
            EXPECT_NE(before[static_cast<std::size_t>(x)], after[static_cast<std::size_t>(x)]);
            Key(dialog, Qt::Key_Return);
            EXPECT_EQ(vBrush.fg, glyphs.GetGlyphPixel(33, x, 0));
            EXPECT_TRUE(dialog.isVisible()) << "Enter does not press OK";
            Key(dialog, Qt::Key_Right);
            ++x;
        }
        EXPECT_EQ(In<QSlider>(dialog, kFontSlider).value(), 0) << "the arrows are the cursor's";
        EXPECT_TRUE(In<QRadioButton>(dialog, kFontCharMode).isChecked());

        const int color = vBrush.fg;
        person.OnDialog([&](QDialog& colors) {
            EXPECT_EQ(colors.windowTitle().toStdString(), "Color Select");
            Key(colors, Qt::Key_Down);
            In<QPushButton>(colors, platform::kIdOk).click();
        });
        Key(dialog, Qt::Key_C);
        EXPECT_EQ(vBrush.fg, color + 16);

        // The mouse: a glyph, a pixel of it, the slider.
        Person::Click(In(dialog, kFontCharSelect), {3 * 16 + 5, 5});
        EXPECT_EQ(vBrush.chr, 3);
        QWidget& editor = In(dialog, kFontCharEdit);
        Person::Click(editor, {editor.width() - 2, editor.height() - 2});
        In<QRadioButton>(dialog, kFontSpriteMode).click();
        Key(dialog, Qt::Key_Space);
        EXPECT_EQ(glyphs.GetGlyphPixel(3, 7, 7), color + 16);
        In<QPushButton>(dialog, kFontNewLine).click();
        EXPECT_EQ(glyphs.GlyphCount(), 272);

        person.AnswerFileDialog(temp / "sheet");
        ChooseIn(dialog, "&Save");
        person.AnswerBox("Discard Changes ?", false);
        Key(dialog, Qt::Key_Escape);
        EXPECT_TRUE(dialog.isVisible());
        person.AnswerBox("Discard Changes ?", true);
        dialog.close();
    });
    Choose("&View", "&Font Edit");
    EXPECT_EQ(glyphs.GlyphCount(), 256) << "cancelled";
    EXPECT_EQ(vBrush, (Brush{33, 7, 2, 1}));

    // The saved sheet, as Qt reads it, and as it reads back.
    const QImage image(QString::fromStdString(temp / "sheet.bmp"));
    ASSERT_EQ(image.size(), QSize(128, 136));
    EXPECT_EQ(image.format(), QImage::Format_Indexed8);
    for (int y = 24; y < 128; ++y)  // below the glyphs that were edited
        for (int x = 0; x < 128; ++x)
            ASSERT_EQ(image.pixelIndex(x, y), getpixel(glyphs.Sheet(), x, y)) << x << ' ' << y;
    person.OnDialog([&](QDialog& dialog) {
        person.AnswerFileDialog(temp / "sheet.bmp");
        ChooseIn(dialog, "&Load");
        In<QPushButton>(dialog, platform::kIdOk).click();
    });
    Choose("&View", "&Font Edit");
    EXPECT_EQ(glyphs.GlyphCount(), 272);
    EXPECT_EQ(image.pixelIndex(31, 7), glyphs.GetGlyphPixel(3, 7, 7));
}

TEST_F(ClipDialogs, TheTileClipboardTakesPicturesOfOtherPrograms) {
    QImage image(5, 3, QImage::Format_Indexed8);
    image.setColorCount(256);
    for (int i = 0; i < 15; ++i) image.setPixel(i % 5, i / 5, static_cast<unsigned>(200 + i));
    ASSERT_TRUE(image.save(QString::fromStdString(temp / "qt.bmp")));
    const auto load = [&](Qt::Key answer) {
        person.OnDialog([&, answer](QDialog& dialog) {
            EXPECT_EQ(dialog.windowTitle().toStdString(), "Tile ClipBoard");
            person.AnswerFileDialog(temp / "qt.bmp");
            person.OnDialog([answer](QDialog& question) {
                EXPECT_EQ(question.windowTitle().toStdString(), "Load BMP As");
                Key(question, answer);
            });
            ChooseIn(dialog, "&Load");
            auto& skip = In<QCheckBox>(dialog, kClipSkip);
            skip.setFocus();
            Key(dialog, Qt::Key_Space);
            Key(dialog, answer);
        });
        Choose("&View", "&Tile ClipBoard");
    };
    load(Qt::Key_Return);
    ASSERT_EQ(vTileClip.size(), 15u);
    for (std::size_t i = 0; i < 15; ++i) EXPECT_EQ(vTileClip[i].fg, 200 + i);
    EXPECT_EQ(vTileClip[0].bg, 65535);
    EXPECT_EQ(vTileClipSkip, 1);
    load(Qt::Key_Escape);
    ASSERT_EQ(vTileClip.size(), 15u);
    EXPECT_EQ(vTileClip[3].bg, 203);
    EXPECT_EQ(vTileClip[3].fg, 65535);
    EXPECT_EQ(vTileClipSkip, 1) << "Cancel leaves the option";
    vTileClipSkip = 0;
}

TEST_F(ClipDialogs, TheObjectClipboardShowsAndMovesItsObject) {
    vObjectClip->EraseAll();
    vObjectClip->Create("wide", 100, 3);
    for (int x = 0; x < 100; ++x) vObjectClip->PutTile(x, 0, 219, x % 16, 0, 0);
    person.OnDialog([&](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle().toStdString(), "Object ClipBoard");
        QWidget& viewer = In(dialog, kObjectPicture);
        const QImage before = viewer.grab().toImage();
        EXPECT_EQ(before.pixel(16 * 3 + 8, 8) & 0xffffff, vScreenColors[3] & 0xffffff);
        Person::Drag(viewer, {{60, 60}, {60 - 16, 60}}, Qt::LeftButton);
        QApplication::processEvents();
        EXPECT_EQ(viewer.grab().toImage().pixel(16 + 8, 8), before.pixel(16 * 3 + 8, 8));
        person.AnswerFileDialog(temp / "wide");
        ChooseIn(dialog, "&Save");
        person.AnswerFileDialog(temp / "wide.zobj");
        vObjectClip->name = "other";
        ChooseIn(dialog, "&Load");
        Key(dialog, Qt::Key_Return);
    });
    Choose("&View", "&Object Clipboard");
    EXPECT_EQ(vObjectClip->name, "wide");
}

// --- the player --------------------------------------------------------------------------------

namespace {

// Writes down what it got, waits to be told to end, and says that it has ended by itself.
constexpr const char* kPlayer = R"(#!/bin/sh
{ echo "$#"; printf '%s\n' "$1"; pwd; echo "$$"; echo "$PPID"; env; } >told.part
mv told.part told
i=0
while [ ! -e end ] && [ $i -lt 200 ]; do sleep 0.05; i=$((i + 1)); done
echo done >ended
)";

}  // namespace

TEST_F(ClipDialogs, RunStartsThePlayerAsAProcessOfItsOwn) {
    const std::string player = PutFile(Program("QUILT! Runner"), kPlayer);
    std::filesystem::permissions(player, std::filesystem::perms::owner_all);
    const std::string folder = temp / "it's \"my\" games";
    std::filesystem::create_directory(folder);
    const std::string game = folder + "/a 'game' of $HOME \"x\".zqlt";
    std::filesystem::copy_file("Library/default.zqlt", game);
    ASSERT_TRUE(app->Document().OnOpenDocument(game));
    const std::string before = FileBytes(game);
    vWorld->Root().children.front()->PutTile(1, 1, 65, 4, 5, 0);
    setenv("QUILT_TEST_MARK", "as the editor has it", 1);
    person.OnDialog([](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle().toStdString(), "Save Notification");
        EXPECT_TRUE(In<QCheckBox>(dialog, kNoticeHide).isChecked());
        Key(dialog, Qt::Key_Return);
    });
    Choose("&File", "&Run");
    EXPECT_NE(FileBytes(game), before) << "saved before the start";
    ASSERT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(Program("told")); }, 8000));

    std::istringstream told(FileBytes(Program("told")));
    std::string count, argument, workingFolder, id, parent;
    for (std::string* line : {&count, &argument, &workingFolder, &id, &parent})
        std::getline(told, *line);
    EXPECT_EQ(count, "1");
    EXPECT_EQ(argument, game);
    EXPECT_EQ(workingFolder, temp / "program folder");
    EXPECT_THAT(told.str(), testing::HasSubstr("\nQUILT_TEST_MARK=as the editor has it\n"));
    EXPECT_NE(parent, std::to_string(getpid()));
    EXPECT_NE(getsid(std::stoi(id)), getsid(0)) << "it ends with the editor's terminal";
    errno = 0;
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1)
        << "the editor has a child that it never waits for";
    EXPECT_EQ(errno, ECHILD);

    app.reset();
    EXPECT_FALSE(std::filesystem::exists(Program("ended")));
    PutFile(Program("end"), "");
    EXPECT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(Program("ended")); }, 8000))
        << "the player outlives the application";
    unsetenv("QUILT_TEST_MARK");
}

TEST_F(ClipDialogs, WithoutAPlayerTheGameIsSavedAndNothingIsSaid) {
    for (const bool refused : {false, true}) {
        if (refused) PutFile(Program("QUILT! Runner"), "no program");
        std::filesystem::remove(temp / "Untitled.zqlt");
        person.OnDialog([](QDialog& dialog) { Key(dialog, Qt::Key_Return); });
        person.AnswerFileDialog(temp / "Untitled.zqlt");
        Choose("&File", "&Run");
        EXPECT_TRUE(std::filesystem::exists(temp / "Untitled.zqlt"));
    }
}
