#include "tests/support/test_world.h"

#include "engine/compositor.h"
#include "engine/report.h"

namespace {

std::vector<Reports::Message>* vMessages = nullptr;
std::vector<std::string>* vTrace = nullptr;

}  // namespace

Reports::Reports() {
    vMessages = &messages;
    vTrace = &trace;
    vMessageHook = [](const char* text, const char* caption) {
        vMessages->push_back({text, caption});
    };
    CaptureTrace([](const char* line) { vTrace->push_back(line); });
}

Reports::~Reports() {
    vMessageHook = nullptr;
    CaptureTrace(nullptr);
}

std::string Reports::Texts() const {
    std::string all;
    for (const Message& message : messages) all += message.text + "\n";
    return all;
}

void Reports::Clear() {
    messages.clear();
    trace.clear();
}

WorldTest::WorldTest() : world(std::make_unique<Dinterface>()) { reports.Clear(); }

WorldTest::~WorldTest() {
    EXPECT_EQ(reports.Texts(), "");
    vClipBuffer.reset();
    vSubClipBuffer.reset();
}

Dobject& WorldTest::AddNode(Dobject& parent, const std::string& name, int w, int h, int z) {
    const bool board = &parent == &world->Root();
    Dobject* node =
        board ? parent.Spawn_Back(world->TakeId(), z) : parent.Spawn(world->TakeId(), z);
    node->Create(name, w, h);
    return *node;
}
