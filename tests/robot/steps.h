// The kinds of steps.
#pragma once

#include "tests/robot/robot.h"

/// Takes one of the steps that fit what stands open, which is something.
void RandomStep(Robot& robot, const Scene& scene);
