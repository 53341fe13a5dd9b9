#include "editor/view/area_commands.h"

#include "editor/commands.h"
#include "editor/view/brush.h"
#include "editor/view/fills.h"
#include "editor/view/make_object.h"
#include "editor/view/selection.h"
#include "editor/view/tile_clip.h"
#include "platform/platform.h"

using platform::Point;

namespace {

enum class Selection { Rect, Flood, SameAs, Line, RectOutline, Ellipse };

// Where the fade centre goes: nowhere, to the middle of the box, to the cursor's tile.
enum class FadeCenter { None, Box, Seed };

enum class AreaAction {
    Fill,
    Blend,
    Paste,
    PasteSprite,
    NewObject,
    Fade,
    Distance,
    Slime,
    Speckle,
    // These ask by the Filter dialog which fields of the tiles are meant, and do nothing when
    // it is cancelled.
    ReplaceFill,
    ReplaceSpeckle,
    Copy,
};

struct AreaCommand {
    int command;
    Selection selection;
    FadeCenter center;
    AreaAction action;
};

using enum Selection;
using enum FadeCenter;
using enum AreaAction;

constexpr AreaCommand kAreaCommands[] = {
    {kCmdFill, Rect, None, Fill},
    {kCmdFadeNormal, Rect, None, Fade},
    {kCmdFadeDistance, Rect, Box, Distance},
    {kCmdFadeSlime, Rect, Box, Slime},
    {kCmdSpeckle, Rect, None, Speckle},
    {kCmdFloodFill, Flood, None, Fill},
    {kCmdFloodFadeNormal, Flood, None, Fade},
    {kCmdFloodFadeDistance, Flood, Seed, Distance},
    {kCmdFloodFadeSlime, Flood, Seed, Slime},
    {kCmdFloodSpeckle, Flood, None, Speckle},
    {kCmdSameAsFill, SameAs, None, Fill},
    {kCmdSameAsFadeNormal, SameAs, None, Fade},
    {kCmdSameAsFadeDistance, SameAs, Seed, Distance},
    {kCmdSameAsSpeckle, SameAs, None, Speckle},
    {kCmdReplaceFill, Rect, None, ReplaceFill},
    {kCmdReplaceSpeckle, Rect, None, ReplaceSpeckle},
    {kCmdReplaceFloodFill, Flood, None, ReplaceFill},
    {kCmdReplaceFloodSpeckle, Flood, None, ReplaceSpeckle},
    {kCmdReplaceSameAsFill, SameAs, None, ReplaceFill},
    {kCmdReplaceSameAsSpeckle, SameAs, None, ReplaceSpeckle},
    {kCmdCopyFill, Rect, None, Copy},
    {kCmdCopyFlood, Flood, None, Copy},
    {kCmdCopySameAs, SameAs, None, Copy},
    {kCmdPasteFill, Rect, None, Paste},
    {kCmdPasteFlood, Flood, None, Paste},
    {kCmdPasteSameAs, SameAs, None, Paste},
    {kCmdPasteSprite, Rect, None, PasteSprite},
    {kCmdMakeObject, Rect, None, NewObject},

    {kCmdLineFill, Line, None, Fill},
    {kCmdLineFadeNormal, Line, None, Fade},
    {kCmdLineFadeDistance, Line, Box, Distance},
    {kCmdLineSpeckle, Line, None, Speckle},
    {kCmdRectFill, RectOutline, None, Fill},
    {kCmdRectFadeNormal, RectOutline, None, Fade},
    {kCmdRectFadeDistance, RectOutline, Box, Distance},
    {kCmdRectSpeckle, RectOutline, None, Speckle},
    {kCmdCircleFill, Ellipse, None, Fill},
    {kCmdCircleFadeNormal, Ellipse, None, Fade},
    {kCmdCircleFadeDistance, Ellipse, Box, Distance},
    {kCmdCircleSpeckle, Ellipse, None, Speckle},
    {kCmdBlendFadeFill, Rect, None, Blend},
    {kCmdBlendFadeFlood, Flood, None, Blend},
    {kCmdBlendFadeSameAs, SameAs, None, Blend},
};

// The cursor's tile in the grid, which is the seed of the selections that have one.
Point Select(Selection selection, TileArea& area, Handle h, Point cursor, Point anchor) {
    switch (selection) {
        case Rect:
            SelectRect(area, h, cursor, anchor);
            break;
        case Flood:
            return SelectFlood(area, h, cursor);
        case SameAs:
            return SelectSameAs(area, h, cursor);
        case Line:
            SelectLine(area, h, cursor, anchor);
            break;
        case RectOutline:
            SelectRectOutline(area, h, cursor, anchor);
            break;
        case Ellipse:
            SelectEllipse(area, h, cursor, anchor);
            break;
    }
    return ToGrid(h, cursor);
}

void PlaceFadeCenter(FadeCenter center, TileArea& area, Point seed) {
    if (center == Box) seed = {area.x + area.w / 2, area.y + area.h / 2};
    if (center == None) return;
    area.centerX = seed.x;
    area.centerY = seed.y;
}

template <typename Act>
void WithFilter(ViewHost& host, TileArea& area, Brush& brush, Act act) {
    SaveBrush();
    if (host.RunAreaDialog(AreaDialog::Filter, area, brush)) act();
    RestoreBrush();
}

void MakeNamedObject(Handle h, TileArea& area, ViewHost& host) {
    if (!MakeObject(h, area)) return;
    host.Changed(Change::World);
    host.EditName();
}

void Run(AreaAction action, TileArea& area, Brush& brush, Handle h, Point cursor, Point anchor,
         ViewHost& host) {
    switch (action) {
        case Fill:
            FillRegion(h, area, brush);
            break;
        case Blend:
            BlendRegion(h, area, brush, cursor, anchor);
            break;
        case Paste:
            PasteRegion(h, area);
            break;
        case PasteSprite:
            PasteSpriteRegion(h, area, brush);
            break;
        case NewObject:
            MakeNamedObject(h, area, host);
            break;
        case Fade:
            host.RunAreaDialog(AreaDialog::Fade, area, brush);
            break;
        case Distance:
            host.RunAreaDialog(AreaDialog::Distance, area, brush);
            break;
        case Slime:
            host.RunAreaDialog(AreaDialog::Slime, area, brush);
            break;
        case Speckle:
            host.RunAreaDialog(AreaDialog::Speckle, area, brush);
            break;
        case ReplaceFill:
            WithFilter(host, area, brush, [&] { FillRegion(h, area, brush); });
            break;
        case ReplaceSpeckle:
            WithFilter(host, area, brush,
                       [&] { host.RunAreaDialog(AreaDialog::Speckle, area, brush); });
            break;
        case Copy:
            WithFilter(host, area, brush, [&] { CopyRegion(h, area, brush); });
            break;
    }
}

}  // namespace

bool RunAreaCommand(int command, Point cursor, Point anchor, ViewHost& host) {
    const auto* row =
        std::find_if(std::begin(kAreaCommands), std::end(kAreaCommands),
                     [&](const AreaCommand& candidate) { return candidate.command == command; });
    if (row == std::end(kAreaCommands)) return false;
    const platform::WaitCursor wait;
    const HandleGuard h(vWorld->GetCurrentObject());
    PlaceFadeCenter(row->center, vArea, Select(row->selection, vArea, h, cursor, anchor));
    Run(row->action, vArea, vBrush, h, cursor, anchor, host);
    return true;
}
