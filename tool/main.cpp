// quilt-tool: games on the command line, for version control, build scripts and reviews.

#include "engine/bitmap.h"
#include "engine/report.h"
#include "tool/commands.h"

#include <CLI/CLI.hpp>

namespace {

constexpr int kMaxScale = 64;

struct Call {
    std::string game;
    std::string to;
    std::vector<std::string> games;
    RenderOptions render;
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

void DescribeRest(CLI::App& app, Call& call) {
    CLI::App* cat = app.add_subcommand("cat", "Writes the text of the world to standard output");
    cat->add_option("GAME", call.game, "The game archive")->required();
    CLI::App* repack = app.add_subcommand("repack", "Loads a game and saves it in its plain form");
    repack->add_option("IN", call.game, "The game archive")->required();
    repack->add_option("OUT", call.to, "Where it is saved; may be IN")->required();
    CLI::App* check =
        app.add_subcommand("check", "Checks games, and tells what is suspect in them");
    check->add_option("GAME", call.games, "The game archives")->required();
    check->add_flag("--strict", call.strict, "What is suspect counts as bad");
}

int Run(const CLI::App& app, const Call& call) {
    if (app.got_subcommand("info")) return Info(call.game, call.json);
    if (app.got_subcommand("render")) return Render(call.render);
    if (app.got_subcommand("cat")) return Cat(call.game);
    if (app.got_subcommand("repack")) return Repack(call.game, call.to);
    return Check(call.games, call.strict);
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Looks at and works on games of the tile game kit.", "quilt-tool");
    app.set_version_flag("--version", "quilt-tool " QUILT_VERSION);
    app.require_subcommand(1);
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return "quilt-tool: " + Printable(error.what()) + "\nquilt-tool --help tells more.\n";
    });
    Call call;
    DescribeInfo(app, call);
    DescribeRender(app, call);
    DescribeRest(app, call);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kGood : kWrongCall;
    }
    StartAllegro();
    StartTrace(nullptr);
    return Run(app, call);
}
