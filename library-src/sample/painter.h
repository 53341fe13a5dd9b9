// A hand at the editor: the commands of its menus in one line each, with the answers that a
// person would give in the dialogs.
//
// All of them work on the current object, in cells of its grid; the object's scroll must be 0.
// Each goes the way that the menus go, through RunAreaCommand, or calls the operation behind the
// control that a person would use.
#pragma once

#include "editor/tools/fade_library.h"
#include "editor/view/brush.h"
#include "editor/view/quilt_view.h"
#include "engine/dinterface.h"

#include <string>
#include <vector>

/// First and last column and row of an area.
struct Box {
    int left, top, right, bottom;
};

/// What the fade dialogs are told.
struct Shading {
    const char* set = "Shades";
    const char* blend = "Left to right";
    int random = 0;
    int px = 35, py = 35;  ///< of the Distance fade
};

/// Which fields of the tiles the Filter dialog lets through.
struct Filter {
    bool chr = true, fg = true, bg = true, attrib = true;
};

/// A brush of full cells in one colour.
constexpr Brush Solid(int color, int attrib = 0) { return {219, color, color, attrib}; }
/// Paints cells that show what lies behind.
constexpr Brush kEmpty{0, 0, 0, 0};

class Painter final : public ViewHost {
public:
    /// Reads the fade library of the folder in which the program stands.
    Painter();
    /// False when a fade set or blend was asked for that does not exist.
    bool Good() const { return good; }

    /// Any command of the two menus over a box, or over what hangs together with its left top
    /// cell; with the answers for whatever dialog opens.
    void Run(int command, Box box, Brush brush, const Shading& shading = {}, int percent = 50,
             Filter filter = {});

    // --- areas -------------------------------------------------------------------------------
    void Fill(Box box, Brush brush);
    void Speckle(Box box, Brush brush, int percent);
    /// A Normal fade, and a Distance fade round the middle.
    void Shade(Box box, Brush colors, const Shading& shading);
    void Rings(Box box, Brush colors, const Shading& shading);
    /// The brush's fields that the filter lets through.
    void Replace(Box box, Brush brush, Filter filter);
    void ReplaceSpeckle(Box box, Brush brush, Filter filter, int percent);

    // --- shapes ------------------------------------------------------------------------------
    void Line(platform::Point from, platform::Point to, Brush brush);
    void Frame(Box box, Brush brush);
    void Ellipse(Box box, Brush brush);
    /// A filled ellipse: outlines, one in another.
    void Disc(Box box, Brush brush);

    // --- what is connected to a cell, and what looks like it -----------------------------------
    void FloodShade(platform::Point at, Brush colors, const Shading& shading);
    void FloodSlime(platform::Point at, Brush colors, const Shading& shading);
    void FloodRings(platform::Point at, Brush colors, const Shading& shading);
    /// A colour ramp from the brush's lower colour at `from` to its higher one at `to`, over all
    /// that is connected to `from` or, the second, over all that looks like it.
    void FloodRamp(platform::Point from, platform::Point to, int low, int high);
    void SameAsRamp(platform::Point from, platform::Point to, int low, int high);

    // --- clipboard and text --------------------------------------------------------------------
    void Copy(Box box);
    void Paste(Box box);
    /// What "Add Text" types.
    void Type(platform::Point at, const std::string& text, Brush colors);

    // --- boards and objects --------------------------------------------------------------------
    /// A new board, which becomes the current one. These give the new node's id.
    std::int32_t AddBoard(const std::string& name, const char* script);
    /// A new object on the one given, with empty cells, which becomes the current one.
    std::int32_t AddObject(std::int32_t parent, const std::string& name, Box place, int z,
                           const char* script);
    /// An object that shows one sprite of 2 by 2 glyphs, the first of which is given.
    std::int32_t AddSprite(std::int32_t parent, const std::string& name, platform::Point at, int z,
                           int glyph, const char* script);
    /// "Make Object" from an area of the current object, which keeps its tiles. The new object
    /// stands where the area is and becomes the current one.
    std::int32_t MakeObject(const std::string& name, Box from, int z, const char* script);
    void Select(std::int32_t id);
    /// What the dialogs "Size" and "Viewport" write.
    void SetSize(int w, int h);
    void SetViewport(Box shown);

    bool RunAreaDialog(AreaDialog dialog, TileArea& area, Brush& brush) override;
    void EditName() override;
    bool EditBrush() override { return false; }
    void Changed(Change) override {}

private:
    void Do(int command, platform::Point from, platform::Point to, Brush brush);
    void SetCurrent(Property property, int value);

    std::vector<FadeSet> sets;
    std::vector<FadeBlend> blends;
    bool good = true;

    // The answers to the next dialogs.
    Shading answer;
    Filter filtered;
    int chance = 0;
    std::string objectName;
};
