// Looking up ids and rows, after random changes of the tree, against a walk over it.

#include "engine/copy_object.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <random>
#include <set>

namespace {

class Lookups : public WorldTest {
protected:
    std::size_t roll(std::size_t end) { return static_cast<std::size_t>(random()) % end; }

    std::vector<Dobject*> Nodes() const {
        std::vector<Dobject*> found;
        Walk(world->Root(), found);
        return found;
    }
    static void Walk(const Dobject& node, std::vector<Dobject*>& found) {
        for (const auto& child : node.children) {
            found.push_back(child.get());
            Walk(*child, found);
        }
    }

    void Change(Dobject& node, Dobject& other) {
        const HandleGuard h(world->AddHandle(&node));
        const HandleGuard to(world->AddHandle(&other));
        constexpr std::size_t kMany = 60;
        switch (Nodes().size() > kMany ? 7 : roll(8)) {
            case 0:
                AddNode(world->Root(), "board", 1, 1, static_cast<int>(roll(3)));
                break;
            case 1:
                AddNode(node, "object", 1, 1, static_cast<int>(roll(3)));
                break;
            case 2:
                CopyObject(world->Root(), node);
                break;
            case 3:
                world->SetProperty(h, kPosZ, static_cast<int>(roll(5)));
                break;
            case 4:
                world->EraseObject(h);
                break;
            case 5:
                if (node.parent != &world->Root()) world->MoveObject(h, to);
                break;
            case 6:
                EXPECT_TRUE(world->Export(h, object) && world->Import(h, object));
                break;
            default:
                EXPECT_TRUE(world->Save(game) && (roll(2) ? world->Load(game) : world->New()));
                break;
        }
    }

    std::mt19937 random{testing::UnitTest::GetInstance()->random_seed() + 1u};
    const TempFolder temp;
    const std::string game = temp / "a.zqlt";
    const std::string object = temp / "a.zobj";
};

TEST_F(Lookups, AgreeWithAWalk) {
    AddNode(world->Root(), "first", 1, 1);
    for (int step = 0; step < 400; ++step) {
        const std::vector<Dobject*> nodes = Nodes();
        std::set<std::int32_t> gone;
        for (const Dobject* node : nodes) gone.insert(node->id);
        Change(*nodes[roll(nodes.size())], *nodes[roll(nodes.size())]);

        int row = 0;
        for (Dobject* node : Nodes()) {
            gone.erase(node->id);
            const HandleGuard found(world->GetHandleById(kRootHandle, node->id));
            ASSERT_EQ(world->Node(found), node) << "step " << step;
            world->ClickTreeList(10 * row++, 15);
            ASSERT_EQ(world->currentObject, node->id) << "step " << step;
        }
        for (std::int32_t id : gone) ASSERT_EQ(world->GetHandleById(kRootHandle, id), kNoHandle);
    }
    Dobject& board = *world->Root().children.front();
    const HandleGuard outside(world->AddHandle(&AddNode(board, "outside", 1, 1)));
    const std::int32_t inside = AddNode(*world->Node(outside), "inside", 1, 1).id;
    EXPECT_EQ(world->GetHandleById(outside, board.id), kNoHandle) << "not below it";
    EXPECT_NE(world->GetHandleById(outside, inside), kNoHandle);
}

}  // namespace
