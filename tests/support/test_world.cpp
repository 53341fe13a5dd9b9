#include "tests/support/test_world.h"

#include "engine/compositor.h"

#include <iostream>

WorldTest::WorldTest() : world(std::make_unique<Dinterface>()) {
    auto& seed = testing::FLAGS_gtest_random_seed;
    if (seed == 0) seed = static_cast<int>(std::random_device{}() % 99999) + 1;
    dice.seed(static_cast<unsigned>(seed));
    reports.Clear();
}

WorldTest::~WorldTest() {
    EXPECT_EQ(reports.Texts(), "");
    if (HasFailure())
        std::cerr << "--gtest_random_seed=" << testing::FLAGS_gtest_random_seed << "\n";
    vClipBuffer.reset();
    vSubClipBuffer.reset();
}

Dobject& WorldTest::AddNode(Dobject& parent, const std::string& name, int w, int h, int z) {
    const bool top = &parent == &world->Root();
    Dobject* node = top ? parent.Spawn_Back(world->TakeId(), z) : parent.Spawn(world->TakeId(), z);
    node->Create(name, w, h);
    return *node;
}
