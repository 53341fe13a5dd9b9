#include "tool/compare/merge_tree.h"

#include "engine/game_text.h"
#include "tool/compare/match.h"

#include <algorithm>
#include <deque>
#include <list>
#include <map>
#include <set>

namespace {

enum class Told { kNothing, kOurs, kTheirs };

// A node of the joined world, and what it is in the three.
struct Node {
    const Dobject* b = nullptr;
    Dobject* o = nullptr;
    Dobject* t = nullptr;
    Node* parent = nullptr;
    Node* other = nullptr;  ///< the parent that the side not followed gives it
    bool kept = true;
    int walk = 0;
    signed char touchedByOurs = -1;  ///< not known yet
    signed char touchedByTheirs = -1;
    std::vector<Node*> children;
};

class TreeMerger {
public:
    TreeMerger(const Dobject& base, Dobject& ours, Dobject& theirs, bool favored,
               std::vector<Conflict>& to)
        : inOurs(MatchNodes(base, ours)),
          inTheirs(MatchNodes(base, theirs)),
          digestsO(ours),
          digestsT(theirs),
          pathsO(ours),
          pathsT(theirs),
          favorTheirs(favored),
          conflicts(to) {
        AddBase(base);
        AddOurs(ours);
        AddTheirs(theirs);
        for (const auto& child : base.children) Decide(*child, Told::kNothing);
        for (Node& node : nodes)
            if (node.kept) ChooseParent(node);
        do Settle();
        while (BreakCycle());
    }

    // The order looks at the trees as they were, the sorting at the numbers as they are joined.
    template <typename JoinNode>
    void Assemble(const JoinNode& join) {
        for (Node& node : nodes)
            if (node.kept) Order(node);
        for (Node& node : nodes)
            if (node.kept && node.parent && node.b && node.o && node.t)
                join(*node.b, *node.o, *node.t, PathOf(node));
        Detach(*nodes.front().o);
        Detach(*nodes.front().t);
        for (Node& node : nodes) {
            if (!node.kept) continue;
            Dobject& to = Object(node);
            for (Node* child : node.children) {
                to.children.push_back(std::move(loose.at(&Object(*child))));
                to.children.back()->parent = &to;
            }
            SortByZ(to);
        }
    }

private:
    static Dobject& Object(const Node& node) { return node.o ? *node.o : *node.t; }

    Node* Of(const Dobject* object) const {
        const auto found = of.find(object);
        return found == of.end() ? nullptr : found->second;
    }
    Node* ParentOf(const Dobject* object) const { return object ? Of(object->parent) : nullptr; }

    std::string PathOf(const Node& node) const {
        return node.o ? pathsO.Of(*node.o) : pathsT.Of(*node.t);
    }

    void Tell(const Node& node, const std::string& what) {
        conflicts.push_back({PathOf(node), what});
    }

    // --- the nodes of all three ----------------------------------------------------------------

    void AddBase(const Dobject& b) {
        Node& node = nodes.emplace_back();
        node.b = &b;
        of[&b] = &node;
        for (const auto& child : b.children) AddBase(*child);
    }

    void AddOurs(Dobject& o) {
        const Dobject* then = inOurs.Before(o);
        Node& node = then ? *Of(then) : nodes.emplace_back();
        node.o = &o;
        of[&o] = &node;
        if (!then) {
            added[{ParentOf(&o), digestsO.Whole(o)}].push_back(&node);
            names.insert({ParentOf(&o), o.name});
        }
        for (const auto& child : o.children) AddOurs(*child);
    }

    // What both sides added alike is one node.
    void AddTheirs(Dobject& t) {
        const Dobject* then = inTheirs.Before(t);
        Node* node = then ? Of(then) : SameAdded(t);
        if (!node) {
            node = &nodes.emplace_back();
            node->t = &t;
            if (names.contains({ParentOf(&t), t.name}))
                Tell(*node, "both sides added it unlike; both are kept");
        }
        node->t = &t;
        of[&t] = node;
        for (const auto& child : t.children) AddTheirs(*child);
    }

    Node* SameAdded(const Dobject& t) {
        const auto found = added.find({ParentOf(&t), digestsT.Whole(t)});
        if (found == added.end() || found->second.empty()) return nullptr;
        Node* node = found->second.front();
        if (!SameTree(*node->o, t)) return nullptr;
        found->second.pop_front();
        return node;
    }

    // --- which stay ------------------------------------------------------------------------------

    // Whether the side that still has the node changed anything in it or below.
    bool Touched(const Dobject& b, bool byOurs) {
        Node& node = *Of(&b);
        signed char& known = byOurs ? node.touchedByOurs : node.touchedByTheirs;
        if (known < 0) known = FindTouched(node, byOurs);
        return known == 1;
    }

    bool FindTouched(const Node& node, bool byOurs) {
        const Dobject& side = byOurs ? *node.o : *node.t;
        if (!SameNode(*node.b, side) || ParentOf(&side) != ParentOf(node.b)) return true;
        return std::any_of(side.children.begin(), side.children.end(), [&](const auto& child) {
            const Node& below = *Of(child.get());
            return !below.b || ParentOf(below.b) != &node || Touched(*below.b, byOurs);
        });
    }

    void Decide(const Dobject& b, Told told) {
        Node& node = *Of(&b);
        const bool byOurs = node.o != nullptr;
        if (!node.o && !node.t) {
            node.kept = false;
        } else if (!node.o || !node.t) {
            const Told here = byOurs ? Told::kOurs : Told::kTheirs;
            const bool touched = told == here || Touched(b, byOurs);
            if (touched && told != here)
                Tell(node, byOurs ? "changed by ours, removed by theirs"
                                  : "removed by ours, changed by theirs");
            node.kept = touched && byOurs != favorTheirs;
            told = touched ? here : Told::kNothing;
        } else {
            told = Told::kNothing;
        }
        for (const auto& child : b.children) Decide(*child, told);
    }

