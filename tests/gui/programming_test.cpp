// The Programming dialog on the real text control, off screen, driven by keys.

#include "tests/gui/main_window.h"

#include "editor/script/do_programming.h"
#include "engine/command_table.h"
#include "platform/qt/code_widget.h"

#include <QListWidget>
#include <QScrollBar>

namespace {

using Base = QsciScintillaBase;

struct Programming : MainWindow {
    Programming() { Start(); }
    /// Opens the dialog on the board; what `act` leaves open is ended by OK. Gives the script then
    /// stored.
    std::string Run(const std::string& script, const std::function<void()>& act) {
        Board().script = script;
        person.OnDialog([&](QDialog& opened) {
            dialog = &opened;
            code = &In<CodeWidget>(opened, kScriptText);
            act();
            if (opened.isVisible()) PressOk(opened);
        });
        DoProgramming().Run();
        return Board().script;
    }
    void Do(const std::string& keys) { Type(*code, QString::fromStdString(keys)); }
    /// The words of the open list, "tip", or nothing.
    std::string Open() const {
        if (code->Send(Base::SCI_CALLTIPACTIVE, 0, 0)) return "tip";
        std::string words;
        // A list that has closed goes first.
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (QWidget* shown : QApplication::topLevelWidgets())
            if (const auto* found = qobject_cast<QListWidget*>(shown); found && shown->isVisible())
                for (int i = 0; i < found->count(); ++i)
                    words += found->item(i)->text().toStdString() + " ";
        return words;
    }

    QDialog* dialog = nullptr;
    CodeWidget* code = nullptr;
};

}  // namespace

TEST_F(Programming, ListsAndTipsOpenWhileItIsTyped) {
    Board().name = "Hero";
    for (const char* name : {"Hand", "Hand", "top", "what?3"})
        Board().Spawn(vWorld->TakeId(), 0)->Create(name, 1, 1);
    vWorld->Root().Spawn(vWorld->TakeId(), 0)->Create("Rock", 1, 1);
    const std::string selectors = ".all .contained .e .inside .mask .n .parent .s .self .top .w ";
    // Names as they are, the equal ones and those of selectors, too.
    const std::string inHero =
        ".Hand .Hand .all .contained .e .inside .mask .n .parent .s .self .top .top .w .what?3 ";
    const struct {
        const char* typed;
        std::string open;  ///< the whole list, or how it begins
    } rows[] = {
        {"#", "#attach #become #bind "},
        {"#put n .self#xyz", "#attach "},  // nothing matches, and it stays
        {"#xyz\x1b", ""},                  // Escape closes the list and no more
        {"' a comment #", ""},
        {"#put.", "#attach "},  // the token ends where a blank stands
        {"x\n#Walk ", "tip"},
        {"#walk    ", "tip"},  // as far as the third blank behind it
        {"#walk     ", ""},
        {"#walk \x1b", ""},
        {"#put n .", ".Hero .Rock " + selectors},
        {"#put n .self.", inHero},
        {"#put\t.self.", selectors},  // a tab ends no token
        {" .", selectors},            // the text's first character belongs to it
    };
    for (const auto& row : rows)
        Run("", [&] {
            Do(row.typed);
            EXPECT_EQ(Open().substr(0, row.open.size() + !row.open.starts_with('#')), row.open)
                << row.typed;
            EXPECT_TRUE(dialog->isVisible());
        });
    // Which style a mark opens its list behind.
    std::string opened;
    for (auto text : {"#a", "' b", ":c", "#d 1", "#d .e", "#d \"f", "#d g", "h", "#d (", "#"})
        for (const char* mark : {"#", "."})
            Run(text, [&] {
                Press(*code, Qt::Key_End);
                Do(mark);
                opened += Open().empty() ? '-' : *mark;
            });
    EXPECT_EQ(opened, "#---#-#-#.--#.--#.#-");
    EXPECT_EQ(LookUpCallTip("#ZAP "), "<label name>");
    // What is only begun is completed: not div, the list goes by the letters.
    EXPECT_EQ(Run("", [this] { Do("#wa\n\n#di\t"); }), "#walk\n#die");
    Run("", [this] {
        dialog->move(-5000, -5000);
        Do(".");
        EXPECT_EQ(Open(), "") << "the library cannot show it off the screen";
    });
}

