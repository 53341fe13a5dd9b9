#include "editor/view/view_state.h"

std::int32_t vPanelMode = kPanelPaint;
std::int32_t vViewMode = 0;
std::int32_t vRuler = 0;
bool vShowAttrib = false;

void ResetViewState() {
    vPanelMode = kPanelPaint;
    vViewMode = 0;
    vRuler = 0;
    vShowAttrib = false;
}
