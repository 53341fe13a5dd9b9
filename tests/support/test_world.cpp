#include "tests/support/test_world.h"

#include "engine/compositor.h"
#include "engine/report.h"

#include <iostream>

namespace {

std::vector<std::pair<std::string, std::string>>* vMessages = nullptr;

}  // namespace

Reports::Reports() {
    vMessages = &messages;
    vMessageHook = [](const char* text, const char* caption) {
        vMessages->emplace_back(text, caption);
    };
    CaptureTrace([](const char*) {});
}

Reports::~Reports() {
    vMessageHook = nullptr;
    CaptureTrace(nullptr);
}

std::string Reports::Texts() const {
    std::string all;
    for (const auto& [text, caption] : messages) all += text + "\n";
    return all;
}

std::string Pixels(const BITMAP* bitmap) {
    std::string pixels;
    for (int y = 0; bitmap && y < bitmap->h; ++y)
        pixels.append(bitmap->line[y], bitmap->line[y] + bitmap->w);
    return pixels;
}

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
