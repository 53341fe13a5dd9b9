// One table over all dialogs and one over the panels: what they hold at first, refuse, and leave
// behind.

#include "editor/commands.h"
#include "editor/script/do_programming.h"
#include "editor/shell/do_about.h"
#include "editor/shell/do_location.h"
#include "editor/shell/do_name.h"
#include "editor/shell/do_object_clip_board.h"
#include "editor/shell/do_save_notification.h"
#include "editor/shell/do_size.h"
#include "editor/shell/do_viewport.h"
#include "editor/shell/main_frame.h"
#include "editor/shell/panel_ids.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/do_color_select.h"
#include "editor/tools/do_filter.h"
#include "editor/tools/do_font_edit.h"
#include "editor/tools/do_speckle.h"
#include "editor/tools/do_tile_clip.h"
#include "editor/tools/open_area_dialog.h"
#include "editor/view/brush.h"
#include "editor/view/selection.h"
#include "editor/view/tile_clip.h"
#include "engine/random.h"
#include "tests/support/scripted_platform.h"

using namespace platform;

namespace {

struct Row {
    std::string caption;
    std::function<void()> open;
    std::string look;
    /// By a person: "1003" clicks, "1001=a+b" types with a blank, "1001~8" slides, "1001@8,9"
    /// clicks into a picture, "1001#39" is a key there, "1001%1025" chooses of a button's menu, and
    /// "1001!a:b" types what OK refuses by a message.
    std::string changes;
    std::string after;  ///< the state by OK
    char cancel = ' ';  ///< by Cancel: 'a' as OK, '?' as it was, but asked, 'o' there is none
};

struct Forms : WorldTest {
    Forms() : frame([](int) {}) {
        EXPECT_TRUE(frame.Create());
        Reset();
    }
    void Reset() {
        world->Root().EraseAll();
        board = &AddNode(world->Root(), "Attic", 6, 5);
        board->posx = 3;
        board->posy = -4;
        board->vieww = 5;
        world->currentBoard = world->currentObject = board->id;
        ResetBrushes();
        vBrush = {7, -2, 1, 2};
        vTileClipSkip = 0;
        script.WriteProfileInt("Notify", "param", 1);
        SelectRect(vArea, HandleGuard(world->GetCurrentObject()), {3, -4}, {7, 0});
        vFadeCenterX = vFadeCenterY = vCharScrollX = vCharScrollY = 0;
        vRandom.Seed(1);
    }
    // What has changed since the last call: of the controls of a form, and of all that forms
    // change.
    std::string News(const ScriptedForm* form = nullptr) {
        std::string text;
        const auto tell = [&](const std::string& name, const std::string& now) {
            if (std::exchange(facts[name], now) != now) text += name + now + " ";
        };
        if (form)
            for (auto& c : form->layout.controls) tell(std::to_string(c.id), form->Held(c.id));
        tell("name", board->name);
        const auto& cells = board->tiles;
        const auto blank = static_cast<int>(std::count(cells.begin(), cells.end(), Dtile{}));
        const auto backup = static_cast<int>(board->undoTiles.size());
        const int notice = script.GetProfileInt("Notify", "param", 1), attribs = vShowAttrib;
        const std::pair<const char*, int> numbers[] = {
            {"x", board->posx},        {"y", board->posy},      {"z", board->posz},
            {"w", board->width},       {"h", board->height},    {"vieww", board->vieww},
            {"viewh", board->viewh},   {"viewx", board->viewx}, {"expanded", board->evieww},
            {"chr", vBrush.chr},       {"fg", vBrush.fg},       {"bg", vBrush.bg},
            {"attrib", vBrush.attrib}, {"skip", vTileClipSkip}, {"notice", notice},
            {"blank", blank},          {"backup", backup},      {"mode", vBrushMode},
            {"slot", vBrushSlot},      {"attribs", attribs},    {"stepX", vStepX},
            {"stepY", vStepY},         {"view", vViewMode},     {"panel", vPanelMode}};
        for (const auto& [name, number] : numbers) tell(name, std::to_string(number));
        return text;
    }
    void Change(ScriptedForm& form, const std::string& changes) {
        std::istringstream words(changes);
        int id = 0;
        while (words >> id) {
            const auto kind = static_cast<char>(words.get());
            std::string to;
            if (kind != ' ' && words.peek() != ' ') words >> to;
            std::replace(to.begin(), to.end(), '+', ' ');
            const bool taken = kind == '#' && form.events.OnFormKey(form, std::stoi(to));
            if (kind == '=')
                form.Type(id, to);
            else if (kind == '#' && !taken)
                (id ? form.Shown(id) : script.frame->Edit()).Key(std::stoi(to));
            else if (kind == '~')
                form.Slide(id, std::stoi(to));
            else if (kind == '%')
                script.ExpectMenu(std::stoi(to)), form.Click(id);
            else if (kind == '@')
                form.Shown(id).Click({std::stoi(to), std::stoi(to.substr(to.find(',') + 1))});
            else if (kind == '!')
                ExpectRefusal(form, id, to.substr(0, to.find(':')), to.substr(to.find(':') + 1));
            else if (!taken)
                form.Click(id);
        }
    }
    void ExpectRefusal(ScriptedForm& form, int id, const std::string& typed,
                       const std::string& message) {
        const std::string old = form.GetText(id);
        form.Type(id, typed);
        script.ExpectMessage(message);
        form.Click(kIdOk);
        EXPECT_EQ(std::exchange(form.focus, 0), id) << typed;
        EXPECT_EQ(form.result, 0) << typed;
        EXPECT_EQ(News(), "") << typed;
        form.Type(id, old);
    }
    // Paints the pictures; those that nobody has asked for are as they were.
    void ExpectShown(ScriptedForm& form, bool first = false) {
        for (const Control& c : form.layout.controls) {
            if (c.kind != ControlKind::Picture) continue;
            ScriptedWindow& window = form.Shown(c.id);
            const bool asked = first || window.invalidated;
            if (first) window.size = {179, 169};
            const auto before = std::pair(window.pixels, window.description);
            window.Paint();
            EXPECT_TRUE(asked || before == std::pair(window.pixels, window.description)) << c.id;
            Sum(form.layout.caption, window.pixels);
            Sum(form.layout.caption, window.description);
        }
    }
    // A sum of all that a form's tables say and its pictures show.
    void AddLayout(const Form& form) {
        std::string all = form.font + std::to_string(form.points);
        const auto add = [&all](auto... n) { ((all += ' ' + std::to_string(n)), ...); };
        for (const Control& c : form.controls) {
            add(form.w, form.h, c.id, int(c.kind), c.x, c.y, c.w, c.h, c.low, c.high, c.enabled);
            (all += c.text) += c.tip;
        }
        Sum(form.caption, all);
    }
    void Sum(const std::string& of, const auto& all) {
        layouts[of] = SumOf({reinterpret_cast<const char*>(all.data()), all.size() * sizeof all[0]},
                            layouts[of]);
    }
    void ExpectRow(const Row& row, int end) {
        Reset();
        News();
        script.ExpectDialog(row.caption, [&](ScriptedForm& form) {
            EXPECT_EQ(form.Look(), row.look);
            AddLayout(form.layout);
            ExpectShown(form, true);
            Change(form, row.changes);
            ExpectShown(form);
            Sum(row.caption,
                form.Look() + Outline(form.events.FormMenu()) + Outline(script.lastMenu));
            for (const Control& c : form.layout.controls) Sum(row.caption, form.GetText(c.id));
            if (row.cancel == '?' && end == kIdCancel) script.ExpectMessage("Discard Changes ?");
            if (!form.result) form.Click(end);
        });
        Do(row.open);
        Sum(row.caption, board->tiles);
        EXPECT_EQ(News(), end == kIdOk || row.cancel == 'a' ? row.after : "");
    }

