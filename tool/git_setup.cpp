// Teaching a git repository to compare and join games: in its own configuration, and in the
// attributes file that its authors share.

#include "engine/program_folder.h"
#include "tool/commands.h"

#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

namespace {

std::string InQuotes(const std::string& word) {
    std::string quoted = "'";
    for (const char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

// What git writes, without the last line end; false when it fails.
bool Git(const std::string& arguments, std::string& output) {
    output.clear();
    FILE* pipe = popen(("git " + arguments).c_str(), "r");
    if (!pipe) return false;
    char piece[4096];
    for (std::size_t got; (got = std::fread(piece, 1, sizeof piece, pipe)) > 0;)
        output.append(piece, got);
    if (output.ends_with('\n')) output.pop_back();
    const int status = pclose(pipe);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// The name alone where the path leads here, as in an installation.
std::string Program() {
    const std::string here = ProgramFolder() + "/quilt-tool";
    std::istringstream folders(std::getenv("PATH") ? std::getenv("PATH") : "");
    std::error_code error;
    for (std::string folder; std::getline(folders, folder, ':');)
        if (std::filesystem::equivalent(folder + "/quilt-tool", here, error)) return "quilt-tool";
    return InQuotes(here);
}

bool HasLine(const std::string& text, const std::string& wanted) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (line == wanted) return true;
    return false;
}

}  // namespace

int GitSetup(bool print) {
    std::string top;
    if (!Git("rev-parse --show-toplevel", top)) return Complain(".", "it is in no git repository");
    const std::string program = Program();
    const std::pair<const char*, std::string> settings[] = {
        {"diff.quilt.command", program + " diff --git"},
        {"diff.quilt.textconv", program + " cat --rows"},
        {"diff.quilt.xfuncname", "^~ob .*$"},
        {"merge.quilt.name", "games of QUILT!"},
        {"merge.quilt.driver", program + " merge --name %P -o %A %O %A %B"},
    };
    bool good = true;
    std::string output;
    for (const auto& [name, value] : settings) {
        if (Git(std::string("config --local --get ") + name, output) && output == value) continue;
        std::cout << "git config " << name << " " << InQuotes(value) << '\n';
        if (!print && !Git(std::string("config --local ") + name + " " + InQuotes(value), output))
            good = false;
    }
    const std::string path = top + "/.gitattributes";
    std::ifstream in(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(in), {}};
    const std::size_t before = text.size();
    for (const char* line : {"*.zqlt diff=quilt merge=quilt", "*.zobj diff=quilt merge=quilt"}) {
        if (HasLine(text, line)) continue;
        if (!text.empty() && !text.ends_with('\n')) text += '\n';
        text += std::string(line) + "\n";
        std::cout << ".gitattributes: " << line << '\n';
    }
    if (!good) Complain(top, "git could not write its configuration");
    if (!print && text.size() > before) good &= WriteBytes(path, text);
    if (!std::cout.flush()) return Complain("standard output", "it cannot be written");
    return good ? kGood : kBadFile;
}
