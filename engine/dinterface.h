// The face of the engine: all that the editor and the tool do with a world goes through `vWorld`.
//
// A handle is good for one event, an id for as long as its node lives; pointers to nodes stay in
// here, so that deleting a node cannot leave one behind. An accessor given a bad handle (outside 0
// to 1023, or of a free slot) does nothing and gives the value told with it.
#pragma once

#include "engine/dfont.h"
#include "engine/dobject.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct Game;
struct GameFault;

using Handle = std::int32_t;

inline constexpr int kMaxHandles = 1024;
inline constexpr int kMaxHandleLists = 256;
inline constexpr Handle kNoHandle = -1;
inline constexpr Handle kRootHandle = 0;

/// Index of GetProperty and SetProperty.
enum Property : int {
    kPosX,
    kPosY,
    kPosZ,
    kWidth,
    kHeight,
    kViewX,
    kViewY,
    kViewW,
    kViewH,
};

/// What a game shows at a video mode, 0 to 3.
struct VideoMode {
    int width;       ///< of a board in tiles
    int height;      ///< of a board in tiles
    int screenW;     ///< pixels
    int screenH;     ///< pixels
    int parkingRow;  ///< `posy` of the boards that are not on view
};
inline constexpr int kVideoModes = 4;
/// The mode's sizes; those of mode 1 for a number that is no mode.
const VideoMode& GetVideoMode(int mode);

/// Makes a node the board that an author begins with: blank tiles with a ring around them.
/// `node` has no grid yet.
void MakeFreshBoard(Dobject& node, const std::string& name, const VideoMode& mode);

/// Places for the sound and the script side of a world. The editor builds them with the root
/// and uses them for nothing.
struct SoundBox {};
struct Compiler {};

class Dinterface {
public:
    /// Makes the root, loads the default font. Ends the program with exit code 1, after a
    /// report, when a part cannot be made. Sets `vWorld`; its destructor clears it.
    Dinterface();
    Dinterface(const Dinterface&) = delete;
    Dinterface& operator=(const Dinterface&) = delete;
    ~Dinterface();

    std::int32_t windowed = 1;
    std::int32_t videoMode = 1;
    std::int32_t currentObject = 0;  ///< id of the selected node
    std::int32_t currentBoard = 0;   ///< id of the board that holds the selection

    // --- handles -----------------------------------------------------------------------------
    /// A slot that holds the node, counted up by one; -1, with a message, when all are taken.
    Handle AddHandle(Dobject* object);
    void ReleaseHandle(Handle h);
    /// The node of a handle, or null: for the operations that make or read whole nodes.
    Dobject* Node(Handle h) const;
    /// The same, but null for the root, whose name, size and tiles nothing changes.
    Dobject* Editable(Handle h) const;

    // These give out a handle that ReleaseHandle must get back, or -1.
    Handle GetCurrentObject();
    Handle GetCurrentBoard();
    Handle GetHandleById(Handle h, std::int32_t id);
    Handle GetParent(Handle h);
    Handle SpawnObject(Handle parent, const std::string& name, int w, int h, int z);

    // --- accessors ---------------------------------------------------------------------------
    std::int32_t GetId(Handle h) const;  ///< -1 on a bad handle
    void SetCurrentObject(Handle h);
    std::int32_t GetProperty(Handle h, int index) const;  ///< 0 on a bad handle or index
    /// Writing z re-sorts the node; a size resizes; a viewport larger than the grid grows it.
    void SetProperty(Handle h, int index, std::int32_t value);
    const char* GetName(Handle h) const;  ///< null on a bad handle
    void SetName(Handle h, const std::string& name);
    const char* GetScript(Handle h) const;  ///< null on a bad handle
    void SetScript(Handle h, const std::string& script);
    /// 1 and the cell's fields as signed 16-bit values, or 0 and nothing outside the grid.
    int GetTile(Handle h, int x, int y, int& chr, int& fg, int& bg, int& attrib) const;
    void SetTile(Handle h, int x, int y, int chr, int fg, int bg, int attrib);
    void BackupTiles(Handle h);
    void RestoreTiles(Handle h);
    bool HasBackup(Handle h) const;  ///< whether RestoreTiles has tiles to bring back
    int IsExpanded(Handle h) const;
    void SetExpanded(Handle h, int on);
    void ExpandAll(Handle h);
    int IsHidden(Handle h) const;
    void SetHidden(Handle h, int value);

    // --- places ------------------------------------------------------------------------------
    /// Puts the viewport's corner at a world tile. Nothing for the root.
    void MoveTo(Handle h, int x, int y);
    /// The grid cell under a world tile.
    void WorldToLocal(Handle h, int& x, int& y) const;
    /// The world tile of a point counted from the viewport's corner, not from the grid's: for a
    /// scrolled node WorldToLocal gives back another point than went in.
    void LocalToWorld(Handle h, int& x, int& y) const;

