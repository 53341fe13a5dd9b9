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
constexpr const char* kExtension = ".zqlt";
constexpr const char* kPlayer = "QUILT! Runner";
constexpr const char* kFilter = "QUILT! game Files (*.zqlt)|*.zqlt||";

bool CanRead(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error) && std::ifstream(path).good();
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
    constexpr int kFirstRow = 15;
    vWorld->ClickTreeList(0, kFirstRow);
    onWorld();
}

bool CQuiltDoc::OnNewDocument() {
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
    return (std::filesystem::path(startFolder) / (std::string(kNewFileBase) + kExtension)).string();
}

bool CQuiltDoc::OnFileOpen() {
    const std::string folder = std::filesystem::path(DialogPath()).parent_path().string() + "/";
    const auto path = vPlatform->OpenFileDialog({"", kFilter, kExtension, folder, {kept.Folder()}});
    return path && OnOpenDocument(*path);
}

bool CQuiltDoc::SaveTo(const std::string& path) {
    kept.KeepFile(path);
    if (!vWorld->Save(path)) return false;
    origin = path;
    kept.Forget();
    return true;
}

bool CQuiltDoc::OnFileSave() {
    // Goes by the text alone, so a game that is called so is asked for its name each time.
    if (title.find(kUntitled) != std::string::npos) return OnFileSaveAs();
    return SaveTo(pathName);
}

bool CQuiltDoc::OnFileSaveAs() {
    const auto path = vPlatform->SaveFileDialog({"", kFilter, kExtension, DialogPath()});
    if (!path || !SaveTo(*path)) return false;
    SetPathName(*path);
    return true;
}

bool CQuiltDoc::OnFileRun() {
    if (!DoSaveNotification::Confirm() || !OnFileSave()) return false;
    const std::string player = (std::filesystem::path(programFolder) / kPlayer).string();
    if (!vPlatform->StartProgram(player, pathName, programFolder))
        Trace("%s could not be started\n", player.c_str());
    return true;
}
