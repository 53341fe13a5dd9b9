// quilt-tool: games on the command line, for version control, build scripts and reviews.

#include "engine/bitmap.h"
#include "engine/report.h"
#include "tool/commands.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <cstring>
#include <iostream>
#include <new>
#include <stdexcept>

namespace {

constexpr int kMaxScale = 64;

struct Call {
    std::string game;
    std::string to;
    std::vector<std::string> games;
    RenderOptions render;
    DiffOptions diff;
    MergeOptions merge;
    bool rows = false;
    bool print = false;
    int number = 0;
    bool json = false;
    bool strict = false;
};

void DescribeInfo(CLI::App& app, Call& call) {
    CLI::App* info = app.add_subcommand("info", "Tells what is in a game: font, settings, boards");
    info->add_option("GAME", call.game, "The game archive")->required();
    info->add_flag("--json", call.json, "As one JSON object");
}

void DescribeRender(CLI::App& app, Call& call) {
    CLI::App* render =
        app.add_subcommand("render", "Writes the picture of one board as a PNG file");
    render->add_option("GAME", call.render.game, "The game archive")->required();
    render->add_option("OUT.png", call.render.picture, "The picture to write")->required();
    render->add_option("--board", call.render.board, "Its name; the first board unless given");
    render->add_option("--scale", call.render.scale, "Picture pixels a side for each pixel")
        ->check(CLI::Range(1, kMaxScale));
}

void DescribeDiff(CLI::App& app, Call& call) {
    CLI::App* diff = app.add_subcommand("diff", "Tells what differs between two games or objects");
    diff->add_option("FILES", call.diff.files, "The earlier file and the later one")
        ->required()
        ->expected(2, 9);
    diff->add_flag("--stat", call.diff.stat, "One line for each board or object");
    diff->add_flag("--quiet", call.diff.quiet, "Only by the exit status");
    CLI::Option* json = diff->add_flag("--json", call.diff.json, "As one JSON object");
    CLI::Option* values = diff->add_flag("--values", call.diff.values,
                                         "With --json: all that makes the later of the earlier");
    diff->add_option("--picture", call.diff.picture,
                     "A PNG file, or a folder for a file a board: before, after, and what changed");
    CLI::Option* board =
        diff->add_option("--board", call.diff.board, "Only this board, in text and picture");
    values->needs(json)->excludes(board);
    diff->add_flag("--git", call.diff.git, "The arguments are those that git gives, status 0");
}

void DescribeMerge(CLI::App& app, Call& call) {
    CLI::App* merge = app.add_subcommand("merge", "Joins what two sides made of one game");
    merge->add_option("BASE", call.merge.base, "What both began with")->required();
    merge->add_option("OURS", call.merge.ours, "What one side made of it")->required();
    merge->add_option("THEIRS", call.merge.theirs, "What the other side made of it")->required();
    merge->add_option("-o,--out", call.merge.out, "Where the joined game is saved")->required();
    CLI::Option* theirs = merge->add_flag("--theirs", call.merge.favorTheirs,
                                          "What both changed unlike is theirs, not ours");
    merge->add_flag("--marks", call.merge.marks, "Script lines that clash stay both, with marks")
        ->excludes(theirs);
    merge->add_option("--name", call.merge.name, "What the file is called, for git");
}

void DescribeRest(CLI::App& app, Call& call) {
    CLI::App* cat = app.add_subcommand("cat", "Writes the text of the world to standard output");
    cat->add_option("GAME", call.game, "The game archive, or an object file")->required();
    cat->add_flag("--rows", call.rows, "A line for each run of equal cells in a row of a grid");
    CLI::App* repack = app.add_subcommand("repack", "Loads a game and saves it in its plain form");
    repack->add_option("IN", call.game, "The game archive")->required();
    repack->add_option("OUT", call.to, "Where it is saved; may be IN")->required();
    CLI::App* repair = app.add_subcommand("repair", "Saves what can be read of a damaged archive");
    repair->add_option("BROKEN", call.game, "The damaged archive")->required();
    repair->add_option("OUT", call.to, "Where the rest is saved")->required();
    CLI::App* setup = app.add_subcommand(
        "git-setup", "Teaches the git repository here to compare and join games");
    setup->add_flag("--print", call.print, "Only tell what would be written");
    CLI::App* kept = app.add_subcommand("kept", "Lists the games that the editor has kept");
    kept->add_option("GAME", call.game, "The name of one game; all unless given");
    CLI::Option* restore = kept->add_option_function<std::vector<std::string>>(
        "--restore",
        [&call](const std::vector<std::string>& words) {
            if (!CLI::detail::lexical_cast(words[0], call.number))
                throw CLI::ValidationError("--restore", "N is a number of the list");
            call.to = words[1];
        },
        "Writes the game with that number of the list to a file");
    restore->type_name("N FILE")->expected(2);
    CLI::App* check =
        app.add_subcommand("check", "Checks games, and tells what is suspect in them");
    check->add_option("GAME", call.games, "The game archives")->required();
    check->add_flag("--strict", call.strict, "What is suspect counts as bad");
}

int Run(const CLI::App& app, const Call& call) {
    if (app.got_subcommand("info")) return Info(call.game, call.json);
    if (app.got_subcommand("render")) return Render(call.render);
    if (app.got_subcommand("cat")) return Cat(call.game, call.rows);
    if (app.got_subcommand("diff")) return Diff(call.diff);
    if (app.got_subcommand("merge")) return Merge(call.merge);
    if (app.got_subcommand("repair")) return Repair(call.game, call.to);
    if (app.got_subcommand("git-setup")) return GitSetup(call.print);
    if (app.got_subcommand("kept")) return Kept(call.game, call.number, call.to);
    if (app.got_subcommand("repack")) return Repack(call.game, call.to);
    return Check(call.games, call.strict);
}

int Main(int argc, char** argv) {
    CLI::App app("Looks at and works on games of the tile game kit.", "quilt-tool");
    app.set_version_flag("--version", "quilt-tool " QUILT_VERSION);
    app.require_subcommand(1);
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return "quilt-tool: " + Printable(error.what()) + "\nquilt-tool --help tells more.\n";
    });
    Call call;
    DescribeInfo(app, call);
    DescribeRender(app, call);
    DescribeDiff(app, call);
    DescribeMerge(app, call);
    DescribeRest(app, call);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (app.exit(error) != 0) return kWrongCall;
        return std::cout.flush() ? kGood : Complain("standard output", "it cannot be written");
    }
    if (!StartAllegro()) throw std::bad_alloc();
    StartTrace(nullptr);
    return Run(app, call);
}

// Of these the status 1 says something else.
bool Compares(int argc, char** argv) {
    return argc > 1 && (std::strcmp(argv[1], "diff") == 0 || std::strcmp(argv[1], "merge") == 0);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Main(argc, argv);
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    // Without memory of its own.
    std::fputs("quilt-tool: there is not enough memory\n", stderr);
    return Compares(argc, argv) ? kTrouble : kBadFile;
}
