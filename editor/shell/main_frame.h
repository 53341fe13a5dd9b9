// The main window: menu bar, status bar and the three panes. What concerns more than one pane is
// decided here, as who stands in the lower pane and what is redrawn; the work is done in the panes.
#pragma once

#include "editor/shell/paint_view.h"
#include "editor/shell/panel_host.h"
#include "editor/shell/select_view.h"
#include "editor/shell/tool_view.h"
#include "editor/view/quilt_view.h"
#include "platform/platform.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class CMainFrame final : public platform::FrameEvents, public PanelHost {
public:
    /// `onCommand` takes the commands that are not the frame's own: those of the document and
    /// the application. `onFile` takes the files that are dropped on the window.
    explicit CMainFrame(
        std::function<void(int)> onCommand,
        std::function<void(const std::string&)> onFile = [](const std::string&) {});
    CMainFrame(const CMainFrame&) = delete;
    CMainFrame& operator=(const CMainFrame&) = delete;
    ~CMainFrame() override;

    /// Makes the window with its panes, hidden. False, after a message, when that fails.
    bool Create();
    void Show();
    void Close() { frame->Close(); }

    void SetTitle(const std::string& title);
    /// Builds the menu bar anew, for another list of recent files.
    void UpdateMenuBar();
    /// The list as the menu bar shows it; another editor may have changed the stored one since.
    const std::vector<std::string>& ShownRecentFiles() const { return shownRecent; }

    platform::Frame& Window() { return *frame; }
    CQuiltView& EditView() { return quiltView; }
    CSelectView& List() { return selectView; }

    // FrameEvents
    void OnCommand(int command) override;
    bool OnClose() override;
    void OnDrop(const std::string& path) override;
    void OnSize(platform::Size client) override;
    void OnFramePaint() override;

    // PanelHost
    void Changed(Change what) override;
    bool EditBrush() override;
    bool RunAreaDialog(AreaDialog dialog, TileArea& area, Brush& brush) override;
    void EditName() override;
    void RunNodeCommand(int command) override { selectView.OnCommand(command); }
    void EndBox() override { quiltView.EndBox(); }
    void FocusEditView() override { editWindow->SetFocus(); }
    void PostCommand(int command) override { vPlatform->PostCommand(command); }

private:
    std::vector<std::string> shownRecent;
    bool CreatePanes();
    void ShowPanel(int command);
    void RedrawPicture(int id);
    Change Run(int command);
    void ShowVideoMode();

    std::function<void(int)> otherCommand;
    std::function<void(const std::string&)> onDrop;
    CSelectView selectView;
    CQuiltView quiltView;
    CPaintView paintView;
    CToolView toolView;
    std::unique_ptr<platform::Frame> frame;
    platform::Window* editWindow = nullptr;
    platform::FormWindow* panel = nullptr;  ///< what stands in the lower pane
    bool vPanesReady = false;
};
