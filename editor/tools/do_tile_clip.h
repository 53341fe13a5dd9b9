// The dialog "Tile ClipBoard": shows the tile clipboard, sets the option of pasting, and moves
// the clipboard to and from files.
#pragma once

#include "editor/tools/drag_viewer.h"
#include "platform/form.h"

enum TileClipControl : int { kClipPicture = 1001, kClipSkip = 1002 };
enum TileClipCommand : int { kClipLoad = 1, kClipSave = 2 };

/// The clipboard as a picture; stand-ins show where a cell holds no glyph or no colour.
class ClipBoardViewer final : public DragViewer {
protected:
    void Compose(BITMAP* to) override;
    platform::Size ContentTiles() const override;
    const char* Name() const override { return "ClipBoardViewer"; }
};

class DoTileClip final : public platform::FormEvents {
public:
    /// Modal.
    void Run();

    platform::Menu FormMenu() override;
    platform::WindowEvents* PictureEvents(int id) override;
    void OnInit(platform::FormWindow& form) override;
    void OnCommand(platform::FormWindow& form, int command) override;
    void OnControl(platform::FormWindow& form, int id) override;

private:
    void Load();
    void Save();

    ClipBoardViewer viewer;
};

/// The dialog "Load BMP As": true for the foreground.
bool AskForForeground();
