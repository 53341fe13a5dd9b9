#include "tool/compare/match.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <functional>
#include <map>

namespace {

constexpr double kAlike = 0.5;
// Cells looked at in a grid, and comparisons in all, before likeness is given up.
constexpr std::size_t kSamples = 256;
constexpr std::int64_t kMostCompared = 1'000'000;

std::uint64_t Mix(std::uint64_t digest, std::uint64_t value) {
    digest = (digest ^ value) * 0x9e3779b97f4a7c15u;
    return digest ^ digest >> 29;
}

std::uint64_t Mix(std::uint64_t digest, const std::string& text) {
    return Mix(Mix(digest, text.size()), std::hash<std::string>()(text));
}

std::uint64_t Pack(std::int32_t a, std::int32_t b) {
    return std::uint64_t{static_cast<std::uint32_t>(a)} << 32 | static_cast<std::uint32_t>(b);
}

// 0 to 1, by samples spread over the larger grid.
double LikeTiles(const Dobject& a, const Dobject& b) {
    const Dobject& large = a.tiles.size() >= b.tiles.size() ? a : b;
    const Dobject& small = &large == &a ? b : a;
    if (large.tiles.empty()) return 1;
    const std::size_t step = large.tiles.size() / kSamples + 1;
    std::size_t same = 0;
    std::size_t all = 0;
    for (std::size_t at = 0; at < large.tiles.size(); at += step, ++all) {
        const auto width = static_cast<std::size_t>(large.width);
        const std::size_t x = at % width;
        const std::size_t y = at / width;
        const auto smallWidth = static_cast<std::size_t>(small.width);
        same += x < smallWidth && y < static_cast<std::size_t>(small.height) &&
                small.tiles[y * smallWidth + x] == large.tiles[at];
    }
    return static_cast<double>(same) / static_cast<double>(all);
}

// 0 to 1, by what the texts begin and end with.
double LikeText(const std::string& a, const std::string& b) {
    const std::size_t shorter = std::min(a.size(), b.size());
    const auto head = static_cast<std::size_t>(
        std::mismatch(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(shorter), b.begin())
            .first -
        a.begin());
    std::size_t tail = 0;
    while (head + tail < shorter && a[a.size() - 1 - tail] == b[b.size() - 1 - tail]) ++tail;
    return static_cast<double>(head + tail) / static_cast<double>(std::max(a.size(), b.size()));
}

double Likeness(const Dobject& a, const Dobject& b) {
    const double tiles = LikeTiles(a, b);
    return a.script.empty() && b.script.empty() ? tiles
                                                : (tiles + LikeText(a.script, b.script)) / 2;
}

class Matcher {
public:
    Matcher(const Dobject& a, const Dobject& b) : digestsA(a), digestsB(b) {
        Pair(a, b);
        Collect(a, leftA, [this](const Dobject& node) { return !pairs.After(node); });
        Collect(b, leftB, [this](const Dobject& node) { return !pairs.Before(node); });
        if (!leftA.empty() && !leftB.empty()) MatchLeft();
    }

    Pairing pairs;

private:
    using Nodes = std::vector<const Dobject*>;
    using Key = std::pair<std::uint64_t, std::string>;

    void Pair(const Dobject& a, const Dobject& b) {
        pairs.Add(a, b);
        MatchChildren(a, b);
    }

    void MatchChildren(const Dobject& a, const Dobject& b) {
        std::map<std::string, std::pair<Nodes, Nodes>> names;
        for (const auto& child : a.children)
            if (!pairs.After(*child)) names[child->name].first.push_back(child.get());
        for (const auto& child : b.children)
            if (!pairs.Before(*child)) names[child->name].second.push_back(child.get());
        for (auto& [name, groups] : names) {
            if (groups.first.size() > 1 || groups.second.size() > 1) {
                MatchEqual(groups.first, groups.second, [](const Digests& digests, auto& node) {
                    return Key(digests.Whole(node), "");
                });
                MatchEqual(groups.first, groups.second, [](const Digests& digests, auto& node) {
                    return Key(digests.Content(node), "");
                });
                MatchAlike(groups.first, groups.second, 0);
            }
            // In their order, whatever they hold.
            Drop(groups.first, groups.second);
            for (std::size_t i = 0; i < std::min(groups.first.size(), groups.second.size()); ++i)
                Pair(*groups.first[i], *groups.second[i]);
        }
    }

    void Drop(Nodes& as, Nodes& bs) {
        std::erase_if(as, [this](const Dobject* node) { return pairs.After(*node); });
        std::erase_if(bs, [this](const Dobject* node) { return pairs.Before(*node); });
    }

    // Pairs those of equal keys, in their order.
    template <typename KeyOf>
    void MatchEqual(Nodes& as, Nodes& bs, KeyOf keyOf) {
        std::map<Key, std::deque<const Dobject*>> found;
        for (const Dobject* b : bs)
            if (!pairs.Before(*b)) found[keyOf(digestsB, *b)].push_back(b);
        for (const Dobject* a : as) {
            if (pairs.After(*a)) continue;
            const auto at = found.find(keyOf(digestsA, *a));
            if (at == found.end()) continue;
            auto& candidates = at->second;
            while (!candidates.empty() && pairs.Before(*candidates.front())) candidates.pop_front();
            if (candidates.empty()) continue;
            Pair(*a, *candidates.front());
        }
        Drop(as, bs);
    }