    ScriptedPlatform script;
    CMainFrame frame;
    Dobject* board = nullptr;
    std::map<std::string, std::string> facts;
    std::map<std::string, unsigned long> layouts;
};

}  // namespace

TEST_F(Forms, AllOfThem) {
    const std::function<void()> size = [] { DoSize().Run(); };
    const std::function<void()> tall = [this] { board->Resize(2, 32000), DoSize().Run(); };
    const std::function<void()> color = [] { DoColorSelect().Run(); };
    const std::function<void()> brush = [this] { frame.EditBrush(); };
    const std::function<void()> clip = [] {
        constexpr std::uint16_t kNo = 65535;
        vTileClip = {{1, kNo, kNo, 0}, {kNo, 2, kNo, 0}, {3, kNo, 4, 0}, {4, 5, 6, kNo}};
        vTileClipW = vTileClipH = 2;
        DoTileClip().Run(), ClearTileClip();
    };
    const auto area = [](AreaDialog dialog) {
        return [dialog] { OpenAreaDialog(dialog, vArea, vBrush); };
    };
    const std::string look = "[ ] [ ] [x] [ ] '7 -2 1 2' ", name(50, 'n'),
                      painted = "blank5 backup30 ", filters = "[x] [x] [x] [x] ";
    const Row rows[] = {
        {"Name", [] { DoName().Run(); }, "'Attic' ", "1001=" + name + "nn", "name" + name + " "},
        {"Name", [] { DoName().Run(); }, "'Attic' ", "1001=the+hall", "namethe_hall "},
        {"Location", [] { DoLocation().Run(); }, "'3' '-4' '0' ",
         "1001=-8 1002=40000 1003=10 1001!:an+integer. 1002!2147483648:integer. 1003!1x:integer.",
         "x-8 y40000 z10 "},
        {"Size", size, "'6' '5' [x] ", "1001=8 1002=7 1001!0:between+1+and+32767. 1002!32768:32767",
         "w8 h7 vieww8 viewh7 "},
        {"Size", size, "'6' '5' [x] ", "1003 1002!0:1+and 1001=8 1002=4", "w8 h4 viewh4 blank24 "},
        // Neither side of a grid passes through one that is too large.
        {"Size", tall, "'2' '32000' [x] ", "1003 1001=32000 1002=2",
         "w32000 h2 vieww2 viewh2 blank4 ", 'o'},
        {"Viewport", [] { DoViewport().Run(); }, "'5' '5' ",
         "1001!32768:32768+by+5+tiles+is+too+large 1002!32768:6+by+32768 1001=9 1002=3",
         "w9 vieww9 viewh3 "},
        {"Speckle", area(AreaDialog::Speckle), "'50' ",
         "1002!100:between+0+and+99. 1002!-1:and+99. 1002=99", painted},
        {"Filter", area(AreaDialog::Filter), filters, "1001 1003", "chr-1 bg-1 "},
        {"Fade", area(AreaDialog::Fade), "'Left to right' =0 'Random: 0' =0 ",
         "1008%1025 1010~3 1003~1", painted},
        {"Distance Fade", area(AreaDialog::Distance),
         "'X multiplier: 0.35' =35 'Y multiplier: 0.45' =45 'Random: 4' =4 ",
         "1008%1025 1005~400 1007~205", painted},
        {"Slime fade", area(AreaDialog::Slime), "'Random: 5' =5 ", "1010~15", painted},
        {"Brush Settings", brush, look, "1001@32,0 1002@33,0 1003@44,0 1009 1004@5,5",
         "chr2 fg3 bg4 attrib3 "},
        // The arrows stop at the edges of the grids.
        {"Brush Settings", brush, look, "1002#37 1002#39 1003#38 1003#40 1003#39 1002#40 1002#37",
         "fg16 bg18 "},
        // A block has no holes, a heart has.
        {"Brush Settings", brush, look, "1002@99,90 1010 1001@176,213", "chr219 "},
        {"Brush Settings", brush, look, "1001@176,213 1002@0,0 1010 1001@48,0", "chr3 bg0 "},
        {"Brush Settings", brush, look, "1011", "chr0 fg0 bg0 "},
        {"Brush Settings", brush, look, "1002@0,0 1001@48,0 1010", "chr3 bg0 "},
        {"Color Select", color, "", "1001#38 1001#40 1001#39 1001#39 1001#37", "fg17 ", 'a'},
        {"Color Select", color, "", "1001@159,159 1001#39 1001#40", "fg255 ", 'a'},
        {"Tile ClipBoard", clip, "[ ] ", "1002", "skip1 "},
        {"Object ClipBoard", [] { DoObjectClipBoard().Run(); }, "", "", "", 'o'},
        {"Font Edit", [] { DoFontEdit().Run(); }, "=0 [x] [ ] ", "1001@99,99", "", '?'},
        {"About QUILT!", [] { DoAbout().Run(); }, "", "", "", 'o'},
        {"Save Notification", [] { DoSaveNotification::Confirm(); }, "[x] ", "1002 1002",
         "notice0 ", 'a'},
        {"Programming", [] { DoProgramming().Run(); }, "", "1002%1025 1002%1025", "", '?'},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.caption + ", row " + std::to_string(&row - rows));
        ExpectRow(row, kIdOk);
        if (row.cancel != 'o') ExpectRow(row, kIdCancel);
    }
    for (const int other : {kToProperties, kToPaint}) {
        AddLayout(script.frame->panel->layout);
        ExpectShown(*script.frame->panel, true);
        script.frame->panel->Click(other);
        script.Run();
    }
    Sum("Bar", Outline(script.frame->bar));
    std::string sums;
    for (const auto& [caption, sum] : layouts) sums += caption + std::to_string(sum % 10000) + " ";
    EXPECT_EQ(sums,
              "4657 About QUILT!639 Bar2498 Brush Settings2556 Color Select2848 Distance "
              "Fade5581 Fade4625 Filter2584 Font Edit476 Location4220 Name1374 Object "
              "ClipBoard3167 Programming1477 Save Notification9253 Size5335 Slime fade2294 "
              "Speckle2501 Tile ClipBoard6260 Viewport6576 ")
        << "look at the forms that changed, then write their sums here";
}