    // --- whole nodes -------------------------------------------------------------------------
    /// Deletes the node, unless the world has a single board: then nothing can be deleted.
    void EraseObject(Handle h);
    /// Under another parent. Nothing when that is the node itself or one of its descendants.
    void MoveObject(Handle h, Handle newParent);
    std::int32_t NewBoard();                              ///< id; also makes it current
    std::int32_t NewObject(Handle parent, int x, int y);  ///< id; also makes it current
    /// Brings one board to the origin and parks the others out of sight.
    void ShowBoard(std::int32_t id);
    /// The id for the next node.
    std::int32_t TakeId() { return nextId++; }
    Dobject& Root() { return *vMain; }

    // --- the list of boards and objects, in rows of 10 pixels ----------------------------------
    /// Paints the list, scrolled by (x, y) rows, over the whole bitmap. Gives the selected node,
    /// borrowed, if its row is among those painted: no other node is looked at.
    const Dobject* DrawTreeList(int x, int y, BITMAP* bitmap) const;
    /// Selects the node whose row is hit at pixel y of a list scrolled by y0 pixels, and shows
    /// its board. A miss changes nothing.
    void ClickTreeList(int y0, int y);
    /// The same for a row of the list, from 0 without the title; nothing when there is none.
    void SelectTreeRow(int row);
    /// How many rows there are, and which is the selection's, -1 for none.
    int TreeRowCount() const { return static_cast<int>(TreeRows().size()); }
    int SelectedTreeRow() const;

    // --- font and picture --------------------------------------------------------------------
    Dfont* GetFont() { return vFont.get(); }
    void RedrawAll();
    /// The target's size in tiles; makes the compositor's masks.
    void SetViewSize(int w, int h);
    /// The whole world, panned by (x, y) tiles.
    void DrawWorld(BITMAP* target, int x, int y);
    /// Mode 1: the world without the node's children; 2: the node with its children alone, in
    /// its place; 3: the node's whole grid alone. Others do nothing.
    void DrawObjectMode(BITMAP* target, int x, int y, Handle h, int mode);

    // --- handle lists ------------------------------------------------------------------------
    /// The lowest free list, or -1 with a message.
    int FindFreeHandleList();
    /// The nodes that a selector such as ".self.all" names, as seen from h; see handle_list.cpp
    /// for the words. -1 on a bad handle or a null selector. The list must be released.
    int StartHandleList(Handle h, const char* selector);
    /// Every node of h's subtree whose viewport covers a world tile, parents before children.
    int StartHandleListAt(Handle h, int x, int y);
    /// The next element, borrowed from the list; -1 at the end, after which the walk starts
    /// anew.
    Handle NextHandle(int list);
    int CountHandles(int list) const;
    void ReleaseHandleList(int list);

    // --- files -------------------------------------------------------------------------------
    /// False when the world could not be read or written; that has been reported then.
    bool New();
    /// With `needsWorld` an archive without a text is refused; else it loads as an empty world.
    bool Load(const std::string& path, bool needsWorld = false);
    /// Puts a game that has been read in the place of the world. False, with the reason and
    /// nothing changed, when there is no memory for its surfaces.
    bool TakeGame(Game& game, GameFault& fault);
    bool Save(const std::string& path);
    /// An object file from a node with all below it, and the node out of one. Reading replaces
    /// all that the node holds; its id, parent and place among its siblings stay. A file that
    /// cannot be read is reported and the node stays as it was; one that cannot be written
    /// only leaves a line in the trace. False then, and on a bad handle.
    bool Export(Handle h, const std::string& path);
    bool Import(Handle h, const std::string& path);

private:
    struct Slot {
        std::int32_t count = 0;
        Dobject* object = nullptr;
    };
    struct HandleList {
        bool inUse = false;
        std::size_t cursor = 0;
        std::vector<Handle> handles;
    };

    /// False, after the message, when the handle table is full.
    bool AddToList(HandleList& list, Dobject* node);
    int OpenList(HandleList& list);
    /// False when the handle table is full and the query must end.
    bool CollectAt(HandleList& list, Dobject& node, int x, int y);
    struct SelectorWalk;

    struct TreeRow {
        const Dobject* node;
        int depth;  ///< 0 for a board
    };
    /// The list's rows; made anew when the tree has changed since.
    const std::vector<TreeRow>& TreeRows() const;

    std::unique_ptr<Dobject> vMain;
    std::unique_ptr<Dfont> vFont;
    std::array<Slot, kMaxHandles> slots;
    std::array<HandleList, kMaxHandleLists> lists;
    std::int32_t nextId = 1;
    mutable std::vector<TreeRow> rows;
    mutable std::uint64_t rowsMadeAt = 0;  ///< `vTreeChanges` then
    std::unique_ptr<SoundBox> vSoundBox;
    std::unique_ptr<Compiler> vCompiler;
};

extern Dinterface* vWorld;

/// Gives a handle back when it goes out of scope.
class HandleGuard {
public:
    explicit HandleGuard(Handle handle) : h(handle) {}
    HandleGuard(const HandleGuard&) = delete;
    HandleGuard& operator=(const HandleGuard&) = delete;
    ~HandleGuard() { vWorld->ReleaseHandle(h); }

    operator Handle() const { return h; }

private:
    Handle h;
};
