// The document: where the world came from and where Save puts it.
//
// It does not know whether the world was altered since, and its commands ask no questions.
#pragma once

#include "engine/kept_games.h"

#include <functional>
#include <string>

inline constexpr const char* kGameExtension = ".zqlt";
/// From the program's folder.
inline constexpr const char* kSampleGame = "Library/samples/lamplight.zqlt";

class CQuiltDoc {
public:
    /// `changed` is called when the title, the path or the list of recent files has changed,
    /// `loaded` when another world stands in place of the old one.
    /// `net` outlives the document.
    CQuiltDoc(KeptGames& net, std::function<void()> changed, std::function<void()> loaded)
        : kept(net), onTitle(std::move(changed)), onWorld(std::move(loaded)) {}

    const std::string& Title() const { return title; }
    const std::string& PathName() const { return pathName; }

    /// The commands. False when nothing was done, because the user cancelled or because it
    /// failed, which has been reported; title, path and the world on the screen then stay.
    bool OnNewDocument();
    bool OnOpenDocument(const std::string& path);
    bool OnFileOpen();
    bool OnFileSave();
    bool OnFileSaveAs();
    /// Saves the game and starts the player on it, without waiting for it. True when the game
    /// has been saved, also when there is no player.
    bool OnFileRun();

    /// The file whose content the world had when it was opened or saved; for the net.
    const std::string& Origin() const { return origin; }

    /// Where to say what has been saved; nowhere at first.
    void SetNotice(std::function<void(const std::string&)> show) { onSaved = std::move(show); }
    /// The program's own folder, where the player lies.
    void SetProgramFolder(const std::string& folder) { programFolder = folder; }
    /// The folder in which file dialogs start while the document has no file of its own.
    void SetStartFolder(const std::string& folder) { startFolder = folder; }

private:
    void SetTitle(const std::string& text);
    /// Also enters the path in the list of recent files and makes its file name the title.
    void SetPathName(const std::string& path);
    void SelectFirstBoard();
    /// `named`: the path was asked for just now and becomes the document's.
    bool Save(const std::string& path, bool named);
    std::string DialogPath() const;

    KeptGames& kept;
    std::function<void()> onTitle;
    std::function<void()> onWorld;
    std::function<void(const std::string&)> onSaved;
    std::string title;
    std::string pathName;
    std::string origin;
    std::string startFolder;
    std::string programFolder;
};
