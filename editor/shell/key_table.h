// The keys and what the mouse does, as the README, the About box and the tests of both show them.
#pragma once

#include <string>
#include <vector>

/// Rows of as many cells as the first, which is the heading. A cell may be empty.
using KeyTable = std::vector<std::vector<std::string>>;

/// The first table is that of the edit view: keys, paint panel, properties panel. In its first
/// cells and the list's, a key is its name, with "Ctrl+" or "Ctrl+Shift+" before it, and several
/// stand between commas.
const std::vector<KeyTable>& KeyTables();

/// As the README has it, and for a page of a form.
std::string KeyTableAsMarkdown(const KeyTable& table);
std::string KeyTableAsHtml(const KeyTable& table);
