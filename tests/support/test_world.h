// A world of its own for a test, and a look at what it reports.
#pragma once

#include "engine/file_layer.h"
#include "engine/report.h"
#include "tests/support/random_world.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

#include <climits>
#include <functional>
#include <memory>
#include <sstream>

/// Collects the messages and the trace of its lifetime. One at a time.
class Reports {
public:
    Reports() {
        vOwner = this;
        vMessageHook = [](const char* text, const char* caption) {
            vOwner->messages.emplace_back(text, caption);
        };
        CaptureTrace([](const char* line) { vOwner->trace += line; });
    }
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;
    ~Reports() {
        vMessageHook = nullptr;
        CaptureTrace(nullptr);
    }

    /// The texts of all messages, one a line.
    std::string Texts() const {
        std::string all;
        for (const auto& [text, caption] : messages) all += text + "\n";
        return all;
    }
    void Clear() { messages.clear(); }

    std::vector<std::pair<std::string, std::string>> messages;  ///< texts with their captions
    std::string trace;

private:
    static inline Reports* vOwner = nullptr;
};

/// While it lives, the hook is asked before each operation on files: its errno value refuses it.
class FileHook final : public FileLayer {
public:
    using Hook = std::function<int(const std::string& operation)>;
    explicit FileHook(Hook to) : hook(std::move(to)), before(std::exchange(vFiles, this)) {}
    ~FileHook() override { vFiles = before; }
    int Refused(const char* operation) override { return hook(operation); }

private:
    Hook hook;
    FileLayer* before;
};

/// A fresh world with the default font and no boards. A message that the test has not looked
/// at (by Clear) when it ends fails it. What is rolled is new in each run, unless it is told
/// --gtest_random_seed, which a test that fails prints.
struct WorldTest : testing::Test {
    WorldTest();
    ~WorldTest() override;

    /// A board or object straight in the tree, with empty cells.
    Dobject& AddNode(Dobject& parent, const std::string& name, int w, int h, int z = 0);
    /// A handle for the test's life.
    Handle HandleOf(Dobject& node) { return world->AddHandle(&node); }

    int Roll(int low, int high) { return std::uniform_int_distribution<int>(low, high)(dice); }

    Reports reports;
    std::unique_ptr<Dinterface> world;
    std::mt19937 dice;
};
