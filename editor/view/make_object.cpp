#include "editor/view/make_object.h"

bool MakeObject(Handle h, TileArea& area) {
    Dobject* source = vWorld->Node(h);
    if (!source || source->tiles.empty()) return false;
    Dobject* made = source->Spawn(vWorld->TakeId(), 0);
    if (!made->Create("NewObject", area.w, area.h)) {
        source->Erase(*made);
        return false;
    }
    ForEachSelected(area, [&](int x, int y) {
        // Cell by cell rather than by PutTile, which would leave out a field of 65535.
        if (const Dtile* tile = source->GetTile(x, y))
            *made->GetTile(x - area.x, y - area.y) = *tile;
    });
    made->RedrawTiles();
    vWorld->currentObject = made->id;
    return true;
}