    // --- under which parents ---------------------------------------------------------------------

    void ChooseParent(Node& node) {
        Node* base = ParentOf(node.b);
        Node* ours = ParentOf(node.o);
        Node* theirs = ParentOf(node.t);
        bool follow = !node.o;  // theirs
        if (node.b && node.o && node.t) {
            follow = ours == base;
            if (ours != base && theirs != base && ours != theirs) {
                Tell(node,
                     "moved to " + NameOf(ours) + " by ours, to " + NameOf(theirs) + " by theirs");
                follow = favorTheirs;
            }
        }
        node.parent = follow ? theirs : ours;
        node.other = follow ? ours : theirs;
    }

    std::string NameOf(const Node* node) const {
        return node == &nodes.front() ? "the top" : PathOf(*node);
    }

    // What would hang on a node that goes falls back to its other parent, or goes too.
    void Settle() {
        for (bool changed = true; changed;) {
            changed = false;
            for (Node& node : nodes) {
                if (!node.kept || !node.parent || node.parent->kept) continue;
                const bool back = node.other && node.other->kept;
                node.parent = back ? node.other : nullptr;
                node.kept = back;
                changed = true;
            }
        }
    }

    // Each side moved a node into the other's. One side alone has no ring, so following it ends
    // all.
    bool BreakCycle() {
        for (Node& node : nodes) node.walk = 0;
        int walk = 0;
        for (Node& start : nodes) {
            Node* at = &start;
            for (++walk; at && at->walk == 0; at = at->parent) at->walk = walk;
            if (!at || at->walk != walk) continue;
            Node* ring = at;
            do {
                const Dobject* favored = favorTheirs ? at->t : at->o;
                if (favored && at->parent != ParentOf(favored)) {
                    Tell(*at, std::string("moved below itself by both sides together; its place "
                                          "is ") +
                                  (favorTheirs ? "theirs" : "ours"));
                    at->parent = ParentOf(favored);
                    at->other = nullptr;
                    return true;
                }
                at = at->parent;
            } while (at != ring);
        }
        return false;
    }

    // --- in which order
    // ----------------------------------------------------------------------------

    // Whether a side gave the node its place among its siblings.
    bool PlacedBy(const Node& node, const Dobject* side) const {
        return side &&
               (!node.b || ParentOf(side) != ParentOf(node.b) || side->posz != node.b->posz);
    }

    template <typename Object>
    std::vector<Node*> ChildrenIn(const Node& parent, const Object* side, bool common) const {
        std::vector<Node*> found;
        if (!side) return found;
        for (const auto& object : side->children) {
            Node* node = Of(object.get());
            if (!node->kept || node->parent != &parent) continue;
            if (common && (!node->b || !node->o || !node->t || ParentOf(node->b) != &parent ||
                           PlacedBy(*node, node->o) || PlacedBy(*node, node->t)))
                continue;
            found.push_back(node);
        }
        return found;
    }

    void Order(Node& parent) {
        const auto base = ChildrenIn(parent, parent.b, true);
        const auto ours = ChildrenIn(parent, parent.o, true);
        const auto theirs = ChildrenIn(parent, parent.t, true);
        bool follow = ours == base;
        if (parent.o && parent.t && ours != base && theirs != base && ours != theirs) {
            conflicts.push_back({NameOf(&parent), "the order of its children"});
            follow = favorTheirs;
        }
        Dobject* const mine = follow ? parent.t : parent.o;
        Dobject* const their = follow ? parent.o : parent.t;
        std::list<Node*> order;
        std::map<Node*, std::list<Node*>::iterator> places;
        for (Node* node : ChildrenIn(parent, mine, false)) {
            const Dobject* placing = follow ? node->o : node->t;
            if (placing && ParentOf(placing) == &parent && PlacedBy(*node, placing) &&
                (follow || !PlacedBy(*node, node->o)))
                continue;
            places[node] = order.insert(order.end(), node);
        }
        // The others stand behind what they stand behind at home.
        auto behind = order.begin();
        for (Node* node : ChildrenIn(parent, their, false)) {
            const auto found = places.find(node);
            const auto at = found != places.end() ? found->second : order.insert(behind, node);
            behind = std::next(at);
        }
        parent.children.assign(order.begin(), order.end());
    }

    void Detach(Dobject& object) {
        for (auto& child : object.children) {
            Detach(*child);
            Dobject* key = child.get();
            loose[key] = std::move(child);
        }
        object.children.clear();
    }

    Pairing inOurs;
    Pairing inTheirs;
    Digests digestsO;
    Digests digestsT;
    Paths pathsO;
    Paths pathsT;
    bool favorTheirs;
    std::vector<Conflict>& conflicts;
    std::deque<Node> nodes;  // the root first
    std::unordered_map<const Dobject*, Node*> of;
    std::map<std::pair<Node*, std::uint64_t>, std::deque<Node*>> added;
    std::set<std::pair<Node*, std::string>> names;
    std::unordered_map<const Dobject*, std::unique_ptr<Dobject>> loose;
};

}  // namespace

void MergeTrees(const Dobject& base, Dobject& ours, Dobject& theirs, bool favorTheirs,
                std::vector<Conflict>& conflicts,
                const std::function<void(const Dobject& base, Dobject& ours, Dobject& theirs,
                                         const std::string& path)>& join) {
    TreeMerger merger(base, ours, theirs, favorTheirs, conflicts);
    merger.Assemble(join);
}
