// Scripts typed into the Programming dialog key by key.

#include "editor/script/do_programming.h"
#include "tests/gui/main_window.h"

#include <QAbstractButton>

namespace {

void CollectScripts(const Dobject& node, std::vector<std::string>& scripts) {
    if (!node.script.empty()) scripts.push_back(node.script);
    for (const auto& child : node.children) CollectScripts(*child, scripts);
}

}  // namespace

// Whatever lists open meanwhile.
TEST_F(MainWindow, ScriptsComeOutAsTheyAreTyped) {
    Start("Library/samples/lamplight.zqlt");
    std::vector<std::string> scripts{"Mrrp.\nNext line", "#put n .self hello\nabc", ".self\n.x ",
                                     "#end\n#endgame\n#xyz\tx\n#if .n.s.w\n", "Wait ...\nno."};
    CollectScripts(vWorld->Root(), scripts);
    EXPECT_GT(scripts.size(), 15u);
    for (const std::string& script : scripts) {
        Board().script.clear();
        person.OnDialog([&](QDialog& dialog) {
            Type(In(dialog, kScriptText), QString::fromStdString(script));
            In<QAbstractButton>(dialog, platform::kIdOk).click();
        });
        DoProgramming().Run();
        EXPECT_EQ(Board().script, script);
    }
}
