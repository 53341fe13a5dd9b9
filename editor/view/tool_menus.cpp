#include "editor/view/tool_menus.h"

#include "editor/commands.h"

using platform::Entry;
using platform::Menu;
using platform::MenuItem;
using platform::Separator;
using platform::SubMenu;

namespace {

MenuItem FadeMenu(int normal, int distance, int slime = kCmdNone) {
    Menu fades{Entry("&Normal", normal), Entry("&Distance", distance)};
    if (slime) fades.push_back(Entry("&Slime", slime));
    return SubMenu("Fa&de", std::move(fades));
}

MenuItem ShapeMenu(const char* text, int fill, int normal, int distance, int speckle) {
    return SubMenu(text,
                   {Entry("&Fill", fill), FadeMenu(normal, distance), Entry("&Speckle", speckle)});
}

}  // namespace

Menu MakeToolMenu() {
    return {
        Entry("&Fill", kCmdFill),
        FadeMenu(kCmdFadeNormal, kCmdFadeDistance, kCmdFadeSlime),
        Entry("&Speckle", kCmdSpeckle),
        Separator(),
        SubMenu("F&lood", {Entry("&Fill", kCmdFloodFill),
                           FadeMenu(kCmdFloodFadeNormal, kCmdFloodFadeDistance, kCmdFloodFadeSlime),
                           Entry("&Speckle", kCmdFloodSpeckle)}),
        ShapeMenu("Same&As", kCmdSameAsFill, kCmdSameAsFadeNormal, kCmdSameAsFadeDistance,
                  kCmdSameAsSpeckle),
        SubMenu("&Replace", {Entry("&Fill", kCmdReplaceFill), Entry("&Speckle", kCmdReplaceSpeckle),
                             Separator(),
                             SubMenu("F&lood", {Entry("&Fill", kCmdReplaceFloodFill),
                                                Entry("&Speckle", kCmdReplaceFloodSpeckle)}),
                             SubMenu("Same&As", {Entry("&Fill", kCmdReplaceSameAsFill),
                                                 Entry("&Speckle", kCmdReplaceSameAsSpeckle)})}),
        Separator(),
        SubMenu("&Copy", {Entry("&Fill", kCmdCopyFill), Entry("F&lood", kCmdCopyFlood),
                          Entry("&SameAs", kCmdCopySameAs)}),
        SubMenu("&Paste", {Entry("&Fill", kCmdPasteFill), Entry("F&lood", kCmdPasteFlood),
                           Entry("&SameAs", kCmdPasteSameAs), Entry("S&prite", kCmdPasteSprite)}),
        Separator(),
        Entry("Zoom &In", kCmdZoomIn),
        Entry("Zoom &Out", kCmdZoomOut),
        Separator(),
        Entry("R&uler", kCmdRuler),
        Entry("&Make Object", kCmdMakeObject),
        Separator(),
        Entry("Cancel", kCmdToolCancel),
    };
}

Menu MakePrimMenu() {
    return {
        ShapeMenu("&Line", kCmdLineFill, kCmdLineFadeNormal, kCmdLineFadeDistance, kCmdLineSpeckle),
        ShapeMenu("&Rect", kCmdRectFill, kCmdRectFadeNormal, kCmdRectFadeDistance, kCmdRectSpeckle),
        ShapeMenu("&Circle", kCmdCircleFill, kCmdCircleFadeNormal, kCmdCircleFadeDistance,
                  kCmdCircleSpeckle),
        Separator(),
        SubMenu("&Blend Fade",
                {Entry("&Fill", kCmdBlendFadeFill), Entry("F&lood", kCmdBlendFadeFlood),
                 Entry("&SameAs", kCmdBlendFadeSameAs)}),
        Entry("Cancel", kCmdPrimCancel),
    };
}
