// quilt-sample: paints the sample game. To be started in the program's folder, where Library/
// stands.

#include "library-src/dated_archive.h"
#include "library-src/sample/boards.h"
#include "library-src/sample/sprites.h"

#include "engine/game_archive.h"
#include "engine/report.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace {

// The archive as the editor composes it, entry by entry.
std::vector<ArchiveEntry> Unpack(const std::string& archive) {
    const std::unique_ptr<ZipReader> zip = ZipReader::InMemory(archive);
    std::vector<ArchiveEntry> entries;
    for (const char* name : {"font.hdr", "font.raw", "game.qlt", "res.dat"}) {
        ArchiveEntry entry{name, {}};
        if (!zip->OpenEntry(name)) return {};
        char buffer[4096];
        for (int count; (count = zip->Read(buffer, sizeof buffer)) > 0;)
            entry.bytes.append(buffer, static_cast<std::size_t>(count));
        if (!zip->CloseEntry()) return {};
        entries.push_back(entry);
    }
    return entries;
}

bool Write(const std::filesystem::path& file) {
    std::string why;
    const std::string archive = ComposeGame(vWorld->GetFont()->Sheet(), vWorld->Root(),
                                            vWorld->videoMode, vWorld->windowed, why);
    const std::vector<ArchiveEntry> entries = Unpack(archive);
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    if (!entries.empty() && WriteDatedArchive(file, entries)) return true;
    std::fprintf(stderr, "%s: cannot be written %s\n", file.c_str(), why.c_str());
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: quilt-sample GAME.zqlt SPRITES.txt\n", stderr);
        return 2;
    }
    install_allegro(SYSTEM_NONE, &errno, nullptr);
    set_color_depth(8);
    StartTrace(nullptr);
    // The same picture at every build: the fades draw from this.
    std::srand(1);
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
    vWorld->ClickTreeList(0, 15);
    return problems.Empty() && painter.Good() && Write(argv[1]) ? 0 : 1;
}
