#include "engine/dobject.h"

#include "engine/dfont.h"
#include "engine/report.h"

#include <algorithm>
#include <new>
#include <unordered_map>
#include <utility>

int vMissingSurfaces = 0;
std::uint64_t vTreeChanges = 0;

bool IsGridSize(std::int64_t w, std::int64_t h) {
    return w >= 0 && h >= 0 && w <= kMaxGridSide && h <= kMaxGridSide && w * h <= kMaxGridCells;
}

namespace {

struct Grid {
    Bitmap surf;
    std::vector<Dtile> tiles;
};

bool MakeGrid(int w, int h, const Dtile& fill, Grid& grid) {
    if (!IsGridSize(w, h)) return false;
    grid.surf = MakeBitmap(w * kTileSize, h * kTileSize);
    if (!grid.surf) return false;
    try {
        grid.tiles.assign(static_cast<std::size_t>(w) * static_cast<std::size_t>(h), fill);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

// Never freed, since nodes of static lifetime leave it as the program ends.
std::unordered_map<std::int32_t, Dobject*>& Index() {
    static auto& index = *new std::unordered_map<std::int32_t, Dobject*>;
    return index;
}

void PutField(std::uint16_t& field, int value) {
    if (value != kKeepField) field = static_cast<std::uint16_t>(value);
}

}  // namespace

Dobject* FindNode(std::int32_t id) {
    const auto found = Index().find(id);
    return found == Index().end() ? nullptr : found->second;
}

Dobject::Dobject(std::int32_t ownId) : id(ownId) {
    ++vTreeChanges;
    if (id) Index()[id] = this;
}

Dobject::~Dobject() {
    ++vTreeChanges;
    const auto own = Index().find(id);
    if (own != Index().end() && own->second == this) Index().erase(own);
}

void Dobject::Expand() {
    if (evieww) return;
    evieww = std::exchange(vieww, width);
    eviewh = std::exchange(viewh, height);
    viewx = viewy = 0;
}

void Dobject::Collapse() {
    if (!evieww) return;
    vieww = std::exchange(evieww, 0);
    viewh = std::exchange(eviewh, 0);
}

bool Dobject::Create(const std::string& newName, int w, int h) {
    w = std::max(w, 0);
    h = std::max(h, 0);
    Grid grid;
    if (!MakeGrid(w, h, Dtile{}, grid)) {
        Fatal("Unable to Create Object vSurf", __FILE__, __LINE__);
        return false;
    }
    name = newName;
    vSurf = std::move(grid.surf);
    tiles = std::move(grid.tiles);
    width = vieww = w;
    height = viewh = h;
    Trace("%s->Create(%i,%i)\n", name.c_str(), w, h);
    return true;
}

void Dobject::Destroy() {
    Trace("%s->Destroy()\n", name.c_str());
    name.clear();
    vSurf.reset();
    tiles.clear();
    viewx = viewy = vieww = viewh = 0;
    posx = posy = posz = 0;
    ForgetOrder();
    if (parent) parent->ForgetOrder();
    width = height = 0;
}

bool Dobject::Resize(int w, int h) {
    Trace("%s->Resize(%i,%i)\n", name.c_str(), w, h);
    w = std::max(w, 0);
    h = std::max(h, 0);
    Grid grid;
    if (!MakeGrid(w, h, kBlankTile, grid)) {
        Fatal("Unable to Resize Object vSurf", __FILE__, __LINE__);
        return false;
    }
    // The root has a size but no cells.
    if (!tiles.empty()) {
        for (int y = 0; y < std::min(height, h); ++y)
            std::copy_n(tiles.begin() + std::ptrdiff_t{y} * width, std::min(width, w),
                        grid.tiles.begin() + std::ptrdiff_t{y} * w);
    }
    width = w;
    height = h;
    vieww = std::min(vieww, w);
    viewh = std::min(viewh, h);
    vSurf = std::move(grid.surf);
    tiles = std::move(grid.tiles);
    RedrawTiles();
    return true;
}

// In a list out of order, as a board that was moved under the root leaves it, that is still in
// front of the first child that must be behind.
Dobject::Children::iterator Dobject::PlaceFor(std::int32_t z, bool ascending) {
    const int order = ascending ? 1 : -1;
    const auto rank = [order](const auto& child) { return std::int64_t{order} * child->posz; };
    const auto fits = [&](const auto& child) { return rank(child) <= std::int64_t{order} * z; };
    const bool sorted = orderKnown == order || std::is_sorted(children.begin(), children.end(),
                                                              [&](const auto& a, const auto& b) {
                                                                  return rank(a) < rank(b);
                                                              });
    orderKnown = sorted ? order : 0;
    if (!sorted) return std::find_if_not(children.begin(), children.end(), fits);
    // Most are put behind all others.
    if (children.empty() || fits(children.back())) return children.end();
    return std::partition_point(children.begin(), children.end(), fits);
}

Dobject::Children::iterator Dobject::Find(const Dobject& child) {
    return std::find_if(children.begin(), children.end(),
                        [&](const auto& own) { return own.get() == &child; });
}

Dobject* Dobject::Insert(Children::iterator before, std::unique_ptr<Dobject> child) {
    ++vTreeChanges;
    return children.insert(before, std::move(child))->get();
}

Dobject* Dobject::SpawnAt(Children::iterator before, std::int32_t childId, std::int32_t z) {
    auto child = std::make_unique<Dobject>(childId);
    child->posz = z;
    child->parent = this;
    return Insert(before, std::move(child));
}

Dobject* Dobject::Spawn(std::int32_t childId, std::int32_t z) {
    Trace("%s->Spawn(%i)\n", name.c_str(), z);
    return SpawnAt(PlaceFor(z, false), childId, z);
}

Dobject* Dobject::Spawn_Back(std::int32_t childId, std::int32_t z) {
    Trace("%s->Spawn_Back(%i)\n", name.c_str(), z);
    return SpawnAt(PlaceFor(z, true), childId, z);
}

void Dobject::Erase(const Dobject& child) {
    auto found = Find(child);
    if (found == children.end()) return;
    Trace("%s->Erase(%s)\n", name.c_str(), (*found)->name.c_str());
    children.erase(found);
}

void Dobject::EraseAll() { children.clear(); }

void Dobject::Link(std::unique_ptr<Dobject> child) {
    Trace("%s->Link(%s)\n", name.c_str(), child->name.c_str());
    auto place = PlaceFor(child->posz, false);
    Insert(place, std::move(child));
}

void Dobject::Link_Back(std::unique_ptr<Dobject> child) {
    Trace("%s->Link(%s)\n", name.c_str(), child->name.c_str());
    auto place = PlaceFor(child->posz, true);
    Insert(place, std::move(child));
}

std::unique_ptr<Dobject> Dobject::UnLink(const Dobject& child) {
    auto found = Find(child);
    if (found == children.end()) return nullptr;
    Trace("%s->UnLink(%s)\n", name.c_str(), (*found)->name.c_str());
    std::unique_ptr<Dobject> taken = std::move(*found);
    ++vTreeChanges;
    children.erase(found);
    return taken;
}

Dtile* Dobject::GetTile(int x, int y) {
    if (x < 0 || y < 0 || x >= width || y >= height || tiles.empty()) return nullptr;
    return &tiles[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x)];
}

void Dobject::PutTile(int x, int y, int chr, int fg, int bg, int attrib) {
    Dtile* tile = GetTile(x, y);
    if (!tile) return;
    // Before the tile changes: a negative colour leaves what was there.
    Surface();
    PutField(tile->chr, chr);
    PutField(tile->fg, fg);
    PutField(tile->bg, bg);
    PutField(tile->attrib, attrib);
    if (const Dfont* own = Font())
        own->DrawTile(*this, Signed(tile->chr), Signed(tile->fg), Signed(tile->bg), x, y);
}

const Dfont* Dobject::Font() const {
    const Dobject* top = this;
    while (top->parent) top = top->parent;
    return top->font;
}

// Here and not beside DrawGlyph: a font need not know what a node is.
void Dfont::DrawTile(Dobject& node, int chr, int fg, int bg, int x, int y) const {
    if (!node.vSurf || x < 0 || y < 0 || x >= node.width || y >= node.height) return;
    DrawGlyph(node.vSurf.get(), chr, fg, bg, x, y);
}

void Dobject::DrawTiles() {
    const Dfont* own = Font();
    if (tiles.empty() || !own) return;
    const Dtile* tile = tiles.data();
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x, ++tile)
            own->DrawTile(*this, Signed(tile->chr), Signed(tile->fg), Signed(tile->bg), x, y);
}

void Dobject::RedrawTiles() {
    if (vSurf) DrawTiles();
    for (const auto& child : children) child->RedrawTiles();
}

BITMAP* Dobject::Surface() {
    if (vSurf || tiles.empty()) return vSurf.get();
    vSurf = MakeBitmap(width * kTileSize, height * kTileSize);
    if (vSurf)
        DrawTiles();
    else
        ++vMissingSurfaces;
    return vSurf.get();
}

void Dobject::BackupTiles() { undoTiles = tiles; }

void Dobject::RestoreTiles() {
    undoTiles.resize(tiles.size());
    tiles = undoTiles;
    RedrawTiles();
}

void Dobject::AddOffset(int& x, int& y) const {
    const Dobject* node = this;
    for (; node->parent && node->parent->parent; node = node->parent) {
        x += node->posx - node->parent->viewx;
        y += node->posy - node->parent->viewy;
    }
    x += node->posx;
    y += node->posy;
}

void Dobject::SubOffset(int& x, int& y) const {
    int originX = 0;
    int originY = 0;
    AddOffset(originX, originY);
    x -= originX;
    y -= originY;
}