    // Pairs the likest first.
    void MatchAlike(Nodes& as, Nodes& bs, double atLeast) {
        Drop(as, bs);
        const auto all =
            static_cast<std::int64_t>(as.size()) * static_cast<std::int64_t>(bs.size());
        if (all == 0 || compared + all > kMostCompared) return;
        compared += all;
        struct Candidate {
            double likeness;
            const Dobject* a;
            const Dobject* b;
        };
        std::vector<Candidate> candidates;
        for (const Dobject* a : as)
            for (const Dobject* b : bs)
                if (const double likeness = Likeness(*a, *b); likeness >= atLeast)
                    candidates.push_back({likeness, a, b});
        std::stable_sort(
            candidates.begin(), candidates.end(),
            [](const Candidate& one, const Candidate& two) { return one.likeness > two.likeness; });
        for (const Candidate& each : candidates)
            if (!pairs.After(*each.a) && !pairs.Before(*each.b)) Pair(*each.a, *each.b);
        Drop(as, bs);
    }

    template <typename Wanted>
    static void Collect(const Dobject& node, Nodes& to, Wanted wanted) {
        if (wanted(node)) to.push_back(&node);
        for (const auto& child : node.children) Collect(*child, to, wanted);
    }

    // Under other names below the same parent.
    void MatchRenamed() {
        std::map<const Dobject*, std::size_t> index;
        std::vector<std::pair<Nodes, Nodes>> siblings;
        for (const Dobject* a : leftA) {
            const Dobject* parent = pairs.After(*a->parent);
            if (!parent) continue;
            const auto at = index.emplace(parent, siblings.size()).first->second;
            if (at == siblings.size()) siblings.emplace_back();
            siblings[at].first.push_back(a);
        }
        for (const Dobject* b : leftB) {
            const auto at = index.find(b->parent);
            if (at != index.end()) siblings[at->second].second.push_back(b);
        }
        const auto contentAlone = [](const Digests& digests, const Dobject& node) {
            return Key(digests.Content(node), "");
        };
        for (auto& [as, bs] : siblings) {
            MatchEqual(as, bs, contentAlone);
            MatchAlike(as, bs, kAlike);
        }
    }

    void MatchLeft() {
        const auto nameAndContent = [](const Digests& digests, const Dobject& node) {
            return Key(digests.Content(node), node.name);
        };
        MatchEqual(leftA, leftB, nameAndContent);
        // Each pair found may be the parents of further ones.
        for (std::size_t before = 0; before != leftA.size();) {
            before = leftA.size();
            MatchRenamed();
            Drop(leftA, leftB);
        }
        // One name elsewhere: moved, and perhaps changed.
        std::map<std::string, std::pair<Nodes, Nodes>> names;
        for (const Dobject* a : leftA) names[a->name].first.push_back(a);
        for (const Dobject* b : leftB) names[b->name].second.push_back(b);
        for (auto& [name, groups] : names) MatchAlike(groups.first, groups.second, kAlike);
    }

    Digests digestsA;
    Digests digestsB;
    Nodes leftA;
    Nodes leftB;
    std::int64_t compared = 0;
};

}  // namespace

std::uint64_t Digests::Add(const Dobject& node) {
    std::uint64_t digest = Pack(node.width, node.height);
    digest = Mix(digest, Pack(node.viewx, node.viewy));
    digest = Mix(digest, Pack(node.vieww, node.viewh));
    for (const Dtile& tile : node.tiles) {
        std::uint64_t value = 0;
        static_assert(sizeof tile == sizeof value);
        std::memcpy(&value, &tile, sizeof value);
        digest = Mix(digest, value);
    }
    digest = Mix(digest, node.script);
    for (const auto& child : node.children) {
        Add(*child);
        digest = Mix(digest, Whole(*child));
    }
    return content[&node] = digest;
}

std::uint64_t Digests::Whole(const Dobject& node) const {
    const std::uint64_t place =
        Mix(Mix(Content(node), Pack(node.posx, node.posy)), static_cast<std::uint32_t>(node.posz));
    return Mix(place, node.name);
}

bool SameNode(const Dobject& a, const Dobject& b) {
    return a.name == b.name && a.posx == b.posx && a.posy == b.posy && a.posz == b.posz &&
           a.width == b.width && a.height == b.height && a.viewx == b.viewx && a.viewy == b.viewy &&
           a.vieww == b.vieww && a.viewh == b.viewh && a.script == b.script && a.tiles == b.tiles;
}

bool SameTree(const Dobject& a, const Dobject& b) {
    return SameNode(a, b) &&
           std::equal(a.children.begin(), a.children.end(), b.children.begin(), b.children.end(),
                      [](const auto& one, const auto& two) { return SameTree(*one, *two); });
}

void Pairing::Add(const Dobject& before, const Dobject& after) {
    forth[&before] = &after;
    back[&after] = &before;
}

Pairing MatchNodes(const Dobject& before, const Dobject& after) {
    return std::move(Matcher(before, after).pairs);
}

void Paths::Add(const Dobject& node) {
    std::unordered_map<std::string, int> times;
    for (const auto& child : node.children) {
        const int time = ++times[child->name];
        if (time > 1) ordinals[child.get()] = time;
        Add(*child);
    }
}

std::string Paths::Of(const Dobject& node) const {
    if (!node.parent) return node.name;
    std::string path = node.parent->parent ? Of(*node.parent) + "/" + node.name : node.name;
    const auto found = ordinals.find(&node);
    return found == ordinals.end() ? path : path + "[" + std::to_string(found->second) + "]";
}
