// The face of the engine: all that the editor and the tool do with a world goes through `vWorld`.
//
// It owns the tree, the font and the selection, and is put together from a table of handles with
// what they give access to, the lists of handles, the painted list, and the files. Pointers to
// nodes stay in here, so that deleting a node cannot leave one behind.
#pragma once

#include "engine/dfont.h"
#include "engine/fresh_board.h"
#include "engine/handle_list.h"
#include "engine/node_access.h"
#include "engine/tree_list.h"

#include <memory>
#include <string>

struct Game;
struct GameFault;

/// Places for the sound and the script side of a world. The editor builds them with the root
/// and uses them for nothing.
struct SoundBox {};
struct Compiler {};

class Dinterface : public NodeAccess, public HandleLists {
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

    Dobject& Root() { return *vMain; }
    Dfont* GetFont() { return vFont.get(); }
    void RedrawAll();

    // --- the selection and the boards ----------------------------------------------------------
    // The first two give out a handle that ReleaseHandle must get back, or -1.
    Handle GetCurrentObject();
    Handle GetCurrentBoard();
    void SetCurrentObject(Handle h);
    std::int32_t NewBoard();                              ///< id; also makes it current
    std::int32_t NewObject(Handle parent, int x, int y);  ///< id; also makes it current
    /// Brings one board to the origin and parks the others out of sight.
    void ShowBoard(std::int32_t id);

    // --- the list of boards and objects; see tree_list.h ---------------------------------------
    const Dobject* DrawTreeList(int x, int y, BITMAP* bitmap);
    /// Selects the node whose row is hit at pixel y of a list scrolled by y0 pixels, and shows
    /// its board. A miss changes nothing.
    void ClickTreeList(int y0, int y) { SelectTreeRow(treeList->RowAt(y0, y)); }
    /// The same for a row of the list, from 0 without the title; nothing when there is none.
    void SelectTreeRow(int row);
    int TreeRowCount() { return treeList->RowCount(); }
    int SelectedTreeRow() { return treeList->RowOf(currentObject); }

    // --- the picture; see compositor.h ---------------------------------------------------------
    /// The target's size in tiles; makes the compositor's masks.
    void SetViewSize(int w, int h);
    /// The whole world, panned by (x, y) tiles.
    void DrawWorld(BITMAP* target, int x, int y);
    /// Mode 1: the world without the node's children; 2: the node with its children alone, in
    /// its place; 3: the node's whole grid alone. Others do nothing.
    void DrawObjectMode(BITMAP* target, int x, int y, Handle h, int mode);

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
    std::unique_ptr<Dobject> vMain;
    std::unique_ptr<Dfont> vFont;
    std::unique_ptr<TreeList> treeList;
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
