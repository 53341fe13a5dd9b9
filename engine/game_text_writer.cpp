#include "engine/game_text.h"

#include "engine/number_writer.h"

#include <algorithm>

namespace {

std::string WrittenName(const Dobject& node) {
    std::string name = node.name.empty() ? "_" : node.name;
    std::replace_if(
        name.begin(), name.end(),
        [](char c) { return TextScanner::IsSpace(static_cast<unsigned char>(c)); }, '_');
    return name;
}

void WriteFour(std::ostream& out, std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d) {
    out << a << ' ' << b << ' ' << c << ' ' << d << '\n';
}

void WriteRun(NumberWriter& numbers, const Dtile& tile, std::int64_t length, char last) {
    // A lone cell whose glyph number reads as negative would pass for a run's length.
    if (length > 1 || Signed(tile.chr) < 0) numbers.Put(-length, ' ');
    numbers.Put(Signed(tile.chr), ' ');
    numbers.Put(Signed(tile.fg), ' ');
    numbers.Put(Signed(tile.bg), ' ');
    numbers.Put(Signed(tile.attrib), last);
}

// A grid without cells has no line at all: a reader takes none for it.
void WriteGrid(const Dobject& node, std::ostream& out, bool rows) {
    NumberWriter numbers(out);
    const Dtile* cell = node.tiles.data();
    const Dtile* const end = cell + node.tiles.size();
    while (cell != end) {
        const Dtile* const stop = rows ? cell + node.width : end;
        while (cell != stop) {
            const Dtile* run = cell;
            while (cell != stop && *cell == *run) ++cell;
            WriteRun(numbers, *run, cell - run, rows || cell == end ? '\n' : ' ');
        }
        if (cell != end) numbers.Put('\n');
    }
    numbers.Flush();
}

void WriteScript(const std::string& script, std::ostream& out) {
    out << "~pb\n" << script;
    if (!script.empty() && script.back() != '\n') out << '\n';
    out << "~pe\n";
}

}  // namespace

void CollapseTree(Dobject& node) {
    node.Collapse();
    for (const auto& child : node.children) CollapseTree(*child);
}

void WriteCollapsed(const Dobject& node, std::ostream& out, bool rows, bool placed) {
    if (out) {
        const bool expanded = node.evieww != 0;
        out << "~ob " << WrittenName(node) << ' ' << node.posz << '\n';
        WriteFour(out, placed ? node.posx : 0, placed ? node.posy : 0, node.width, node.height);
        WriteFour(out, node.viewx, node.viewy, expanded ? node.evieww : node.vieww,
                  expanded ? node.eviewh : node.viewh);
        WriteGrid(node, out, rows);
        WriteScript(node.script, out);
    }
    for (const auto& child : node.children) WriteCollapsed(*child, out, rows);
    out << "~oe\n";
}

void WriteObject(Dobject& node, std::ostream& out, bool rows) {
    CollapseTree(node);
    WriteCollapsed(node, out, rows);
}

void WriteWorld(const Dobject& root, std::ostream& out, bool rows) {
    out << "~endvars\n~endimports\n";
    for (const auto& board : root.children) WriteCollapsed(*board, out, rows);
}
