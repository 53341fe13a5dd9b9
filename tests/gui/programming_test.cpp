// The Programming dialog on the real text control, off screen, driven by keys.

// Before Qt, which takes the word slots for itself.
#include "engine/report.h"
#include "tests/support/test_world.h"

#include "editor/script/container_styling.h"
#include "editor/script/do_programming.h"
#include "engine/script_styler.h"
#include "platform/platform.h"
#include "platform/qt/code_widget.h"
#include "tests/gui/person.h"

#include <gmock/gmock.h>
#include <QApplication>
#include <QListWidget>
#include <QPushButton>
#include <QtTest>
#include <random>

namespace {

using Base = QsciScintillaBase;

constexpr const char* kSelectorsOnly =
    ".all .contained .e .inside .mask .n .parent .s .self .top .w";

QWidget* TopLevel(const char* className) {
    // A window that was closed goes first.
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->inherits(className)) return widget;
    return nullptr;
}

// What a person sees of the open dialog.
class Screen {
public:
    explicit Screen(QDialog& shown)
        : dialog(shown), code(*shown.findChild<CodeWidget*>(QString::number(kScriptText))) {}

    std::intptr_t Ask(unsigned message, std::uintptr_t w = 0, std::intptr_t l = 0) const {
        return code.Send(message, w, l);
    }
    void Do(const std::string& keys) { Type(code, QString::fromStdString(keys)); }
    void Click(int id) { dialog.findChild<QPushButton*>(QString::number(id))->click(); }
    void SetText(const std::string& text) {
        Ask(Base::SCI_SETTEXT, 0, reinterpret_cast<std::intptr_t>(text.c_str()));
        Ask(Base::SCI_GOTOPOS, text.size());
    }
    std::string Text() const {
        std::string text(static_cast<std::size_t>(Ask(Base::SCI_GETLENGTH)) + 1, '\0');
        Ask(Base::SCI_GETTEXT, text.size(), reinterpret_cast<std::intptr_t>(text.data()));
        text.pop_back();
        return text;
    }
    std::string Open() const {
        return Ask(Base::SCI_AUTOCACTIVE) ? "list" : Ask(Base::SCI_CALLTIPACTIVE) ? "tip" : "";
    }
    /// The words of the open list, or nothing when none is open.
    std::string List() const {
        std::string words;
        const auto* list =
            qobject_cast<QListWidget*>(Open() == "list" ? TopLevel("QListWidget") : nullptr);
        for (int i = 0; list && i < list->count(); ++i)
            words += (i ? " " : "") + list->item(i)->text().toStdString();
        return words;
    }
    /// The list behind a text and a "." typed at its end.
    std::string ListBehind(const std::string& text) {
        Ask(Base::SCI_AUTOCCANCEL);
        SetText(text);
        Do(".");
        return List();
    }

    QDialog& dialog;
    CodeWidget& code;
};

class Programming : public WorldTest {
protected:
    static void SetUpTestSuite() {
        StartAllegro();
        StartTrace(nullptr);
    }
    Programming() {
        Dobject& board = AddNode(world->Root(), "Plain", 4, 4);
        hero = &AddNode(board, "Hero", 1, 1);
        AddNode(board, "Rock", 1, 1);
        AddNode(*hero, "Hand", 1, 1);
        world->currentObject = hero->id;
    }

    /// Opens the dialog; what `act` leaves open is ended by OK.
    std::string Run(const std::string& script, std::function<void(Screen&)> act) {
        hero->script = script;
        person.OnDialog([act = std::move(act)](QDialog& dialog) {
            Screen screen(dialog);
            act(screen);
            if (dialog.isVisible()) screen.Click(platform::kIdOk);
        });
        DoProgramming().Run();
        return hero->script;
    }

    Person person;
    Dobject* hero = nullptr;
};

}  // namespace

