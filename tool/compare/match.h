// Which node of one world is which node of another.
#pragma once

#include "engine/dobject.h"

#include <string>
#include <unordered_map>

/// Short numbers for what is in the nodes of a world; equal nodes have equal ones.
class Digests {
public:
    explicit Digests(const Dobject& root) { Add(root); }
    /// Grid, viewport, script and all below, but not the node's name and place.
    std::uint64_t Content(const Dobject& node) const { return content.at(&node); }
    /// With name, position and z.
    std::uint64_t Whole(const Dobject& node) const;

private:
    std::uint64_t Add(const Dobject& node);

    std::unordered_map<const Dobject*, std::uint64_t> content;
};

/// Whether two nodes are alike, apart from what is below them.
bool SameNode(const Dobject& a, const Dobject& b);
bool SameTree(const Dobject& a, const Dobject& b);

/// Pairs of nodes, one of either world.
class Pairing {
public:
    void Add(const Dobject& before, const Dobject& after);
    /// The partner, or null.
    const Dobject* After(const Dobject& before) const { return Find(forth, before); }
    const Dobject* Before(const Dobject& after) const { return Find(back, after); }

private:
    using Map = std::unordered_map<const Dobject*, const Dobject*>;
    static const Dobject* Find(const Map& map, const Dobject& node) {
        const auto found = map.find(&node);
        return found == map.end() ? nullptr : found->second;
    }

    Map forth;
    Map back;
};

/// The roots are a pair. Below a pair name goes with name, among nodes of one name the likest;
/// then what is left, when it is alike enough to be the same under another name or parent.
Pairing MatchNodes(const Dobject& before, const Dobject& after);

/// Paths such as "Hall/door": the names from the board on. A second sibling of a name has [2]
/// behind it, and so on.
class Paths {
public:
    explicit Paths(const Dobject& root) { Add(root); }
    std::string Of(const Dobject& node) const;

private:
    void Add(const Dobject& node);

    std::unordered_map<const Dobject*, int> ordinals;  ///< of those that are not the first
};
