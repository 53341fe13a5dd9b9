#include "library-src/sample/painter.h"

#include "editor/commands.h"
#include "editor/tools/fade_fills.h"
#include "editor/view/area_commands.h"

#include <cstdio>

using platform::Point;

namespace {

template <typename Record>
const Record& Named(const std::vector<Record>& records, const std::string& name, bool& good) {
    for (const Record& record : records)
        if (record.name == name) return record;
    std::fprintf(stderr, "no fade is called %s\n", name.c_str());
    good = false;
    static const Record none;
    return none;
}

Point TopLeft(Box box) { return {box.left, box.top}; }
Point BottomRight(Box box) { return {box.right, box.bottom}; }

}  // namespace

Painter::Painter() : sets(LoadFadeSets("quilt-sample")), blends(LoadFadeBlends("quilt-sample")) {}

void Painter::Do(int command, Point from, Point to, Brush brush) {
    const HandleGuard h(vWorld->GetCurrentObject());
    vWorld->LocalToWorld(h, from.x, from.y);
    vWorld->LocalToWorld(h, to.x, to.y);
    vBrush = brush;
    RunAreaCommand(command, from, to, *this);
}

void Painter::Run(int command, Box box, Brush brush, const Shading& shading, int percent,
                  Filter filter) {
    answer = shading;
    chance = percent;
    filtered = filter;
    Do(command, TopLeft(box), BottomRight(box), brush);
}

bool Painter::RunAreaDialog(AreaDialog dialog, TileArea& area, Brush& brush) {
    const HandleGuard h(vWorld->GetCurrentObject());
    switch (dialog) {
        case AreaDialog::Fade:
            NormalFade(h, area, brush, Named(blends, answer.blend, good).cells, answer.random,
                       Named(sets, answer.set, good).tiles);
            break;
        case AreaDialog::Distance:
            DistanceFade(h, area, brush, answer.px, answer.py, answer.random,
                         Named(sets, answer.set, good).tiles);
            break;
        case AreaDialog::Slime:
            SlimeFade(h, area, brush, answer.random, Named(sets, answer.set, good).tiles);
            break;
        case AreaDialog::Speckle:
            SpeckleFill(h, area, brush, chance);
            break;
        case AreaDialog::Filter:
            if (!filtered.chr) brush.chr = -1;
            if (!filtered.fg) brush.fg = -1;
            if (!filtered.bg) brush.bg = -1;
            if (!filtered.attrib) brush.attrib = -1;
            break;
    }
    return true;
}

void Painter::Fill(Box box, Brush brush) { Run(kCmdFill, box, brush); }

void Painter::Speckle(Box box, Brush brush, int percent) {
    Run(kCmdSpeckle, box, brush, {}, percent);
}

void Painter::Shade(Box box, Brush colors, const Shading& shading) {
    Run(kCmdFadeNormal, box, colors, shading);
}

void Painter::Rings(Box box, Brush colors, const Shading& shading) {
    Run(kCmdFadeDistance, box, colors, shading);
}

void Painter::Replace(Box box, Brush brush, Filter filter) {
    Run(kCmdReplaceFill, box, brush, {}, 0, filter);
}

void Painter::ReplaceSpeckle(Box box, Brush brush, Filter filter, int percent) {
    Run(kCmdReplaceSpeckle, box, brush, {}, percent, filter);
}

void Painter::Line(Point from, Point to, Brush brush) { Do(kCmdLineFill, from, to, brush); }
void Painter::Frame(Box box, Brush brush) { Run(kCmdRectFill, box, brush); }
void Painter::Ellipse(Box box, Brush brush) { Run(kCmdCircleFill, box, brush); }

void Painter::Disc(Box box, Brush brush) {
    // Narrower and narrower ellipses of the full height leave no gap between them.
    for (; box.left <= box.right; ++box.left, --box.right) Ellipse(box, brush);
}

void Painter::FloodShade(Point at, Brush colors, const Shading& shading) {
    Run(kCmdFloodFadeNormal, {at.x, at.y, at.x, at.y}, colors, shading);
}

