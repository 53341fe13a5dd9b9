#include "tests/robot/run.h"

#include "editor/view/object_clip.h"
#include "engine/dinterface.h"

#include <set>

namespace {

std::string TreeFault(const Dobject& node, std::set<std::int32_t>& ids) {
    const std::string named = "\"" + node.name + "\" (" + std::to_string(node.id) + ") ";
    if (!ids.insert(node.id).second) return named + "has the id of another node";
    const BITMAP* shown = node.vSurf.get();
    // The root has the size of the view, and no cells.
    if (node.parent && node.tiles.size() != static_cast<std::size_t>(node.width * node.height))
        return named + "has more or fewer cells than its size";
    if (shown && (shown->w != node.width * kTileSize || shown->h != node.height * kTileSize))
        return named + "has a surface of another size";
    for (const auto& child : node.children) {
        if (child->parent != &node) return named + "has a child with another parent";
        std::string below = TreeFault(*child, ids);
        if (!below.empty()) return below;
    }
    return {};
}

std::uint64_t SurfaceDigest(const Dobject& node) {
    std::uint64_t value = static_cast<std::uint64_t>(node.id);
    for (int y = 0; node.vSurf && y < node.vSurf->h; ++y)
        value = value * 31 +
                std::hash<std::string_view>{}({reinterpret_cast<const char*>(node.vSurf->line[y]),
                                               static_cast<std::size_t>(node.vSurf->w)});
    for (const auto& child : node.children) value = value * 31 + SurfaceDigest(*child);
    return value;
}

// A node counts as much as two thousand cells.
std::size_t Weight(const Dobject& node) {
    std::size_t weight = 2000 + node.tiles.size();
    for (const auto& child : node.children) weight += Weight(*child);
    return weight;
}

}  // namespace

std::string WorldFault(bool surfaces) {
    for (Handle h = kRootHandle + 1; h < kMaxHandles; ++h)
        if (vWorld->Node(h)) return "handle " + std::to_string(h) + " is still held";
    if (vWorld->FindFreeHandleList() != 0) return "a list of handles is still open";
    std::set<std::int32_t> ids;
    std::string fault = TreeFault(vWorld->Root(), ids);
    // A world without boards has nothing to select.
    if (fault.empty() && !ids.contains(vWorld->currentObject) && !vWorld->Root().children.empty())
        fault = "the selected id " + std::to_string(vWorld->currentObject) + " is no node's";
    if (!fault.empty() || !surfaces) return fault;
    const std::uint64_t before = SurfaceDigest(vWorld->Root());
    vWorld->Root().RedrawTiles();
    return SurfaceDigest(vWorld->Root()) == before ? "" : "a surface does not show its tiles";
}

bool IsTooLarge() {
    constexpr std::size_t kMost = 1'500'000;
    return Weight(vWorld->Root()) + (vObjectClip ? Weight(*vObjectClip) : 0) > kMost;
}
