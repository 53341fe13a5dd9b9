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
Point Select(Selection selection, Handle h, Point cursor, Point anchor) {
    switch (selection) {
        case Rect:
            SelectRect(h, cursor, anchor);
            break;
        case Flood:
            return SelectFlood(h, cursor);
        case SameAs:
            return SelectSameAs(h, cursor);
        case Line:
            SelectLine(h, cursor, anchor);
            break;
        case RectOutline:
            SelectRectOutline(h, cursor, anchor);
            break;
        case Ellipse:
            SelectEllipse(h, cursor, anchor);
            break;
    }
    return ToGrid(h, cursor);
}

void PlaceFadeCenter(FadeCenter center, Point seed) {
    if (center == Box) seed = {vRegionX + vRegionW / 2, vRegionY + vRegionH / 2};
    if (center == None) return;
    vFadeCenterX = seed.x;
    vFadeCenterY = seed.y;
}

template <typename Act>
void WithFilter(ViewHost& host, Act act) {
    SaveBrush();
    if (host.RunAreaDialog(AreaDialog::Filter)) act();
    RestoreBrush();
}

void MakeNamedObject(Handle h, ViewHost& host) {
    if (!MakeObject(h)) return;
    host.Changed(Change::World);
    host.EditName();
}

void Run(AreaAction action, Handle h, Point cursor, Point anchor, ViewHost& host) {
    switch (action) {
        case Fill:
            FillRegion(h);
            break;
        case Blend:
            BlendRegion(h, cursor, anchor);
            break;
        case Paste:
            PasteRegion(h);
            break;
        case PasteSprite:
            PasteSpriteRegion(h);
            break;
        case NewObject:
            MakeNamedObject(h, host);
            break;
        case Fade:
            host.RunAreaDialog(AreaDialog::Fade);
            break;
        case Distance:
            host.RunAreaDialog(AreaDialog::Distance);
            break;
        case Slime:
            host.RunAreaDialog(AreaDialog::Slime);
            break;
        case Speckle:
            host.RunAreaDialog(AreaDialog::Speckle);
            break;
        case ReplaceFill:
            WithFilter(host, [&] { FillRegion(h); });
            break;
        case ReplaceSpeckle:
            WithFilter(host, [&] { host.RunAreaDialog(AreaDialog::Speckle); });
            break;
        case Copy:
            WithFilter(host, [&] { CopyRegion(h); });
            break;
    }
}

}  // namespace

std::span<const AreaCommand> AreaCommands() { return kAreaCommands; }

bool RunAreaCommand(int command, Point cursor, Point anchor, ViewHost& host) {
    const auto* row =
        std::find_if(std::begin(kAreaCommands), std::end(kAreaCommands),
                     [&](const AreaCommand& candidate) { return candidate.command == command; });
    if (row == std::end(kAreaCommands)) return false;
    const platform::WaitCursor wait;
    const HandleGuard h(vWorld->GetCurrentObject());
    PlaceFadeCenter(row->center, Select(row->selection, h, cursor, anchor));
    Run(row->action, h, cursor, anchor, host);
    return true;
}
