#include "editor/view/make_object.h"

#include "editor/view/selection.h"

bool MakeObject(Handle h) {
    Dobject* source = vWorld->Node(h);
    if (!source || source->tiles.empty()) return false;
    Dobject* made = source->Spawn(vWorld->TakeId(), 0);
    if (!made->Create("NewObject", vRegionW, vRegionH)) {
        source->Erase(*made);
        return false;
    }
    ForEachSelected([&](int x, int y) {
        // Cell by cell rather than by PutTile, which would leave out a field of 65535.
        if (const Dtile* tile = source->GetTile(x, y))
            *made->GetTile(x - vRegionX, y - vRegionY) = *tile;
    });
    made->RedrawTiles();
    vWorld->currentObject = made->id;
    return true;
}
