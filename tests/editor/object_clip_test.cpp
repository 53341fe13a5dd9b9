// The dialog of the object clipboard.

#include "editor/view/object_clip.h"
#include "editor/shell/do_object_clip_board.h"
#include "platform/keys.h"
#include "tests/support/random_world.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

using namespace platform;

namespace {

class ObjectClip : public WorldTest {
protected:
    ObjectClip() {
        MakeObjectClip();
        world->SetViewSize(100, 90);
    }
    ~ObjectClip() override { vObjectClip.reset(); }

    void Run(std::function<void(ScriptedForm&)> person) {
        script.ExpectDialog("Object ClipBoard", [&](ScriptedForm& form) {
            Viewer(form).Paint();
            person(form);
            form.Click(kIdOk);
        });
        DoObjectClipBoard().Run();
    }
    static ScriptedWindow& Viewer(ScriptedForm& form) {
        return static_cast<ScriptedWindow&>(*form.Picture(kObjectPicture));
    }
    static Point Drag(ScriptedForm& form, Point by) {
        auto& viewer = static_cast<ObjectViewer&>(*Viewer(form).events);
        viewer.OnLButtonDown(false, {90, 90});
        viewer.OnMouseMove(false, {90 + by.x, 90 + by.y});
        viewer.OnLButtonUp(false, {90 + by.x, 90 + by.y});
        return viewer.Scroll();
    }

    TempFolder temp;
    ScriptedPlatform script;
};

}  // namespace

TEST_F(ObjectClip, PassesAnObjectFromGameToGame) {
    const std::string fresh = temp / "fresh.zobj";
    Run([&](ScriptedForm& form) {
        script.ExpectSaveDialog(std::nullopt);
        form.Choose(kObjectSave);
        EXPECT_EQ(script.lastFileDialog.filter, "QUILT! obj files (*.zobj)|*.zobj||");
        EXPECT_EQ(script.lastFileDialog.extension, ".zobj");
        script.ExpectSaveDialog(fresh);
        form.Choose(kObjectSave);
    });
    vObjectClip->EraseAll();
    vObjectClip->Create("wide", 100, 3);
    vObjectClip->PutTile(99, 2, 65, 12, 3, 0);
    vObjectClip->script = "#end";
    vObjectClip->Spawn(world->TakeId(), 4)->Create("child", 2, 2);
    const std::string before = Account(*vObjectClip);
    const std::int32_t id = vObjectClip->id;
    Run([&](ScriptedForm& form) {
        script.ExpectSaveDialog(temp / "wide.zobj");
        form.Choose(kObjectSave);
        EXPECT_EQ(Viewer(form).description, "wide");
        const int columns = (Viewer(form).size.w + 1) / 2 / 8;
        EXPECT_EQ(Drag(form, {50, 80}), (Point{0, 0})) << "not past the corner";
        EXPECT_EQ(Drag(form, {-23, -16}), (Point{-2, 0}));
        EXPECT_EQ(Drag(form, {7, 0}), (Point{-1, 0})) << "cut towards zero";
        EXPECT_EQ(Drag(form, {-5000, 0}), (Point{columns - 100, 0}));
        auto& viewer = static_cast<ObjectViewer&>(*Viewer(form).events);
        for (int code : {kKeyRight, kKeyDown, kKeyLeft, kKeyLeft}) viewer.OnKeyDown(code);
        EXPECT_EQ(viewer.Scroll(), (Point{columns - 98, 0})) << "two back, the first was the end";
        for (int code : {kKeyRight, kKeyRight}) viewer.OnKeyDown(code);
        Viewer(form).Paint();
        EXPECT_EQ(Viewer(form).PixelAt((columns - 1) * 8, 16),
                  getpixel(vObjectClip->vSurf.get(), 99 * 8, 16));
        EXPECT_EQ(Drag(form, {0, 0}), (Point{columns - 100, 0})) << "nothing moved";

        Viewer(form).invalidated = 0;
        script.ExpectOpenDialog(std::nullopt);
        form.Choose(kObjectLoad);
        script.ExpectOpenDialog(fresh);
        form.Choose(kObjectLoad);
        EXPECT_EQ(Viewer(form).invalidated, 1);
        EXPECT_EQ(vObjectClip->name, "Dummy");
        Viewer(form).Paint();  // where the scroll was: nothing to see
        EXPECT_EQ(Drag(form, {-8, 0}), (Point{0, 0})) << "by the new object's size";
        script.ExpectOpenDialog(temp / "wide.zobj");
        form.Choose(kObjectLoad);
    });
    EXPECT_EQ(Account(*vObjectClip), before);
    EXPECT_EQ(vObjectClip->id, id);
    EXPECT_EQ(vObjectClip->parent, nullptr);
    EXPECT_EQ(world->Root().width, 100) << "the edit view has its masks back";
}
