// The text of a game: its header, and one block of text for each node of the world.
//
// docs/formats.md describes the format. Reading takes hostile text: nothing in it is believed
// before the text behind it has been seen, and reading stops at the first thing that is not in
// the format, with a reason and a line. Nodes are read with their tiles but without surfaces,
// so that a world can be read, checked and thrown away without a tile font; a node makes its own
// surface when it is first shown.
#pragma once

#include "engine/dobject.h"
#include "engine/known_cells.h"
#include "engine/text_scanner.h"

#include <cstdint>
#include <functional>
#include <ostream>
#include <streambuf>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

/// Deepest nesting of objects, counted from a board (1).
inline constexpr int kMaxNesting = 1000;
/// Longest line of a script in a file, without its line end.
inline constexpr std::size_t kMaxScriptLine = 9998;
/// Longest name in a file.
inline constexpr std::size_t kMaxName = TextScanner::kMaxWord;
/// Most cells of all nodes of a world together.
inline constexpr std::int64_t kMaxWorldCells = kMaxGridCells;
/// Most bytes of all names and scripts together, each node counted as kNodeBytes more.
inline constexpr std::int64_t kMaxWorldText = 268'435'456;
inline constexpr std::int64_t kNodeBytes = 512;

/// What a reader met that is in the format but that its author will not have meant, and where
/// things stand in the text. For tools that inspect a game.
struct TextRemarks {
    struct Remark {
        int line;
        std::string text;
    };
    std::vector<Remark> remarks;
    /// The line on which each node's block begins.
    std::unordered_map<const Dobject*, int> lines;
};

/// Where the nodes that are read get their ids, in the order of the text.
using IdSource = std::function<std::int32_t()>;

class GameTextReader {
public:
    GameTextReader(std::streambuf& text, IdSource source) : scanner(text), ids(std::move(source)) {}

    /// Where to note what is suspect; null, the default, for nowhere.
    void SetRemarks(TextRemarks* to) { remarks = to; }

    /// The two words of the header, then boards under `root` as long as "~ob" follows. False
    /// with some of them read when the text is not in the format.
    bool ReadWorld(Dobject& root);
    /// One block into an empty node, whose id, parent and place among its siblings stay; the
    /// text stands behind "~ob". False with a part of it read.
    bool ReadInto(Dobject& node);
    /// Takes the next word; true when it is "~ob".
    bool TakeObjectWord();

    /// After one of the above gave false.
    const std::string& Reason() const { return reason; }
    /// The node whose numbers, grid or script the text did not hold all of, or null: all others
    /// that were read are whole but for what may have followed below them, and not sorted.
    Dobject* CutNode() const { return cut; }
    int Line() const { return faultLine; }

private:
    class GridCells;

    template <typename Reading>
    bool Guarded(Reading reading);
    bool ReadBoards(Dobject& root);
    bool ReadChild(Dobject& parent);
    bool ReadBlock(Dobject& node, const Dobject* spawnedBy);
    bool ReadHead(Dobject& node, const Dobject* spawnedBy);
    bool ReadGrid(Dobject& node);
    bool ReadRecord(GridCells& grid);
    bool AddRecord(GridCells& grid, const std::int32_t* numbers);
    std::ptrdiff_t TakeKnown(GridCells& grid, KnownCells::Text& text);
    bool ReadAlike(GridCells& grid);
    bool ReadStrange(GridCells& grid);
    bool ReadScriptStart(Dobject& node);
    bool ReadScript(Dobject& node);
    bool ReadChildren(Dobject& node);
    bool ReadWord(const std::string& where);
    bool ReadNumber(const Dobject& node, const char* what, std::int32_t& number);
    bool Hold(std::size_t bytes);
    void Remark(int at, const std::string& text);
    bool Fail(const std::string& why);
    bool GridFault(const GridCells& grid, const std::string& why = {});

    TextScanner scanner;
    IdSource ids;
    TextRemarks* remarks = nullptr;
    std::string reason;
    int faultLine = 0;
    Dobject* cut = nullptr;
    int depth = 0;
    int missingStarts = 0;
    std::int64_t worldCells = 0;
    std::int64_t worldText = 0;
    TextScanner::Peeked peeked;
    KnownCells known;
    std::string word;  ///< kept for its memory
    std::string line;
};

/// What the surfaces that the subtree has not got yet will take, in bytes.
std::int64_t SurfaceBytes(const Dobject& node);

/// One block for a node, with its children nested in it. Collapses every node that is expanded,
/// in memory too, and does so even when the stream fails. With `rows` the runs of equal cells end
/// with each row of the grid, and each stands on a line, with an empty line between rows: more
/// text, in which one changed cell is one changed line. It reads the same.
void WriteObject(Dobject& node, std::ostream& out, bool rows = false);

/// The same of a node that stays as it is. Without `placed` its own position is written as 0, 0.
void WriteCollapsed(const Dobject& node, std::ostream& out, bool rows = false, bool placed = true);

/// Ends the expansion of the node and of all below it.
void CollapseTree(Dobject& node);

/// The whole text: the header, and a block for each child of the root, collapsed.
void WriteWorld(const Dobject& root, std::ostream& out, bool rows = false);

/// The order in which siblings stand, after any change of z; equals keep theirs.
void SortByZ(Dobject& parent);

/// A name cut to what a message can hold, in quotation marks.
std::string Quoted(const std::string& name);
