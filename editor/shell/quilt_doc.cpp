#include "editor/shell/quilt_doc.h"

#include "editor/shell/do_save_notification.h"
#include "editor/shell/recent_files.h"
#include "engine/dinterface.h"
#include "engine/report.h"
#include "platform/platform.h"

#include <filesystem>
#include <fstream>

namespace {

constexpr const char* kUntitled = "Untitled";
constexpr const char* kNewFileBase = "Quilt";
constexpr const char* kPlayer = "QUILT! Runner";
constexpr const char* kFilter = "QUILT! game Files (*.zqlt)|*.zqlt||";

bool CanRead(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error) && std::ifstream(path).good();
}

int CountNodes(const Dobject& node) {
    int count = 1;
    for (const auto& child : node.children) count += CountNodes(*child);
    return count;
}

std::string Counted(std::uintmax_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string SavedText(const std::string& path) {
    const Dobject& root = vWorld->Root();
    const std::size_t boards = root.children.size();
    const std::size_t objects = static_cast<std::size_t>(CountNodes(root)) - 1 - boards;
    std::error_code error;
    return "Saved " + path + ": " + Counted(boards, "board") + ", " + Counted(objects, "object") +
           ", " + Counted(std::filesystem::file_size(path, error), "byte");
}

bool Refuse(const std::string& why) {
    vPlatform->MessageBox(why, "QUILT!", platform::Buttons::Ok, platform::Icon::Warning);
    return false;
}

}  // namespace

void CQuiltDoc::SetTitle(const std::string& text) {
    title = text;
    onTitle();
}

void CQuiltDoc::SetPathName(const std::string& path) {
    pathName = path;
    AddRecentFile(path);
    SetTitle(get_filename(path.c_str()));
}

void CQuiltDoc::SelectFirstBoard() {
    vWorld->SelectTreeRow(0);
    onWorld();
}

bool CQuiltDoc::OnNewDocument() {
    const platform::WaitCursor wait;
    kept.KeepWorld(origin);
    if (!vWorld->New()) return false;
    pathName.clear();
    origin = kNewGame;
    SetTitle(kUntitled);
    SelectFirstBoard();
    Trace("OnNewDocument Finished..\n");
    return true;
}

bool CQuiltDoc::OnOpenDocument(const std::string& path) {
    const platform::WaitCursor wait;
    if (!CanRead(path)) return Refuse("The game could not be opened:\n" + path);
    constexpr bool kNeedsWorld = true;
    kept.KeepWorld(origin);
    if (!vWorld->Load(path, kNeedsWorld)) return false;
    origin = path;
    if (std::filesystem::path(path).parent_path() == kept.Folder()) {
        // What is kept is nobody's file: to save it is to say where.
        pathName.clear();
        SetTitle(std::string(kUntitled) + ": " + get_filename(path.c_str()));
    } else {
        SetPathName(path);
    }
    SelectFirstBoard();
    return true;
}

std::string CQuiltDoc::DialogPath() const {
    if (!pathName.empty()) return pathName;
    return (std::filesystem::path(startFolder) / (std::string(kNewFileBase) + kGameExtension))
        .string();
}

bool CQuiltDoc::OnFileOpen() {
    const std::string folder = std::filesystem::path(DialogPath()).parent_path().string() + "/";
    const auto samples = (std::filesystem::path(programFolder) / kSampleGame).parent_path();
    const auto path = vPlatform->OpenFileDialog(
        {"", kFilter, kGameExtension, folder, {kept.Folder(), samples.string()}});
    return path && OnOpenDocument(*path);
}

bool CQuiltDoc::Save(const std::string& path, bool named) {
    const platform::WaitCursor wait;
    kept.KeepFile(path);
    if (!vWorld->Save(path)) return false;
    origin = path;
    kept.Forget();
    if (named) SetPathName(path);
    if (onSaved) onSaved(SavedText(path));
    return true;
}

bool CQuiltDoc::OnFileSave() {
    // Goes by the text alone, so a game that is called so is asked for its name each time.
    if (title.find(kUntitled) != std::string::npos) return OnFileSaveAs();
    return Save(pathName, false);
}

bool CQuiltDoc::OnFileSaveAs() {
    const auto path = vPlatform->SaveFileDialog({"", kFilter, kGameExtension, DialogPath()});
    return path && Save(*path, true);
}

bool CQuiltDoc::OnFileRun() {
    if (!DoSaveNotification::Confirm() || !OnFileSave()) return false;
    const std::string player = (std::filesystem::path(programFolder) / kPlayer).string();
    if (!vPlatform->StartProgram(player, pathName, programFolder))
        Trace("%s could not be started\n", player.c_str());
    return true;
}
