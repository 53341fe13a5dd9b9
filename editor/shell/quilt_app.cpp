#include "editor/shell/quilt_app.h"

#include "editor/commands.h"
#include "editor/shell/do_object_clip_board.h"
#include "editor/shell/recent_files.h"
#include "engine/bitmap.h"
#include "engine/compositor.h"
#include "engine/report.h"
#include "platform/platform.h"

#include <array>
#include <cctype>
#include <cstdlib>
#include <filesystem>

namespace {

constexpr const char* kTraceVariable = "QUILT_TRACE";

void ShowEngineMessage(const char* text, const char* caption) {
    vPlatform->MessageBox(text, caption, platform::Buttons::Ok, platform::Icon::Warning);
}

std::array<std::uint32_t, 256> ScreenColors(const RGB* palette) {
    // Allegro's components have six bits; repeating the high ones makes 63 full brightness.
    const auto wide = [](int six) { return static_cast<std::uint32_t>((six << 2) | (six >> 4)); };
    std::array<std::uint32_t, 256> colors{};
    for (std::size_t i = 0; i < colors.size(); ++i)
        colors[i] = wide(palette[i].r) << 16 | wide(palette[i].g) << 8 | wide(palette[i].b);
    return colors;
}

}  // namespace

CQuiltApp::CQuiltApp(const std::string& keptFolder) : kept(keptFolder) {}

CQuiltApp::~CQuiltApp() {
    Leave();
    frame.reset();
    vClipBuffer.reset();
    vSubClipBuffer.reset();
    world.reset();
    library.reset();
    vMessageHook = nullptr;
}

bool CQuiltApp::OpenFirstDocument(const std::string& game) {
    return game.empty() ? document->OnNewDocument() : document->OnOpenDocument(game);
}

bool CQuiltApp::InitInstance(const std::string& programFolder, const std::string& game) {
    std::error_code error;
    const std::string startFolder = std::filesystem::current_path(error).string();
    const std::string path = game.empty() ? game : std::filesystem::absolute(game).string();
    std::filesystem::current_path(programFolder, error);
    StartTrace(std::getenv(kTraceVariable));
    vMessageHook = ShowEngineMessage;
    if (!StartAllegro()) {
        Fatal("Unable to start Allegro", __FILE__, __LINE__);
        return false;
    }
    library.reset(load_datafile("Library/default.dat"));
    if (!library) Fatal("Unable to load default.dat", __FILE__, __LINE__);
    world = std::make_unique<Dinterface>();
    vPlatform->SetPalette(ScreenColors(world->GetFont()->GetPalette()));

    frame = std::make_unique<CMainFrame>([this](int command) { OnCommand(command); },
                                         [this](const std::string& file) { OpenDropped(file); });
    if (!frame->Create()) return false;
    document = std::make_unique<CQuiltDoc>(
        kept,
        [this] {
            frame->SetTitle(document->Title());
            frame->UpdateMenuBar();
        },
        [this] { frame->Changed(Change::World); });
    document->SetNotice([this](const std::string& text) { frame->Window().ShowNotice(text); });
    document->SetStartFolder(startFolder);
    document->SetProgramFolder(programFolder);
    if (!OpenFirstDocument(path)) return false;
    Trace("Break ...\n");
    frame->EditView().onShown = [this] { kept.KeepNowAndThen(document->Origin()); };
    frame->Show();
    Trace("Break2 ...\n");
    OfferLost();
    return true;
}

void CQuiltApp::Leave() {
    KeepWorld();
    kept.EndSession();
}

void CQuiltApp::KeepWorld() {
    if (document) kept.KeepWorld(document->Origin());
}

void CQuiltApp::OfferLost() {
    const std::string lost = kept.TakeLost();
    if (lost.empty()) return;
    const std::string text =
        "QUILT! did not come to its end the last time. This was kept:\n" + lost + "\nOpen it?";
    if (vPlatform->MessageBox(text, "QUILT!", platform::Buttons::OkCancel,
                              platform::Icon::Question))
        document->OnOpenDocument(lost);
}

void CQuiltApp::OpenDropped(const std::string& path) {
    std::string ending = std::filesystem::path(path).extension().string();
    for (char& c : ending) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (ending == kGameExtension)
        document->OnOpenDocument(path);
    else if (ending == kObjectExtension)
        DoObjectClipBoard::Show(path);
    else
        ShowEngineMessage(("QUILT! takes one game (.zqlt) or object file (.zobj) at a time." +
                           (path.empty() ? "" : "\nThis is neither:\n" + path))
                              .c_str(),
                          "QUILT!");
}

// By value: the list that the path comes from changes meanwhile.
void CQuiltApp::OpenRecent(std::string path) {
    std::error_code error;
    if (document->OnOpenDocument(path) || std::filesystem::exists(path, error)) return;
    RemoveRecentFile(path);
    frame->UpdateMenuBar();
}

void CQuiltApp::OnCommand(int command) {
    switch (command) {
        case kCmdFileNew:
            document->OnNewDocument();
            return;
        case kCmdFileOpen:
            document->OnFileOpen();
            return;
        case kCmdFileSave:
            document->OnFileSave();
            return;
        case kCmdFileSaveAs:
            document->OnFileSaveAs();
            return;
        case kCmdOpenSample:
            document->OnOpenDocument(std::filesystem::absolute(kSampleGame).string());
            return;
        case kCmdRun:
            document->OnFileRun();
            return;
        default:
            break;
    }
    const std::vector<std::string>& recent = frame->ShownRecentFiles();
    const int index = command - kCmdFileRecent;
    if (index >= 0 && index < static_cast<int>(recent.size()))
        OpenRecent(recent[static_cast<std::size_t>(index)]);
}
