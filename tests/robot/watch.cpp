#include "tests/robot/watch.h"

#include "editor/view/brush.h"
#include "editor/view/object_clip.h"
#include "engine/dinterface.h"

#include <cstring>
#include <set>

namespace {

std::string Named(const Dobject& node, const char* what) {
    return "\"" + node.name + "\" (" + std::to_string(node.id) + ") " + what;
}

std::string TreeFault(const Dobject& node, std::set<std::int32_t>& ids) {
    if (!ids.insert(node.id).second) return Named(node, "has the id of another node");
    // The root has the size of the view, and no cells.
    if (node.parent) {
        const auto cells =
            static_cast<std::size_t>(node.width) * static_cast<std::size_t>(node.height);
        if (node.tiles.size() != cells) return Named(node, "has more or fewer cells than its size");
        // A node that was read and not shown since has none yet.
        if (node.vSurf &&
            (node.vSurf->w != node.width * kTileSize || node.vSurf->h != node.height * kTileSize))
            return Named(node, "has a surface of another size");
    }
    for (const auto& child : node.children) {
        if (child->parent != &node) return Named(*child, "has another parent");
        std::string below = TreeFault(*child, ids);
        if (!below.empty()) return below;
    }
    return {};
}

std::string HandleFault() {
    for (Handle h = kRootHandle + 1; h < kMaxHandles; ++h)
        if (const Dobject* node = vWorld->Node(h))
            return "handle " + std::to_string(h) + " is still held, of id " +
                   std::to_string(vWorld->GetId(h)) + (node == vObjectClip.get() ? " (clip)" : "");
    return {};
}

bool ShowsTiles(const Dobject& node) {
    if (!node.vSurf) return true;
    Dobject fresh;
    fresh.Create("fresh", node.width, node.height);
    fresh.tiles = node.tiles;
    fresh.RedrawTiles();
    const auto bytes = static_cast<std::size_t>(node.width * kTileSize);
    for (int y = 0; y < node.height * kTileSize; ++y)
        if (std::memcmp(node.vSurf->line[y], fresh.vSurf->line[y], bytes) != 0) return false;
    return true;
}

std::string SurfaceFaultOf(const Dobject& node) {
    if (node.parent && !ShowsTiles(node)) return Named(node, "does not show its tiles");
    for (const auto& child : node.children) {
        std::string below = SurfaceFaultOf(*child);
        if (!below.empty()) return below;
    }
    return {};
}

void Measure(const Dobject& node, WorldSize& size) {
    ++size.nodes;
    size.cells += static_cast<std::int64_t>(node.tiles.size());
    for (const auto& child : node.children) Measure(*child, size);
}

// FNV-1a.
struct Digest {
    std::uint64_t value = 14695981039346656037u;

    void Bytes(const void* data, std::size_t count) {
        const auto* bytes = static_cast<const unsigned char*>(data);
        for (std::size_t i = 0; i < count; ++i) value = (value ^ bytes[i]) * 1099511628211u;
    }
    void Number(std::int32_t n) { Bytes(&n, sizeof n); }

    void Node(const Dobject& node) {
        Bytes(node.name.data(), node.name.size());
        Bytes(node.script.data(), node.script.size());
        for (std::int32_t n :
             {node.posx, node.posy, node.posz, node.width, node.height, node.viewx, node.viewy,
              node.vieww, node.viewh, node.evieww, node.id, node.hidden})
            Number(n);
        Bytes(node.tiles.data(), node.tiles.size() * sizeof(Dtile));
        for (const auto& child : node.children) Node(*child);
    }
};

}  // namespace

std::string WorldFault() {
    std::string fault = HandleFault();
    std::set<std::int32_t> ids;
    if (fault.empty()) fault = TreeFault(vWorld->Root(), ids);
    if (!fault.empty()) return fault;
    // A world without boards has nothing to select.
    const bool selected = ids.contains(vWorld->currentObject);
    if (!selected && !vWorld->Root().children.empty())
        return "the selected id " + std::to_string(vWorld->currentObject) + " is no node's";
    return {};
}

std::string SurfaceFault() { return SurfaceFaultOf(vWorld->Root()); }

WorldSize MeasureWorld() {
    WorldSize size;
    Measure(vWorld->Root(), size);
    if (vObjectClip) Measure(*vObjectClip, size);
    return size;
}

std::uint64_t WorldDigest() {
    Digest digest;
    digest.Node(vWorld->Root());
    const BITMAP* sheet = vWorld->GetFont()->Sheet();
    for (int y = 0; y < sheet->h; ++y)
        digest.Bytes(sheet->line[y], static_cast<std::size_t>(sheet->w));
    for (std::int32_t n : {vWorld->currentObject, vWorld->currentBoard, vWorld->videoMode,
                           vBrush.chr, vBrush.fg, vBrush.bg, vBrush.attrib, vBrushMode})
        digest.Number(n);
    return digest.value;
}
