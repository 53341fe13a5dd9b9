#include "tests/robot/steps.h"

#include "tests/robot/dialog_steps.h"
#include "tests/robot/window_steps.h"

namespace {

struct StepKind {
    Place place;
    int weight;
    void (*act)(Robot& robot, const Scene& scene);
};

constexpr StepKind kKinds[] = {
    {Place::Window, 30, KeyStep},         {Place::Window, 4, TextStep},
    {Place::Window, 20, EditClickStep},   {Place::Window, 12, EditDragStep},
    {Place::Window, 6, EditHoverStep},    {Place::Window, 4, HoldStep},
    {Place::Window, 14, ListClickStep},   {Place::Window, 3, ListDragStep},
    {Place::Window, 3, SwapPanelStep},    {Place::Window, 6, WheelStep},
    {Place::Window, 10, ControlStep},     {Place::Window, 8, MenuBarStep},
    {Place::Window, 5, AcceleratorStep},  {Place::Window, 2, TabStep},
    {Place::Window, 1, ClipboardStep},    {Place::Window, 2, ResizeStep},
    {Place::Window, 2, SplitterStep},     {Place::Window, 1, CloseStep},
    {Place::Window, 1, MoveStep},

    {Place::Menu, 10, MenuChooseStep},    {Place::Menu, 3, MenuKeyStep},
    {Place::Menu, 2, MenuClickStep},      {Place::Menu, 2, EscapeStep},

    {Place::Box, 8, BoxButtonStep},       {Place::Box, 1, EscapeStep},
    {Place::Box, 1, EnterStep},

    {Place::FileDialog, 6, FileNameStep}, {Place::FileDialog, 2, EscapeStep},

    {Place::Dialog, 40, ControlStep},     {Place::Dialog, 12, KeyStep},
    {Place::Dialog, 6, TextStep},         {Place::Dialog, 4, TabStep},
    {Place::Dialog, 8, MenuBarStep},      {Place::Dialog, 1, ClipboardStep},
    {Place::Dialog, 2, WheelStep},        {Place::Dialog, 1, EscapeStep},
    {Place::Dialog, 1, EnterStep},        {Place::Dialog, 1, CloseStep},
    {Place::Dialog, 1, MoveStep},         {Place::Dialog, 2, HoldStep},
};

}  // namespace

void RandomStep(Robot& robot, const Scene& scene) {
    int total = 0;
    for (const StepKind& kind : kKinds)
        if (kind.place == scene.place) total += kind.weight;
    int rest = robot.chance.Below(total);
    for (const StepKind& kind : kKinds) {
        if (kind.place != scene.place) continue;
        rest -= kind.weight;
        if (rest < 0) return kind.act(robot, scene);
    }
}
