// The program object: brings up Allegro and the world, makes the main window and the document,
// and opens the first game.
#pragma once

#include "editor/shell/main_frame.h"
#include "editor/shell/quilt_doc.h"
#include "engine/dinterface.h"

#include <memory>
#include <string>

class CQuiltApp {
public:
    /// Keeps games in a folder; with none it keeps nothing.
    explicit CQuiltApp(const std::string& keptFolder = "");
    CQuiltApp(const CQuiltApp&) = delete;
    CQuiltApp& operator=(const CQuiltApp&) = delete;
    /// Leaves, and frees the compositor's masks, then the world.
    ~CQuiltApp();

    /// Start-up, up to the shown window. `game` is the path on the command line, empty for a
    /// new game; a relative one counts from the folder in which the user stands.
    /// `programFolder`, absolute, becomes the working directory. False when the program cannot
    /// go on, which has been reported.
    bool InitInstance(const std::string& programFolder, const std::string& game);

    /// Keeps the world if it was altered: to be called when the program ends.
    void KeepWorld();
    /// The same at the end of the program, which leaves no session behind: when it is told to end,
    /// else by the destructor.
    void Leave();

    CMainFrame& Frame() { return *frame; }
    CQuiltDoc& Document() { return *document; }
    /// What this run keeps.
    KeptGames& Kept() { return kept; }

private:
    void OnCommand(int command);
    void OpenDropped(const std::string& path);
    void OpenRecent(std::string path);
    bool OpenFirstDocument(const std::string& game);
    void OfferLost();

    struct DatafileCloser {
        void operator()(DATAFILE* file) const { unload_datafile(file); }
    };

    KeptGames kept;
    std::unique_ptr<DATAFILE, DatafileCloser> library;
    std::unique_ptr<Dinterface> world;
    std::unique_ptr<CMainFrame> frame;
    std::unique_ptr<CQuiltDoc> document;
};
