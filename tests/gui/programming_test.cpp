// The Programming dialog on the real text control, off screen, driven by keys.

#include "tests/gui/main_window.h"

#include "editor/script/container_styling.h"
#include "editor/script/do_programming.h"
#include "engine/script_styler.h"
#include "platform/qt/code_widget.h"

#include <QListWidget>
#include <random>

namespace {

using Base = QsciScintillaBase;

class Programming : public MainWindow {
protected:
    Programming() {
        Start();
        vWorld->Root().EraseAll();
        hero = &Add(Add(vWorld->Root(), "Plain"), "Hero");
        Add(*hero->parent, "Rock");
        for (const char* name : {"Hand", "Hand", "top", "what?3"}) Add(*hero, name);
        vWorld->currentObject = hero->id;
    }
    static Dobject& Add(Dobject& parent, const char* name) {
        Dobject& node = *parent.Spawn(vWorld->TakeId(), 0);
        node.Create(name, 1, 1);
        return node;
    }
    /// Opens the dialog; what `act` leaves open is ended by OK. Gives the script then stored.
    std::string Run(const std::string& script, const std::function<void()>& act) {
        hero->script = script;
        person.OnDialog([&](QDialog& opened) {
            dialog = &opened;
            code = &In<CodeWidget>(opened, kScriptText);
            act();
            if (opened.isVisible()) PressOk(opened);
        });
        DoProgramming().Run();
        return hero->script;
    }
    std::intptr_t Ask(unsigned message, std::uintptr_t w = 0, std::intptr_t l = 0) const {
        return code->Send(message, w, l);
    }
    void Do(const std::string& keys) { Type(*code, QString::fromStdString(keys)); }
    std::string Text() const {
        std::string text(static_cast<std::size_t>(Ask(Base::SCI_GETLENGTH)) + 1, '\0');
        Ask(Base::SCI_GETTEXT, text.size(), reinterpret_cast<std::intptr_t>(text.data()));
        text.pop_back();
        return text;
    }
    /// The words of the open list, "tip", or nothing.
    std::string Open() const {
        if (Ask(Base::SCI_CALLTIPACTIVE)) return "tip";
        std::string words;
        // A list that has closed goes first.
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (QWidget* shown : QApplication::topLevelWidgets())
            if (const auto* found = qobject_cast<QListWidget*>(shown); found && shown->isVisible())
                for (int i = 0; i < found->count(); ++i)
                    words += found->item(i)->text().toStdString() + " ";
        return words;
    }

    Dobject* hero = nullptr;
    QDialog* dialog = nullptr;
    CodeWidget* code = nullptr;
};

}  // namespace

TEST_F(Programming, ListsAndTipsOpenWhileItIsTyped) {
    const std::string selectors = ".all .contained .e .inside .mask .n .parent .s .self .top .w ";
    // Names as they are, the equal ones and those of selectors, too.
    const std::string inHero =
        ".Hand .Hand .all .contained .e .inside .mask .n .parent .s .self .top .top .w .what?3 ";
    const struct {
        const char* typed;
        const char* text;  ///< null for what was typed
        std::string open;  ///< the whole list, or how it begins
    } rows[] = {
        {"#", nullptr, "#attach #become #bind "},
        {"#wa\n", "#walk", ""},
        {"#wa\n\n#di\t", "#walk\n#die", ""},  // not div: the list goes by the letters
        {"#xyz", nullptr, "#attach "},        // nothing matches, and it stays
        {"#xyz\x1b", "#xyz", ""},             // Escape closes the list and no more
        {"' a comment #", nullptr, ""},
        {"#play \"#", nullptr, "tip"},
        {"x\n#Walk ", nullptr, "tip"},
        {"#walk    ", nullptr, "tip"},  // as far as the third blank behind it
        {"#walk     ", nullptr, ""},
        {"#walk \x1b", "#walk ", ""},
        {".", nullptr, ".Hero .Rock " + selectors},
        {"#put n .", nullptr, ".Hero .Rock " + selectors},
        {"#put n .self.", nullptr, inHero},
        {"#put n .Hero.", nullptr, inHero},
        {"#put\t.self.", nullptr, selectors},  // a tab ends no token
        {" .", nullptr, selectors},            // the text's first character belongs to it
        {"#walk\x1b.", "#walk.", ""},
        {"' .self.", nullptr, ""},
        {"Well now.", nullptr, ""},
    };
    for (const auto& row : rows)
        Run("", [&] {
            EXPECT_TRUE(code->hasFocus());
            Do(row.typed);
            EXPECT_EQ(Text(), row.text ? row.text : row.typed);
            EXPECT_EQ(Open().substr(0, row.open.size() + !row.open.starts_with('#')), row.open)
                << row.typed;
            EXPECT_TRUE(dialog->isVisible());
        });
    Run("", [this] {
        // Off the screen there is no list.
        for (const QPoint& place : {QPoint(-5000, -5000), QPoint(5000, 5000), QPoint(0, 0)}) {
            dialog->move(place);
            Do("\n.");
            EXPECT_EQ(Open().empty(), !place.isNull());
        }
    });
}

