// The Programming dialog on the real text control, off screen, driven by keys.

// Before Qt, which takes the word slots for itself.
#include "engine/report.h"
#include "tests/support/test_world.h"

#include "editor/script/container_styling.h"
#include "editor/script/do_programming.h"
#include "editor/script/script_styler.h"
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
    void Type(const std::string& text) { Person::Type(code, QString::fromStdString(text)); }
    void Key(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
        Person::Press(code, key, with);
    }
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
    bool ListOpen() const { return Ask(Base::SCI_AUTOCACTIVE) != 0; }
    bool TipOpen() const { return Ask(Base::SCI_CALLTIPACTIVE) != 0; }
    /// The words of the open list, or nothing when none is open.
    std::string List() const {
        std::string words;
        const auto* list =
            qobject_cast<QListWidget*>(ListOpen() ? TopLevel("QListWidget") : nullptr);
        for (int i = 0; list && i < list->count(); ++i)
            words += (i ? " " : "") + list->item(i)->text().toStdString();
        return words;
    }
    int TipWidth() const {
        const QWidget* tip = TopLevel("QsciSciCallTip");
        return tip ? tip->width() : 0;
    }
    /// In pixels of the editor.
    int TipLeft() const {
        const QWidget* tip = TopLevel("QsciSciCallTip");
        return tip ? code.mapFromGlobal(tip->pos()).x() : -1;
    }
    /// The list behind a text and a "." typed at its end.
    std::string ListBehind(const std::string& text) {
        Ask(Base::SCI_AUTOCCANCEL);
        SetText(text);
        Type(".");
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

TEST_F(Programming, OffTheScreenThereIsNoList) {
    Run("", [](Screen& s) {
        for (const QPoint& place : {QPoint(-5000, -5000), QPoint(5000, 5000), QPoint(0, -5000)}) {
            s.dialog.move(place);
            EXPECT_EQ(s.ListBehind(".self"), "");
            s.SetText("");
            s.Type("#set ");
            EXPECT_FALSE(s.ListOpen());
            EXPECT_EQ(s.Text(), "#set ");
        }
        s.dialog.move(0, 0);
        EXPECT_NE(s.ListBehind(".self"), "");
    });
}

TEST_F(Programming, ListOfCommandsOpensBehindTheMark) {
    Run("", [](Screen& s) {
        EXPECT_TRUE(s.code.hasFocus());
        s.Type("#");
        EXPECT_TRUE(s.List().starts_with("#attach #become #bind ")) << s.List();
        EXPECT_TRUE(s.List().ends_with(" #walk #write #zap"));
        s.Type("wa");
        s.Key(Qt::Key_Return);
        EXPECT_EQ(s.Text(), "#walk");
        EXPECT_FALSE(s.ListOpen());
        s.Key(Qt::Key_Return);
        s.Type("#di");
        s.Key(Qt::Key_Tab);
        EXPECT_EQ(s.Text(), "#walk\n#die") << "not div: the list goes by the letters";
        s.Key(Qt::Key_Return);
        s.Type("#xyz");
        EXPECT_TRUE(s.ListOpen()) << "nothing matches, and it stays";
        s.Key(Qt::Key_Escape);
        EXPECT_FALSE(s.ListOpen());
        EXPECT_TRUE(s.dialog.isVisible()) << "Escape closed the list and no more";
        for (const char* quiet : {"' a comment ", "#play \"", "some text"}) {
            s.SetText(quiet);
            s.Type("#");
            EXPECT_FALSE(s.ListOpen()) << quiet;
        }
    });
}

TEST_F(Programming, ListOfPathsGoesByTheTokenInFront) {
    Run("", [this](Screen& s) {
        s.Type(".");
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
        s.Type(".");
        EXPECT_EQ(s.List(), ".Hand " + std::string(kSelectorsOnly));
        s.Key(Qt::Key_Escape);
        const std::string longToken(70'000, 'x');
        EXPECT_EQ(s.ListBehind("#put " + longToken), kSelectorsOnly);
        s.Key(Qt::Key_Escape);
        for (const char* name : {"Hand", "top", "what?3"}) AddNode(*hero, name, 1, 1);
        EXPECT_EQ(s.ListBehind("#put n .self"),
                  ".Hand .Hand .all .contained .e .inside .mask .n .parent .s .self .top .top .w "
                  ".what?3")
            << "equal names, and names of selectors, as they are";
        s.SetText("");
    });
}

TEST_F(Programming, TipOpensBehindACommandAndCountsBlanks) {
    Run("", [](Screen& s) {
        s.Type("x");
        s.Key(Qt::Key_Return);
        s.Type("#Walk ");
        EXPECT_TRUE(s.TipOpen());
        EXPECT_FALSE(s.ListOpen());
        EXPECT_LT(s.TipLeft(), s.Ask(Base::SCI_POINTXFROMPOSITION, 0, 5)) << "at the line's start";
        const int walk = s.TipWidth();
        s.Type("   ");
        EXPECT_TRUE(s.TipOpen()) << "three blanks";
        s.Type(" ");
        EXPECT_FALSE(s.TipOpen()) << "the fourth";
        s.Type("#walk ");
        EXPECT_EQ(s.TipWidth(), walk) << "in any case of letters";
        s.Type("  /n ");
        EXPECT_TRUE(s.TipOpen());
        EXPECT_LT(s.TipWidth(), walk) << "an empty tip for a word that is no command";
        s.Type("   #walk ");
        EXPECT_EQ(s.TipWidth(), walk) << "the fourth blank opened its own";
        s.Type("   ");
        EXPECT_TRUE(s.TipOpen()) << "and the count began anew";
        s.Key(Qt::Key_Escape);
        EXPECT_FALSE(s.TipOpen());
        EXPECT_TRUE(s.dialog.isVisible());
        s.SetText("");
        s.Type(" ");
        EXPECT_FALSE(s.TipOpen());
        s.Type("'#end ");
        EXPECT_FALSE(s.TipOpen());
    });
}

TEST_F(Programming, KeysEditTheText) {
    const std::string stored = Run("one", [](Screen& s) {
        EXPECT_EQ(s.Ask(Base::SCI_CANUNDO), 0);
        s.Key(Qt::Key_End, Qt::ControlModifier);
        s.Key(Qt::Key_Enter);
        EXPECT_TRUE(s.dialog.isVisible()) << "Enter types a line";
        s.Type("t\xc3\xa4wo");
        EXPECT_EQ(s.Text(), "one\nt\xc3\xa4wo");
        for (int i = 0; i < 5; ++i) s.Key(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(s.Text(), "one") << "no further back than the script as it was";
        s.Key(Qt::Key_Y, Qt::ControlModifier);
        s.Key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        s.Key(Qt::Key_Tab);
        s.Key(Qt::Key_Tab, Qt::ControlModifier);
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
            QTest::keyClick(&menu, Qt::Key_Return);
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
        {longScript.substr(0, kMaxScript - 1) + "\xc3",
         longScript.substr(0, kMaxScript - 1) + "\xc3"},
        {"", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(Run(c.script, [](Screen&) {}), c.stored);
    world->currentObject = 9999;
    EXPECT_EQ(Run("kept",
                  [](Screen& s) {
                      EXPECT_EQ(s.Text(), "");
                      s.Type("lost");
                  }),
              "kept");
}

TEST_F(Programming, CancelAsks) {
    hero->script = "old";
    person.OnDialog([this](QDialog& dialog) {
        Screen s(dialog);
        s.Type("new");
        person.AnswerBox("Discard Changes ?", false);
        s.Key(Qt::Key_Escape);
        EXPECT_TRUE(dialog.isVisible());
        person.AnswerBox("Discard Changes ?", false);
        dialog.close();
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(s.Text(), "newold");
        person.AnswerBox("Discard Changes ?", true);
        s.Click(platform::kIdCancel);
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
