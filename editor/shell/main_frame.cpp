#include "editor/shell/main_frame.h"

#include "editor/commands.h"
#include "editor/shell/do_about.h"
#include "editor/shell/do_name.h"
#include "editor/shell/do_object_clip_board.h"
#include "editor/shell/menu_bar.h"
#include "editor/shell/panel_ids.h"
#include "editor/shell/recent_files.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/do_font_edit.h"
#include "editor/tools/do_tile_clip.h"
#include "editor/tools/open_area_dialog.h"
#include "engine/dinterface.h"

using platform::Buttons;
using platform::Icon;
using platform::Pane;

namespace {

constexpr int kListWidth = 200;
constexpr int kPanelHeight = 135;
constexpr const char* kWindowTitle = "Tessel Works's QUILT!";
constexpr const char* kIdleMessage =
    "Use arrow keys to move cursor.  Ctrl + Left mouse button drags the view.";

}  // namespace

CMainFrame::CMainFrame(std::function<void(int)> onCommand,
                       std::function<void(const std::string&)> onFile)
    : otherCommand(std::move(onCommand)),
      onDrop(std::move(onFile)),
      selectView(*this),
      quiltView(*this),
      paintView(*this),
      toolView(*this) {}

CMainFrame::~CMainFrame() {
    // The windows go before the views that they report to.
    frame.reset();
}

bool CMainFrame::CreatePanes() {
    platform::Window* list = frame->CreatePane(Pane::Left, selectView);
    platform::Window* edit = frame->CreatePane(Pane::Upper, quiltView);
    if (!list || !edit) return false;
    selectView.Attach(*list);
    quiltView.Attach(*edit);
    list->SetName("Board / Object List");
    edit->SetName("Edit view");
    editWindow = edit;
    panel = frame->CreateFormPane(Pane::Lower, CPaintView::Layout(), paintView);
    if (!panel) return false;
    frame->SetLeftWidth(kListWidth);
    frame->SetLowerHeight(kPanelHeight);
    frame->SetHomeFocus(edit);
    vPanesReady = true;
    return true;
}

bool CMainFrame::Create() {
    ResetViewState();
    frame = vPlatform->CreateFrame(*this);
    if (!frame || !CreatePanes()) {
        vPlatform->MessageBox("Error setting up splitter frames!", "Init Error!", Buttons::Ok,
                              Icon::Stop);
        return false;
    }
    frame->SetIdleMessage(kIdleMessage);
    frame->ShowStatusBar(true);
    UpdateMenuBar();
    return true;
}

void CMainFrame::Show() { frame->Show(); }

void CMainFrame::SetTitle(const std::string& title) {
    frame->SetCaption(title + " - " + kWindowTitle);
}

void CMainFrame::UpdateMenuBar() {
    shownRecent = RecentFiles();
    frame->SetMenuBar(MakeMenuBar(shownRecent));
    OnFramePaint();
}

void CMainFrame::ShowVideoMode() {
    for (int mode = 0; mode < kVideoModes; ++mode)
        frame->CheckMenuItem(kCmdVideoMode + mode, mode == vWorld->videoMode);
    frame->CheckMenuItem(kCmdWindowed, vWorld->windowed != 0);
}

void CMainFrame::OnFramePaint() {
    ShowVideoMode();
    frame->CheckMenuItem(kCmdStatusBar, frame->IsStatusBarShown());
}

void CMainFrame::OnSize(platform::Size) {
    if (vPanesReady) frame->SetLowerHeight(kPanelHeight);
}

bool CMainFrame::OnClose() {
    return vPlatform->MessageBox("Do you want to quit?", "Confirm Quit", Buttons::OkCancel,
                                 Icon::Question);
}

void CMainFrame::ShowPanel(int command) {
    vShowAttrib = false;
    if (command == kCmdShowPaintPanel)
        panel = frame->CreateFormPane(Pane::Lower, CPaintView::Layout(), paintView);
    else
        panel = frame->CreateFormPane(Pane::Lower, CToolView::Layout(), toolView);
}

// Only the panel that is up has the picture.
void CMainFrame::RedrawPicture(int id) {
    if (platform::Window* picture = panel ? panel->Picture(id) : nullptr) picture->Invalidate();
}

void CMainFrame::Changed(Change what) {
    const bool paints = panel && panel->Picture(kBrushPreview);
    switch (what) {
        case Change::Nothing:
            break;
        case Change::View:
            quiltView.Invalidate();
            break;
        case Change::Selection:
            selectView.Invalidate();
            [[fallthrough]];
        case Change::Place:
            quiltView.Invalidate();
            RedrawPicture(kPropViewer);
            break;
        case Change::List:
            selectView.Invalidate();
            break;
        case Change::BrushMode:
            if (paints) paintView.OnFormPaint(*panel);
            [[fallthrough]];
        case Change::Brush:
            RedrawPicture(kBrushPreview);
            break;
        case Change::BrushDialog:
            if (paints) panel->Invalidate();
            break;
        case Change::World:
            frame->InvalidateAll();
            break;
    }
}

bool CMainFrame::EditBrush() { return DoBrushSettings().Run(); }

bool CMainFrame::RunAreaDialog(AreaDialog dialog, TileArea& area, Brush& brush) {
    return OpenAreaDialog(dialog, area, brush);
}

void CMainFrame::EditName() { DoName().Run(); }

void CMainFrame::OnDrop(const std::string& path) {
    quiltView.EndBox();
    onDrop(path);
}

void CMainFrame::OnCommand(int command) {
    quiltView.EndBox();
    Changed(Run(command));
    frame->CheckMenuItem(kCmdStatusBar, frame->IsStatusBarShown());
}

Change CMainFrame::Run(int command) {
    if (command >= kCmdVideoMode && command < kCmdVideoMode + kVideoModes) {
        vWorld->videoMode = command - kCmdVideoMode;
        ShowVideoMode();
        return Change::World;
    }
    switch (command) {
        case kCmdShowPaintPanel:
        case kCmdShowPropertiesPanel:
            ShowPanel(command);
            return Change::World;
        case kCmdWindowed:
            vWorld->windowed = vWorld->windowed == 0;
            ShowVideoMode();
            break;
        case kCmdStatusBar:
            frame->ShowStatusBar(!frame->IsStatusBarShown());
            break;
        case kCmdFontEdit:
            DoFontEdit().Run();
            return Change::World;
        case kCmdTileClipboard:
            DoTileClip().Run();
            break;
        case kCmdObjectClipboard:
            DoObjectClipBoard().Run();
            break;
        case kCmdAbout:
            if (DoAbout().Run()) PostCommand(kCmdOpenSample);
            break;
        case kCmdFileExit:
            Close();
            break;
        default:
            otherCommand(command);
            break;
    }
    return Change::Nothing;
}
