#include "editor/view/view_state.h"

PanelMode vPanelMode = kPanelPaint;
std::int32_t vViewMode = 0;
bool vRuler = false;
bool vShowAttrib = false;

void ResetViewState() {
    vPanelMode = kPanelPaint;
    vViewMode = 0;
    vRuler = false;
    vShowAttrib = false;
}
