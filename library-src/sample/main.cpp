// quilt-sample: paints the sample game. To be started in the program's folder, where Library/
// stands.

#include "library-src/sample/boards.h"
#include "library-src/sample/sprites.h"

#include "engine/game_archive.h"
#include "engine/random.h"
#include "engine/replace_file.h"
#include "engine/report.h"

#include <cstdio>
#include <cstdlib>

namespace {

bool Write(const std::filesystem::path& file) {
    std::string why;
    const std::string archive = ComposeGame(vWorld->GetFont()->Sheet(), vWorld->Root(),
                                            vWorld->videoMode, vWorld->windowed, why);
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    if (!archive.empty() && ReplaceFile(file, archive, why)) return true;
    std::fprintf(stderr, "%s: cannot be written %s\n", file.c_str(), why.c_str());
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: quilt-sample GAME.zqlt SPRITES.txt\n", stderr);
        return 2;
    }
    StartAllegro();
    StartTrace(nullptr);
    // The same picture at every build: the fades draw from this.
    vRandom.Seed(1);
    Dinterface world;
    Problems problems;
    DrawSprites(argv[2], problems);
    for (const std::string& problem : problems.List())
        std::fprintf(stderr, "%s\n", problem.c_str());
    Painter painter;
    PaintTitle(painter);
    PaintHarbour(painter);
    PaintRoom(painter);
    PaintCave(painter);
    vWorld->SelectTreeRow(0);
    return problems.Empty() && painter.Good() && Write(argv[1]) ? 0 : 1;
}