// Whatever lists open meanwhile.
TEST_F(Programming, ScriptsComeOutAsTheyAreTyped) {
    std::vector<std::string> scripts{"Mrrp.\nNext line", "#put n .self hello\nabc", ".self\n.x ",
                                     "#end\n#endgame\n#xyz\tx\n#if .n.s.w\n", "t\xc3\xa4wo ...\n"};
    ASSERT_TRUE(app->Document().OnOpenDocument("Library/samples/lamplight.zqlt"));
    hero = &Board();
    const std::function<void(const Dobject&)> collect = [&](const Dobject& node) {
        if (!node.script.empty()) scripts.push_back(node.script);
        for (const auto& child : node.children) collect(*child);
    };
    collect(vWorld->Root());
    EXPECT_GT(scripts.size(), 15u);
    for (const std::string& script : scripts) EXPECT_EQ(Run("", [&] { Do(script); }), script);
}

TEST_F(Programming, KeysEditTheTextAndCancelAsks) {
    EXPECT_EQ(Run("one",
                  [this] {
                      Press(*code, Qt::Key_End, Qt::ControlModifier);
                      Press(*code, Qt::Key_Enter);
                      Do("two");
                      for (int i = 0; i < 5; ++i) Press(*code, Qt::Key_Z, Qt::ControlModifier);
                      EXPECT_EQ(Text(), "one") << "no further back than the script as it was";
                      Press(*code, Qt::Key_Y, Qt::ControlModifier);
                      Press(*code, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
                      Press(*code, Qt::Key_Tab);
                      Press(*code, Qt::Key_Tab, Qt::ControlModifier);
                      EXPECT_FALSE(code->hasFocus()) << "Ctrl+Tab leaves the editor";
                  }),
              "one\ntwo\t");
    EXPECT_EQ(Run("old",
                  [this] {
                      Do("new");
                      for (int way = 0; way < 3; ++way) {
                          person.AnswerBox("Discard Changes ?", way == 2);
                          way == 0   ? Press(*code, Qt::Key_Escape)
                          : way == 1 ? void(dialog->close())
                                     : In<QPushButton>(*dialog, platform::kIdCancel).click();
                          EXPECT_EQ(dialog->isVisible(), way < 2);
                      }
                  }),
              "old");
}

TEST_F(Programming, FontReachesEveryStyle) {
    Run("#walk", [this] {
        person.ChooseInMenu({vFontFaces.back()});
        In<QPushButton>(*dialog, kChangeFont).click();
        EXPECT_EQ(vPlatform->GetProfileString("Font", "Face", ""), vFontFaces.back());
        for (const std::uintptr_t style : {32, 0, 1, 8, 10, 33}) {
            char name[100] = "";
            Ask(Base::SCI_STYLEGETFONT, style, reinterpret_cast<std::intptr_t>(name));
            EXPECT_EQ(name, vFontFaces.back()) << style;
        }
    });
}

TEST_F(Programming, StoresTheTextByteForByte) {
    std::string most(70'000, 'x');
    for (std::size_t end = 5000; end < kMaxScript; end += 5000) most[end] = '\n';
    const std::string cut = most.substr(0, kMaxScript - 1);
    const std::pair<std::string, std::string> cases[] = {
        {"#a\r\n#b\rc\n", "#a\n#b\nc\n"},
        {"\xff bad \xc3", "\xff bad \xc3"},
        {most, cut + "x"},
        {cut + "\xc3\xa4", cut},
        {"", ""},
    };
    for (const auto& [script, stored] : cases) EXPECT_EQ(Run(script, [] {}), stored);
    // What cannot be saved is selected, and the dialog stays.
    Run("fine\n", [this] {
        Press(*code, Qt::Key_End, Qt::ControlModifier);
        Do("~pe");
        person.AnswerBox("line 2 begins with ~p");
        PressOk(*dialog);
        EXPECT_TRUE(dialog->isVisible() && dialog->focusWidget() == code);
        Do("ok");
    });
    EXPECT_EQ(hero->script, "fine\nok");
    vWorld->currentObject = 9999;
    EXPECT_EQ(Run("kept", [this] { Do("lost"); }), "kept");
}

// Puts in and takes out text, and compares the styles up to some place with those of the lines.
TEST_F(Programming, StylesStayRightThroughRandomEdits) {
    // The first once found a line changed behind the place asked for.
    for (const unsigned seed : {434496693u, std::random_device{}()}) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto roll = [&](std::size_t n) { return random() % n; };
        const std::string bytes = "#/?.:@'\" ab1\n\n";
        std::string model;
        Run("", [&] {
            for (int round = 0; round < 2000; ++round) {
                const std::size_t at = roll(model.size() + 1);
                if (roll(3)) {
                    std::string text(1 + roll(12), ' ');
                    for (char& c : text) c = bytes[roll(bytes.size())];
                    Ask(Base::SCI_INSERTTEXT, at, reinterpret_cast<std::intptr_t>(text.c_str()));
                    model.insert(at, text);
                } else {
                    const std::size_t count = std::min(roll(20), model.size() - at);
                    Ask(Base::SCI_DELETERANGE, at, static_cast<std::intptr_t>(count));
                    model.erase(at, count);
                }
                if (roll(3) == 0) continue;
                const std::size_t upTo = roll(2) ? model.size() : roll(model.size() + 1);
                StyleTo(*code, static_cast<std::intptr_t>(upTo));
                std::string wanted, styles;
                while (wanted.size() < upTo) {
                    const std::size_t from = wanted.size(), end = model.find('\n', from);
                    wanted += StyleLine(model.substr(from, std::min(end, model.size()) - from + 1));
                }
                for (std::size_t i = 0; i < upTo; ++i)
                    styles += static_cast<char>(Ask(Base::SCI_GETSTYLEAT, i));
                ASSERT_EQ(styles, wanted.substr(0, upTo)) << model;
            }
        });
    }
}
