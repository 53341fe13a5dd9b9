// The tree of a joined game: which nodes stay, and where. Internal to the merge.
#pragma once

#include "engine/dobject.h"
#include "tool/compare/merge.h"

#include <functional>

/// Joins what both sides did to the tree into `ours`; `theirs` loses its nodes. `join` is called
/// for each node that all three have, and joins the rest of it into ours.
void MergeTrees(const Dobject& base, Dobject& ours, Dobject& theirs, bool favorTheirs,
                std::vector<Conflict>& conflicts,
                const std::function<void(const Dobject& base, Dobject& ours, Dobject& theirs,
                                         const std::string& path)>& join);
