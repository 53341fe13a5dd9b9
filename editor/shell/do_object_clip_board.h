// The dialog "Object ClipBoard": shows the object clipboard and moves it to and from object
// files, which pass objects from game to game. A Load takes effect at once.
#pragma once

#include "editor/tools/drag_viewer.h"
#include "platform/form.h"

#include <string>

enum ObjectClipControl : int { kObjectPicture = 1001 };
enum ObjectClipCommand : int { kObjectLoad = 1, kObjectSave = 2 };

class ObjectViewer final : public DragViewer {
protected:
    void Compose(BITMAP* to) override;
    platform::Size ContentTiles() const override;
    const char* Name() const override { return "ObjectViewer"; }
};

inline constexpr const char* kObjectExtension = ".zobj";

class DoObjectClipBoard final : public platform::FormEvents {
public:
    /// Modal.
    void Run();
    /// Loads an object file and runs; a file that cannot be loaded has been reported.
    static void Show(const std::string& path);

    platform::Menu FormMenu() override;
    platform::WindowEvents* PictureEvents(int id) override;
    void OnInit(platform::FormWindow& form) override;
    void OnCommand(platform::FormWindow& form, int command) override;
    void OnControl(platform::FormWindow& form, int id) override;

private:
    ObjectViewer viewer;
};
