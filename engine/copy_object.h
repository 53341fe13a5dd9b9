// Copying a node with everything below it.
#pragma once

#include "engine/dobject.h"

/// A deep copy of `source` as a new child of `parent`, placed by the source's z, with new ids
/// all through. `hidden` and the expansion are not copied. Null when the grid cannot be made.
Dobject* CopyObject(Dobject& parent, const Dobject& source);

/// The same as a free node, which keeps no position of its own: for the object clipboard.
std::unique_ptr<Dobject> CopyObject(const Dobject& source);