TEST_F(Programming, ListsAndTipsOpenWhileItIsTyped) {
    const struct {
        const char* typed;
        const char* text;  ///< null for what was typed
        const char* open;
    } rows[] = {
        {"#", nullptr, "list"},
        {"#wa\n", "#walk", ""},
        {"#wa\n\n#di\t", "#walk\n#die", ""},  // not div: the list goes by the letters
        {"#xyz", nullptr, "list"},            // nothing matches, and it stays
        {"#xyz\x1b", "#xyz", ""},             // Escape closes the list and no more
        {"' a comment #", nullptr, ""},
        {"#play \"#", nullptr, "tip"},
        {"some text#", nullptr, ""},
        {"x\n#Walk ", nullptr, "tip"},
        {"#walk    ", nullptr, "tip"},  // as far as the third blank behind it
        {"#walk     ", nullptr, ""},
        {"#walk     #walk    ", nullptr, "tip"},
        {"#walk \x1b", "#walk ", ""},
        {"#walk   /n ", nullptr, "tip"},
        {" ", nullptr, ""},
        {"'#end ", nullptr, ""},
    };
    for (const auto& row : rows)
        Run("", [&](Screen& s) {
            EXPECT_TRUE(s.code.hasFocus());
            s.Do(row.typed);
            EXPECT_EQ(s.Text(), row.text ? row.text : row.typed);
            EXPECT_EQ(s.Open(), row.open) << row.typed;
            EXPECT_TRUE(s.dialog.isVisible());
        });
    Run("", [](Screen& s) {
        s.Do("x\n#Walk ");
        const QWidget* tip = TopLevel("QsciSciCallTip");
        ASSERT_NE(tip, nullptr);
        const int width = tip->width();
        EXPECT_LT(s.code.mapFromGlobal(tip->pos()).x(), s.Ask(Base::SCI_POINTXFROMPOSITION, 0, 5))
            << "at the line's start";
        s.Do("  /n ");
        tip = TopLevel("QsciSciCallTip");
        EXPECT_TRUE(tip && tip->width() < width) << "an empty tip for a word that is no command";
        s.SetText("");
        s.Do("#");
        EXPECT_TRUE(s.List().starts_with("#attach #become #bind ")) << s.List();
        EXPECT_TRUE(s.List().ends_with(" #walk #write #zap"));
        // Off the screen there is no list.
        for (const QPoint& place : {QPoint(-5000, -5000), QPoint(5000, 5000), QPoint(0, -5000)}) {
            s.dialog.move(place);
            EXPECT_EQ(s.ListBehind(".self"), "");
        }
        s.dialog.move(0, 0);
        EXPECT_NE(s.ListBehind(".self"), "");
    });
}