void Painter::FloodSlime(Point at, Brush colors, const Shading& shading) {
    Run(kCmdFloodFadeSlime, {at.x, at.y, at.x, at.y}, colors, shading);
}

void Painter::FloodRings(Point at, Brush colors, const Shading& shading) {
    Run(kCmdFloodFadeDistance, {at.x, at.y, at.x, at.y}, colors, shading);
}

void Painter::FloodRamp(Point from, Point to, int low, int high) {
    Do(kCmdBlendFadeFlood, from, to, {0, low, high, 0});
}

void Painter::SameAsRamp(Point from, Point to, int low, int high) {
    Do(kCmdBlendFadeSameAs, from, to, {0, low, high, 0});
}

void Painter::Copy(Box box) { Run(kCmdCopyFill, box, {}); }

void Painter::Paste(Box box) { Run(kCmdPasteFill, box, {}); }

void Painter::Type(Point at, const std::string& text, Brush colors) {
    const HandleGuard h(vWorld->GetCurrentObject());
    for (const unsigned char c : text)
        vWorld->SetTile(h, at.x++, at.y, c, colors.fg, colors.bg, colors.attrib);
}

std::int32_t Painter::AddBoard(const std::string& name, const char* script) {
    const std::int32_t id = vWorld->NewBoard();
    vWorld->ShowBoard(id);
    const HandleGuard board(vWorld->GetCurrentBoard());
    vWorld->SetName(board, name);
    vWorld->SetScript(board, script);
    return id;
}

std::int32_t Painter::AddObject(std::int32_t parent, const std::string& name, Box place, int z,
                                const char* script) {
    const HandleGuard under(vWorld->GetHandleById(kRootHandle, parent));
    const std::int32_t id = vWorld->NewObject(under, place.left, place.top);
    const HandleGuard object(vWorld->GetCurrentObject());
    vWorld->SetName(object, name);
    vWorld->SetScript(object, script);
    vWorld->SetProperty(object, kPosZ, z);
    SetSize(place.right - place.left + 1, place.bottom - place.top + 1);
    Fill({0, 0, place.right - place.left, place.bottom - place.top}, kEmpty);
    return id;
}

std::int32_t Painter::AddSprite(std::int32_t parent, const std::string& name, Point at, int z,
                                int glyph, const char* script) {
    const std::int32_t id = AddObject(parent, name, {at.x, at.y, at.x + 1, at.y + 1}, z, script);
    Run(kCmdPasteSprite, {0, 0, 1, 1}, {glyph, 0, 0, 1});
    return id;
}

std::int32_t Painter::MakeObject(const std::string& name, Box from, int z, const char* script) {
    objectName = name;
    Run(kCmdMakeObject, from, {});
    const HandleGuard object(vWorld->GetCurrentObject());
    vWorld->SetProperty(object, kPosX, from.left);
    vWorld->SetProperty(object, kPosY, from.top);
    vWorld->SetProperty(object, kPosZ, z);
    vWorld->SetScript(object, script);
    return vWorld->GetId(object);
}

void Painter::EditName() {
    const HandleGuard object(vWorld->GetCurrentObject());
    vWorld->SetName(object, objectName);
}

void Painter::Select(std::int32_t id) {
    const HandleGuard node(vWorld->GetHandleById(kRootHandle, id));
    vWorld->SetCurrentObject(node);
}

void Painter::SetCurrent(Property property, int value) {
    const HandleGuard object(vWorld->GetCurrentObject());
    vWorld->SetProperty(object, property, value);
}

void Painter::SetSize(int w, int h) {
    SetCurrent(kWidth, w);
    SetCurrent(kHeight, h);
    SetCurrent(kViewW, w);
    SetCurrent(kViewH, h);
}

void Painter::SetViewport(Box shown) {
    SetCurrent(kViewX, shown.left);
    SetCurrent(kViewY, shown.top);
    SetCurrent(kViewW, shown.right - shown.left + 1);
    SetCurrent(kViewH, shown.bottom - shown.top + 1);
}
