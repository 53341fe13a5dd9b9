// The edit view, the large pane at the right: the world, the cursor and the editing marks.
//
// On every repaint the whole world is composed anew into one kept bitmap, the editing marks go
// on top in XOR, and the bitmap is shown at the zoom. Mouse and keyboard move the cursor,
// scroll, zoom, select and paint; the area tools are reached through two pop-up menus.
//
// Three kinds of coordinates occur: window pixels (the mouse), world tiles (cursor, anchor,
// scroll), and the grid of one node. A world tile (x, y) stands at bitmap pixel
// ((x, y) + vScroll) * 8.
#pragma once

#include "editor/view/area_commands.h"
#include "editor/view/brush.h"
#include "editor/view/view_host.h"
#include "editor/view/view_state.h"
#include "engine/bitmap.h"
#include "platform/menu.h"
#include "platform/window.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <span>

class CQuiltView final : public platform::WindowEvents {
public:
    /// Also makes what belongs to the whole run: the brushes and both clipboards.
    explicit CQuiltView(ViewHost& panes);
    CQuiltView(const CQuiltView&) = delete;
    CQuiltView& operator=(const CQuiltView&) = delete;
    ~CQuiltView() override;

    /// The window that the view lives in; before the first event.
    void Attach(platform::Window& own) { window = &own; }
    void Invalidate() { window->Invalidate(); }
    void EndBox();
    /// Called after each repaint, which every change of the world brings.
    std::function<void()> onShown = [] {};

    void OnDraw(platform::Window& own) override;
    void OnKeyDown(int code) override;
    void OnKeyUp(int code) override;
    void OnChar(int ch) override;
    void OnLButtonDown(bool ctrl, platform::Point at) override;
    void OnLButtonUp(bool ctrl, platform::Point at) override;
    void OnRButtonDown(bool ctrl, platform::Point at) override;
    void OnRButtonUp(bool ctrl, platform::Point at) override;
    void OnMouseMove(bool ctrl, platform::Point at) override;
    void OnMouseWheel(int delta) override;
    /// A choice from one of the view's menus; unknown numbers do nothing.
    void OnCommand(int command);

    /// Cursor and anchor in world tiles: what the area tools start from.
    platform::Point Cursor() const { return vCursor; }
    platform::Point Anchor() const { return vDrag.anchor; }
    float Zoom() const { return vZoom; }
    /// The scroll in tiles.
    platform::Point Scroll() const { return vScroll; }
    /// The codes, with flags, of the keys that act while that panel is up, each once.
    static std::set<int> KeysOf(PanelMode panel);

private:
    enum ToolState : std::int32_t {
        kIdle = 0,
        kDragView = 1,    ///< Ctrl and left button
        kDragBox = 2,     ///< right button: a box, or a move of the current object
        kFollow = 3,      ///< left button in the paint panel: the cursor follows
        kDragPoints = 4,  ///< right button with Ctrl: where a primitive begins and ends
        kKeyBox = 5,      ///< Ctrl and arrows in the paint panel: a box that stays
    };
    struct Drag {
        ToolState state = kIdle;
        platform::Point anchor{};  ///< world tile, across from the cursor
        platform::Point press{};   ///< window pixel where a view drag began
        platform::Point scroll{};  ///< vScroll then
    };

    using KeyAction = void (CQuiltView::*)();
    struct KeyBinding;
    static const KeyBinding kViewKeys[];
    static const KeyBinding kPaintKeys[];
    static const KeyBinding kPropertiesKeys[];

    // repaint
    void MakeBackBuffer(platform::Size client);
    void Compose();
    void DrawMarks();

    // places
    double Scale() const { return 8.0 / static_cast<double>(vZoom); }
    platform::Point TileAt(platform::Point pixel) const;
    /// Window point of the lower right corner of a world tile.
    platform::Point CornerOf(platform::Point tile) const;
    void PlaceCursor(platform::Point tile);
    void DragView(platform::Point pixel);
    void MoveCurrentObject(platform::Point tile);

    // menus and picking
    void RunMenu(const platform::Menu& menu, platform::Point at);
    void RunToolMenu(platform::Point at);
    void Pick(platform::Point at);
    void SelectPicked(int command);
    void ZoomBy(float factor);

    // keys
    bool RunKey(std::span<const KeyBinding> bindings, int code, unsigned mode);
    void Stamp();
    void BlendStep();
    void PaintStep();
    void PaintStepOncePerVisit();
    void RememberVisit(int code);
    void PenDown();
    void MoveCursor(int dx, int dy);
    void KeyUpArrow() { MoveCursor(0, -1); }
    void KeyDownArrow() { MoveCursor(0, 1); }
    void KeyLeftArrow() { MoveCursor(-1, 0); }
    void KeyRightArrow() { MoveCursor(1, 0); }
    void Eyedropper();
    void EnterTabMode();
    void LeaveTabMode();
    void SetBrushMode(BrushMode mode);
    template <int dx, int dy>
    void StretchBox();
    template <int dx, int dy>
    void ScrollTiles();
    void CenterCursor();
    void ToolMenuByKey();
    void ShapesByKey();
    void StepBrush(std::int32_t& field, int step, int last);
    void FgDown();
    void FgUp();
    void BgDown();
    void BgUp();
    void ChrDown();
    void ChrUp();
    void KeyScrollBack();
    void KeyScrollForward();
    void PlaceObjectClip();
    void RecolorGrid();
    void PickAtCursor();

    // typing
    void TypeTile(int ch);
    void TypeEnter();
    void TypeBackspace();

    ViewHost& host;
    platform::Window* window = nullptr;

    Bitmap vBackBuffer;  ///< null until the first repaint
    float vZoom = 1.0f;  ///< source pixels per window pixel: 0.25, 0.5, 1 or 2
    float vLastZoom = 1.0f;
    std::int32_t vBackW = 0, vBackH = 0;  ///< of vBackBuffer, pixels
    platform::Point vScroll;              ///< tiles; may be negative
    Drag vDrag;
    platform::Point vCursor;               ///< world tile; may lie outside every grid
    std::optional<platform::Point> vLast;  ///< where the Blender stepped with the last key
    std::int32_t vTextMargin = 0;          ///< world column to which Enter returns
    std::int32_t vPenDown = 0;             ///< 1 while Shift paints
    platform::Menu vToolMenu;
    platform::Menu vPrimMenu;
};
