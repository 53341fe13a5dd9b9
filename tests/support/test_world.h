// A world of its own for a test, and a look at what it reports.
#pragma once

#include "engine/dinterface.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

/// Collects the messages and trace lines of its lifetime. One at a time.
class Reports {
public:
    Reports();
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;
    ~Reports();

    struct Message {
        std::string text;
        std::string caption;
    };
    const std::vector<Message>& Messages() const { return messages; }
    const std::vector<std::string>& Trace() const { return trace; }
    /// The texts of all messages, one a line.
    std::string Texts() const;
    void Clear();

private:
    std::vector<Message> messages;
    std::vector<std::string> trace;
};

/// A fresh world with the default font and no boards. A message that the test has not looked
/// at (by Clear) when it ends fails it.
class WorldTest : public testing::Test {
protected:
    WorldTest();
    ~WorldTest() override;

    /// A board or object straight in the tree, with empty cells.
    Dobject& AddNode(Dobject& parent, const std::string& name, int w, int h, int z = 0);
    /// A handle for the test's life.
    Handle HandleOf(Dobject& node) { return world->AddHandle(&node); }

    Reports reports;
    std::unique_ptr<Dinterface> world;
};