// Whatever lists open meanwhile.
TEST_F(Programming, ScriptsComeOutAsTheyAreTyped) {
    std::vector<std::string> scripts{"#put n .self hello\nabc", ".self\n.x ",
                                     "#end\n#endgame\n#xyz\tx\n#if .n.s.w\n", "t\xc3\xa4wo ...\n"};
    Reopen("Library/samples/lamplight.zqlt");
    for (const auto& board : vWorld->Root().children)
        for (const auto& child : board->children) scripts.push_back(child->script);
    EXPECT_GT(scripts.size(), 10u);
    for (const std::string& script : scripts) EXPECT_EQ(Run("", [&] { Do(script); }), script);
}

TEST_F(Programming, KeysEditTheTextAndCancelAsks) {
    const auto work = [this] {
        person.ChooseInMenu({vFontFaces.back()});
        In<QPushButton>(*dialog, kChangeFont).click();
        char face[100] = "";
        code->Send(Base::SCI_STYLEGETFONT, 8, reinterpret_cast<std::intptr_t>(face));
        EXPECT_EQ(face, vFontFaces.back());
        const auto margin = code->Send(Base::SCI_GETMARGINWIDTHN, 0, 0);
        EXPECT_GT(margin, 20) << "the line numbers' room";
        EXPECT_EQ(code->Send(Base::SCI_STYLEGETFORE, Base::STYLE_LINENUMBER, 0), 0x6E6E6E);
        for (const int turn : {180, 60, -120, 120})
            TurnWheel(*code->viewport(), {9, 9}, turn, Qt::ControlModifier);
        EXPECT_EQ(code->Send(Base::SCI_GETZOOM, 0, 0), 2);
        EXPECT_GT(code->Send(Base::SCI_GETMARGINWIDTHN, 0, 0), margin);
        code->setFocus();
        Press(*code, Qt::Key_End, Qt::ControlModifier);
        Do("\ntwo");
        // No further back than the script as it was.
        for (int i = 0; i < 5; ++i) Press(*code, Qt::Key_Z, Qt::ControlModifier);
        Press(*code, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        Do("\t");
        Press(*code, Qt::Key_Tab, Qt::ControlModifier);
        EXPECT_FALSE(code->hasFocus()) << "Ctrl+Tab leaves the editor";
    };
    EXPECT_EQ(Run("one", work), "one\ntwo\t");
    const auto leave = [this] {
        Do("new");
        for (const bool sure : {false, true}) {
            person.AnswerBox("Discard Changes ?", sure);
            sure ? void(dialog->close()) : Press(In(*dialog, kChangeFont), Qt::Key_Escape);
            EXPECT_NE(dialog->isVisible(), sure);
        }
    };
    EXPECT_EQ(Run("old", leave), "old");
}

TEST_F(Programming, StoresTheTextByteForByte) {
    std::string most(70'000, 'x');
    for (std::size_t end = 5000; end < kMaxScript; end += 5000) most[end] = '\n';
    const std::string cut = most.substr(0, kMaxScript - 1);
    const std::pair<std::string, std::string> cases[] = {
        {"#a\r\n#b\rc\n", "#a\n#b\nc\n"},
        {"\xff bad \xc3", "\xff bad \xc3"},
        {cut.substr(1) + "\xc3\xa4" + most, cut.substr(1) + "\xc3\xa4"},
        {cut + "\xc3\xa4", cut},
        {"", ""},
    };
    // A bar below when a line is too long, and only then.
    const auto bar = [this] {
        return code->horizontalScrollBar()->isVisible() == (Board().script.size() > 60'000);
    };
    for (const auto& [script, stored] : cases)
        EXPECT_EQ(Run(script, [&] { EXPECT_TRUE(QTest::qWaitFor(bar)); }), stored);
    // What cannot be saved is selected, and the dialog stays.
    const auto refused = [this] {
        Press(*code, Qt::Key_End, Qt::ControlModifier);
        Do("~pe");
        person.AnswerBox("line 2 begins with ~p");
        PressOk(*dialog);
        EXPECT_TRUE(dialog->isVisible() && dialog->focusWidget() == code);
        Do("ok");
    };
    EXPECT_EQ(Run("fine\n", refused), "fine\nok");
}