TEST_F(Programming, ListOfPathsGoesByTheTokenInFront) {
    Run("", [this](Screen& s) {
        s.Do(".");
        EXPECT_EQ(s.List(), ".Hero .Rock " + std::string(kSelectorsOnly)) << "first in the text";
        const struct {
            const char* text;
            std::string list;
        } cases[] = {
            {"#put n ", ".Hero .Rock " + std::string(kSelectorsOnly)},
            {"#put n .self", ".Hand " + std::string(kSelectorsOnly)},
            {"x\n.top", ".Plain " + std::string(kSelectorsOnly)},
            {"#put n .Hero", ".Hand " + std::string(kSelectorsOnly)},
            {"#put n .nobody", kSelectorsOnly},
            {"#put n .inside", kSelectorsOnly},
            {"#put\t.self", kSelectorsOnly},  // a tab ends no token
            {" ", kSelectorsOnly},            // the text's first character belongs to it
            {"#walk", ""},
            {"#char 12", ""},
            {"' .self", ""},
            {"#play \"a", ""},
            {"Well now", ""},
        };
        for (const auto& c : cases) EXPECT_EQ(s.ListBehind(c.text), c.list) << c.text;
        s.SetText("#put n .self.Rock");
        s.Ask(Base::SCI_GOTOPOS, 12);
        s.Do(".");
        EXPECT_EQ(s.List(), ".Hand " + std::string(kSelectorsOnly));
        Press(s.code, Qt::Key_Escape);
        const std::string longToken(70'000, 'x');
        EXPECT_EQ(s.ListBehind("#put " + longToken), kSelectorsOnly);
        Press(s.code, Qt::Key_Escape);
        for (const char* name : {"Hand", "top", "what?3"}) AddNode(*hero, name, 1, 1);
        EXPECT_EQ(s.ListBehind("#put n .self"),
                  ".Hand .Hand .all .contained .e .inside .mask .n .parent .s .self .top .top .w "
                  ".what?3")
            << "equal names, and names of selectors, as they are";
        s.SetText("");
    });
}

TEST_F(Programming, KeysEditTheText) {
    const std::string stored = Run("one", [](Screen& s) {
        EXPECT_EQ(s.Ask(Base::SCI_CANUNDO), 0);
        Press(s.code, Qt::Key_End, Qt::ControlModifier);
        Press(s.code, Qt::Key_Enter);
        EXPECT_TRUE(s.dialog.isVisible()) << "Enter types a line";
        s.Do("t\xc3\xa4wo");
        EXPECT_EQ(s.Text(), "one\nt\xc3\xa4wo");
        for (int i = 0; i < 5; ++i) Press(s.code, Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(s.Text(), "one") << "no further back than the script as it was";
        Press(s.code, Qt::Key_Y, Qt::ControlModifier);
        Press(s.code, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        Press(s.code, Qt::Key_Tab);
        Press(s.code, Qt::Key_Tab, Qt::ControlModifier);
        EXPECT_FALSE(s.code.hasFocus()) << "Ctrl+Tab leaves the editor";
    });
    EXPECT_EQ(stored, "one\nt\xc3\xa4wo\t");
}

TEST_F(Programming, FontReachesEveryStyle) {
    Run("#walk", [this](Screen& s) {
        ASSERT_FALSE(vFontFaces.empty());
        const std::string face = vFontFaces.back();
        person.OnMenu([&](QMenu& menu) {
            const auto* button = s.dialog.findChild<QPushButton*>(QString::number(kChangeFont));
            EXPECT_EQ(menu.pos(), button->mapToGlobal(QPoint(0, button->height())));
            menu.setActiveAction(menu.actions()[static_cast<int>(vFontFaces.size()) - 1]);
            Press(menu, Qt::Key_Return);
        });
        s.Click(kChangeFont);
        EXPECT_EQ(vPlatform->GetProfileString("Font", "Face", ""), face);
        for (const std::uintptr_t style : {32, 0, 1, 8, 10, 33}) {
            char name[100] = "";
            s.Ask(Base::SCI_STYLEGETFONT, style, reinterpret_cast<std::intptr_t>(name));
            EXPECT_EQ(name, face) << style;
        }
    });
}

TEST_F(Programming, StoresTheTextByteForByte) {
    std::string longScript(70'000, 'x');
    for (std::size_t end = 5000; end < kMaxScript; end += 5000) longScript[end] = '\n';
    const struct {
        std::string script;
        std::string stored;
    } cases[] = {
        {"#a\r\n#b\rc\n", "#a\n#b\nc\n"},
        {"\xff bad \xc3", "\xff bad \xc3"},
        {longScript, longScript.substr(0, kMaxScript)},
        {longScript.substr(0, kMaxScript - 1) + "\xc3\xa4", longScript.substr(0, kMaxScript - 1)},
        {"", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(Run(c.script, [](Screen&) {}), c.stored);
    world->currentObject = 9999;
    EXPECT_EQ(Run("kept",
                  [](Screen& s) {
                      EXPECT_EQ(s.Text(), "");
                      s.Do("lost");
                  }),
              "kept");
}

TEST_F(Programming, CancelAsks) {
    hero->script = "old";
    person.OnDialog([this](QDialog& dialog) {
        Screen s(dialog);
        s.Do("new");
        const std::function<void()> ways[] = {[&] { Press(s.code, Qt::Key_Escape); },
                                              [&] { dialog.close(); },
                                              [&] { s.Click(platform::kIdCancel); }};
        for (const auto& leave : ways) {
            EXPECT_TRUE(dialog.isVisible());
            EXPECT_EQ(s.Text(), "newold");
            person.AnswerBox("Discard Changes ?", &leave == &ways[2]);
            leave();
        }
        EXPECT_FALSE(dialog.isVisible());
    });
    DoProgramming().Run();
    EXPECT_EQ(hero->script, "old");
}

// Puts in and takes out text, and compares the styles up to some place with those of the lines.
TEST_F(Programming, StylesStayRightThroughRandomEdits) {
    // The first once found a line changed behind the place asked for.
    for (const unsigned seed : {434496693u, std::random_device{}()}) {
        SCOPED_TRACE(seed);
        Run("", [seed](Screen& s) {
            std::mt19937 random(seed);
            const std::string bytes = "#/?.:@'\" ab1\n\n";
            std::string model;
            for (int round = 0; round < 2000; ++round) {
                const std::size_t at = random() % (model.size() + 1);
                if (random() % 3) {
                    std::string text(1 + random() % 12, ' ');
                    for (char& c : text) c = bytes[random() % bytes.size()];
                    s.Ask(Base::SCI_INSERTTEXT, at, reinterpret_cast<std::intptr_t>(text.c_str()));
                    model.insert(at, text);
                } else {
                    const std::size_t count = std::min(random() % 20, model.size() - at);
                    s.Ask(Base::SCI_DELETERANGE, at, static_cast<std::intptr_t>(count));
                    model.erase(at, count);
                }
                if (random() % 3 == 0) continue;
                const std::size_t upTo =
                    random() % 2 ? model.size() : random() % (model.size() + 1);
                StyleTo(s.code, static_cast<std::intptr_t>(upTo));
                std::string wanted, styles;
                for (std::size_t from = 0; from < upTo;) {
                    const std::size_t end = std::min(model.find('\n', from), model.size() - 1) + 1;
                    wanted += StyleLine(model.substr(from, end - from));
                    from = end;
                }
                for (std::size_t i = 0; i < upTo; ++i)
                    styles += static_cast<char>(s.Ask(Base::SCI_GETSTYLEAT, i));
                ASSERT_EQ(styles, wanted.substr(0, upTo)) << model;
            }
        });
    }
}
