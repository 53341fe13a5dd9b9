// One kind of node serves as root, board and object; what it is follows from its depth alone, so
// that anything can be exported, copied and hung elsewhere without a change of type.
//
// The grid is the truth and the surface its picture: PutTile keeps both, whoever writes `tiles`
// past it owes a RedrawTiles. Dinterface, the readers and the copiers of nodes may use this face;
// other code asks for handles, because a pointer kept over an event may be dangling.
//
// All sizes and positions are tiles; pixels occur only in `vSurf`, 8 to a tile.
#pragma once

#include "engine/bitmap.h"
#include "engine/dtile.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Largest grid: cells a side, and cells in all, so that the surface's pixels can be counted
/// in an int.
inline constexpr int kMaxGridSide = 32767;
inline constexpr std::int64_t kMaxGridCells = INT32_MAX / (kTileSize * kTileSize);

inline constexpr std::string_view kRootName = "world_tree";

class Dfont;

class Dobject {
public:
    using Children = std::vector<std::unique_ptr<Dobject>>;

    explicit Dobject(std::int32_t ownId = 0);
    Dobject(const Dobject&) = delete;
    Dobject& operator=(const Dobject&) = delete;
    ~Dobject();

    const std::int32_t id;  ///< unique but for 0, which the roots have

    std::string name;    ///< not unique
    std::string script;  ///< lines joined by a line feed
    // What the compositor asks of a node that does not show lies side by side in memory.
    std::int32_t drawChildren = 1;  ///< 0: the compositor does not descend
    std::int32_t hidden = 0;        ///< not 0: the compositor skips the node
    std::int32_t viewx = 0;         ///< first grid column shown
    std::int32_t viewy = 0;         ///< first grid row shown
    std::int32_t vieww = 0;         ///< viewport width
    std::int32_t viewh = 0;         ///< viewport height
    std::int32_t posx = 0;         ///< column of the parent's grid where the viewport's corner lies
    std::int32_t posy = 0;         ///< row of the parent's grid; both may be negative
    std::int32_t width = 0;        ///< grid width
    std::int32_t height = 0;       ///< grid height
    std::int32_t posz = 0;         ///< decides the order among siblings
    std::int32_t evieww = 0;       ///< while expanded the real `vieww`, else 0
    std::int32_t eviewh = 0;       ///< while expanded the real `viewh`
    Bitmap vSurf;                  ///< shows `tiles`; null until Create, or see Surface
    std::vector<Dtile> tiles;      ///< the cell at (x, y) has the index y * width + x
    std::vector<Dtile> undoTiles;  ///< snapshot of `tiles`, empty until the first BackupTiles
    Dobject* parent = nullptr;     ///< null at the root
    /// At the top of a tree, borrowed: what all of it is drawn with. Null draws nothing.
    const Dfont* font = nullptr;
    /// In drawing order, the first in front: `posz` ascends under the root and descends
    /// everywhere else. What comes later with the same `posz` goes behind. Who has had a child
    /// put in by the functions below and then changes this, or its `posz`, past them owes a
    /// ForgetOrder.
    Children children;

    /// Whether the children are boards: those of the root, and of any node that is called like it.
    bool HoldsBoards() const { return name == kRootName; }
    bool IsBoard() const { return parent && parent->HoldsBoards(); }

    /// Shows the whole grid and remembers the viewport; Collapse gives it back. Nothing when the
    /// node is so already.
    void Expand();
    void Collapse();

    /// Names the node and makes its grid of w by h empty cells with a viewport over all of it.
    /// Position, scroll, z and expansion are not touched. A negative size counts as 0. False,
    /// reported through Fatal and with nothing changed, when the grid is too large.
    bool Create(const std::string& newName, int w, int h);
    /// Empties the node but for its script, id, parent, children and flags.
    void Destroy();
    /// Another grid size. Contents stay where old and new overlap, other cells are kBlankTile;
    /// the viewport is cut to the grid, its scroll stays. Sizes and failure as for Create.
    bool Resize(int w, int h);

    /// A new child in descending or (`_Back`, under the root) ascending z order, with that id
    /// and without a grid: Create follows.
    Dobject* Spawn(std::int32_t childId, std::int32_t z);
    Dobject* Spawn_Back(std::int32_t childId, std::int32_t z);
    /// Deletes a child with its subtree; nothing for any other node.
    void Erase(const Dobject& child);
    void EraseAll();
    /// Inserts a node by its z; its `parent` is the caller's to set.
    void Link(std::unique_ptr<Dobject> child);
    void Link_Back(std::unique_ptr<Dobject> child);
    /// Takes a child out of the list and hands it over; null for any other node.
    std::unique_ptr<Dobject> UnLink(const Dobject& child);
    /// The order of the children's z is looked at anew when the next one is put in.
    void ForgetOrder() { orderKnown = 0; }

    /// The cell, or null outside the grid.
    Dtile* GetTile(int x, int y);
    /// Writes a cell and draws it; kKeepField leaves a field as it is. Nothing outside the grid.
    void PutTile(int x, int y, int chr, int fg, int bg, int attrib);
    /// The font of the tree that the node is part of.
    const Dfont* Font() const;
    /// Draws all tiles of this node and of its whole subtree into those surfaces that exist.
    void RedrawTiles();
    /// `vSurf`, borrowed. A node that was read from a file or copied gets its surface here, when
    /// it is first shown or written: most boards of a large game are never looked at. Null at
    /// the root and when there is no memory.
    BITMAP* Surface();

    /// One level of undo. Restoring without a backup gives empty cells. The snapshot has no size
    /// of its own: taken before a Resize, it comes back with its rows shifted.
    void BackupTiles();
    void RestoreTiles();

    /// Adds or takes off the node's origin: the world position of its viewport's corner. A
    /// world point lies in the node's grid at world - origin + (viewx, viewy).
    void AddOffset(int& x, int& y) const;
    void SubOffset(int& x, int& y) const;

    /// The compositor; see compositor.h for what a target is. On the root: all children, front
    /// to back, into the whole target.
    void DrawChildren(BITMAP* target);
    /// One node with its children, in tiles of the target: (ox, oy) is where the parent's grid
    /// begins, limitW by limitH how large it is, and the clip rectangle what can be seen of it.
    void Draw(BITMAP* target, int ox, int oy, int limitW, int limitH, int clipX, int clipY,
              int clipW, int clipH);

private:
    void DrawTiles();
    Dobject* Insert(Children::iterator before, std::unique_ptr<Dobject> child);
    Children::iterator PlaceFor(std::int32_t z, bool ascending);
    Children::iterator Find(const Dobject& child);
    Dobject* SpawnAt(Children::iterator before, std::int32_t childId, std::int32_t z);

    int orderKnown = 0;  ///< 1 when `posz` is known to ascend along the children, -1 to descend
};

/// The node with that id, in whatever tree; null for 0 and when there is none.
Dobject* FindNode(std::int32_t id);

/// Counts up whenever a node is made, deleted, or put elsewhere in a tree.
extern std::uint64_t vTreeChanges;

/// How often a node was to be shown and there was no memory for its surface: a picture that was
/// drawn meanwhile is not whole.
extern int vMissingSurfaces;

/// True when the surface and the cells of such a grid can be asked for at all.
bool IsGridSize(std::int64_t w, std::int64_t h);