// What a person does in the panel or, by control 0, in the edit view; then the news, what is asked,
// and what is redrawn: the list, the edit view, the brush.
TEST_F(Forms, PanelsWriteAtOnce) {
    const struct {
        const char *changes, *outcome;
    } cases[] = {
        {"0#9", "1024'Brush - TAB' mode1 EB"},
        {"1054", "1024'Brush - Text' 1052[ ] 1054[x] mode2 B"},
        {"1053", "1024'Brush - Blender' 1053[x] 1054[ ] mode3 B"},
        {"0#9", "1024'Brush - Blender TAB' mode4 EB"},
        {"1052", "1024'Brush - Normal' 1052[x] 1053[ ] mode0 B"},
        {"1051~3", "1051=3 chr0 fg0 bg0 attrib0 slot3 B"},
        {"1051~8 1051~0", "1051=0 chr7 fg-2 bg1 attrib2 slot0 B"},
        {"1057", "1056 backup30 "},
        {"1056", "LE"},
        {"1055", "1055[x] attribs1 LE"},
        {"1049=3 1060", "1049'3' viewx1 stepX3 E"},
        {"1059", "viewx0 E"},
        // A step box may be empty for a while.
        {"1049= 1050=100", "1049'' 1050'100' stepY100 "},
        {"1050=101", "message Please enter an integer between 0 and 100. to1050 "},
        {"1013@5,5", "1049'3' dialog Brush Settings "},
        {"1058", "1076[ ] 1078[ ] 1079[ ] attribs0 panel0 LE"},
        {"0#13", "LE"},
        {"0#32", "LE"},
        {"1078", "1078[x] view2 "},
        {"1079", "1079[x] view3 "},
        {"1078", "1078[ ] view1 "},
        {"1076", "1076[x] vieww6 expanded5 LE"},
        {"1076", "1076[ ] vieww5 expanded0 LE"},
        {"1071", "dialog Name LE"},
        {"1073", "vieww6 dialog Size LE"},
        {"1074", "dialog Viewport LE"},
        {"1075", "dialog Location LE"},
        {"1072", "dialog Programming "},
        {"1077", "1055[ ] panel1 LE"},
    };
    ScriptedFrame& own = *script.frame;
    const auto preview = [&] {
        return static_cast<ScriptedWindow*>(own.panel->Picture(kBrushPreview));
    };
    EXPECT_EQ(own.panel->Look(), "'Brush - Normal' =0 [x] [ ] [ ] [ ] ! '0' '0' ");
    vBrush.fg = vBrush.bg = 9, preview()->Paint();
    EXPECT_EQ(preview()->PixelAt(0, 0), 9);
    vBrush.fg = -2, vBrush.bg = 1;
    News(own.panel.get());
    script.answersAll = true;
    for (const auto& c : cases) {
        if (preview()) preview()->invalidated = 0;
        own.List().invalidated = own.Edit().invalidated = 0;
        Change(*own.panel, c.changes);
        script.Run();
        std::string outcome = News(own.panel.get());
        for (const std::string& asked : std::exchange(script.asked, {})) outcome += asked + " ";
        if (own.panel->focus)
            outcome += "to" + std::to_string(std::exchange(own.panel->focus, 0)) + " ";
        if (own.List().invalidated) outcome += "L";
        if (own.Edit().invalidated) outcome += "E";
        if (preview() && preview()->invalidated) outcome += "B";
        EXPECT_EQ(outcome, c.outcome) << c.changes;
    }
    // There is a backup only of the node that one was taken of.
    frame.EditView().OnCommand(kCmdFill);
    EXPECT_NE(board->tiles[24], Dtile{});
    own.panel->Click(kRestoreBackup);
    EXPECT_EQ(board->tiles[24], Dtile{});
    Dobject& other = AddNode(*board, "other", 1, 1);
    world->currentObject = other.id;
    own.InvalidateAll();
    EXPECT_EQ(own.panel->Held(kRestoreBackup), "!");
    own.panel->Click(kToProperties);
    script.Run();
    own.Edit().Send(&WindowEvents::OnRButtonDown, false, Point{9, 9});
    EXPECT_EQ(own.panel->Shown(kPropViewer).invalidated, 1);
}
