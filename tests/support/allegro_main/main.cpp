// The main function of the tests that need no window system.

#include "engine/bitmap.h"
#include "engine/report.h"

#include <gtest/gtest.h>

#include <malloc.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    mallopt(M_PERTURB, 0x55);  // what is not cleared shows
    StartAllegro();
    StartTrace(nullptr);
    return RUN_ALL_TESTS();
}
