// What can be read and changed of a node by its handle. An accessor given a bad handle does nothing
// and gives the value told with it.
#pragma once

#include "engine/handle_table.h"

#include <string>

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

class NodeAccess : public HandleTable {
public:
    // These give out a handle that ReleaseHandle must get back, or -1.
    Handle GetHandleById(Handle h, std::int32_t id);
    Handle GetParent(Handle h);
    Handle SpawnObject(Handle parent, const std::string& name, int w, int h, int z);

    std::int32_t GetId(Handle h) const;                   ///< -1 on a bad handle
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

    /// Puts the viewport's corner at a world tile. Nothing for the root.
    void MoveTo(Handle h, int x, int y);
    /// The grid cell under a world tile.
    void WorldToLocal(Handle h, int& x, int& y) const;
    /// The world tile of a point counted from the viewport's corner, not from the grid's: for a
    /// scrolled node WorldToLocal gives back another point than went in.
    void LocalToWorld(Handle h, int& x, int& y) const;

    /// Deletes the node, unless the world has a single board: then nothing can be deleted.
    void EraseObject(Handle h);
    /// Under another parent. Nothing when that is the node itself or one of its descendants.
    void MoveObject(Handle h, Handle newParent);

    /// The id for the next node.
    std::int32_t TakeId() { return nextId++; }

protected:
    std::int32_t nextId = 1;
};
