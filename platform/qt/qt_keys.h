// Key events as the editor's key codes and characters.
#pragma once

#include <QKeyEvent>
#include <vector>

/// The platform::Key of a key event, or 0 for a key that has none.
int KeyCode(const QKeyEvent& event);

/// The characters that a typed or composed text delivers: code page 437 codes, and Enter,
/// Backspace, Tab and Escape by their control codes.
std::vector<int> TypedCodes(const QString& text);
