#include "docs/screens/album.h"

#include "editor/script/do_programming.h"
#include "tests/support/hands/hands.h"

namespace {

// A script with a word of every colour.
constexpr const char* kScript =
    "@keeper\n"
    "' Walks up and down the quay until somebody comes.\n"
    "#char 128 254 0 1\n"
    "#collide normal\n"
    "/w/w/w?e/e/e/e?w\n"
    "#rand luck 10\n"
    "#ifex luck >= 7 #play \"tc-e-g\"\n"
    "#restart\n"
    ":touch\n"
    "Good evening. My lamp is dark and its oil is gone.\n"
    "The cave is no place to go without a light. Take mine.\n"
    "#put n 12 .self.lantern\n"
    "#light 6 32 0 255\n"
    "#write 4 1 \"Thank you\"\n"
    "#end\n";
constexpr const char* kShort = "@Harbour\n#fadein\n:touch\nGood evening.\n";

struct Scene {
    const char* file;
    const char* script;
    const char* typed;  ///< at the end of the script
};
constexpr Scene kScenes[] = {
    {"script-colors.png", kScript, ""},
    {"script-list.png", kShort, "#put n .self."},
    {"script-tip.png", kShort, "#walk "},
};

}  // namespace

void TakeScripts(Studio& studio) {
    studio.Select("Harbour");
    const HandleGuard board(vWorld->GetCurrentObject());
    for (const Scene& scene : kScenes) {
        vWorld->SetScript(board, scene.script);
        studio.camera.TakeDialog(
            scene.file, [] { DoProgramming().Run(); },
            [&](QDialog& dialog) {
                auto* code = dialog.findChild<QWidget*>(QString::number(kScriptText));
                Press(*code, Qt::Key_End, Qt::ControlModifier);
                Type(*code, QString::fromUtf8(scene.typed));
            });
    }
}
