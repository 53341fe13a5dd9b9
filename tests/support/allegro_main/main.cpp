// The main function of the tests that need no window system.

#include "engine/allegro_api.h"
#include "engine/report.h"

#include <gtest/gtest.h>

#include <malloc.h>
#include <cerrno>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    mallopt(M_PERTURB, 0x55);  // what is not cleared shows
    install_allegro(SYSTEM_NONE, &errno, nullptr);
    set_color_depth(8);
    StartTrace(nullptr);
    return RUN_ALL_TESTS();
}
