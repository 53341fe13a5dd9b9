// What the panels and the edit view share: which panel is up, and what the view shows.
#pragma once

#include <cstdint>

enum PanelMode : std::int32_t { kPanelProperties = 0, kPanelPaint = 1 };

/// Which tool panel is up. It decides what mouse and keys do in the edit view.
extern PanelMode vPanelMode;

/// Flags: what the edit view composes. 0 is the whole world.
inline constexpr std::int32_t kViewHideObjs = 1;
inline constexpr std::int32_t kViewFocus = 2;
extern std::int32_t vViewMode;

extern bool vRuler;

/// The tick of the paint panel's "Show Attrib": false while no paint panel is up.
extern bool vShowAttrib;

/// Everything above as at the start of the program.
void ResetViewState();
