// The robot's own folder, and the names that it gives to file dialogs.
//
// Everything that a run writes lies in one fresh folder under the system's temporary one:
// games, clipboards, settings and the program's own folder (a copy of the data files, and a
// player that does nothing).
#pragma once

#include "tests/robot/chance.h"

#include <string>

class QFileDialog;

class Files {
public:
    /// Makes the folder with good and bad files of every kind. Needs Allegro; `chance` decides
    /// what is in them. `programFolder` holds Library.
    Files(const std::string& programFolder, Chance& chance);
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;

    /// To be called when all is well: after a finding the folder stays.
    void Remove();

    std::string operator/(const std::string& name) const { return folder + "/" + name; }
    /// Where the robot's copy of the program lies.
    std::string ProgramFolder() const { return *this / "program"; }
    /// A text with the folder's name, which differs from run to run, taken out.
    std::string Shown(std::string text) const;

    /// Copies a game into the folder and gives the copy's path.
    std::string TakeIn(const std::string& game) const;

    struct Answer {
        std::string name;
        bool mayFail = false;  ///< the program may report what is wrong with it
    };
    /// Something to type into a file dialog of the program.
    Answer AnswerFor(const QFileDialog& dialog, Chance& chance) const;
    /// A game for the command line, or nothing.
    Answer FirstGame(Chance& chance) const;

    /// Whether a report names a file that is no good one.
    static bool NamesBadFile(const std::string& text);

private:
    void MakeGoodFiles(Chance& chance);
    void MakeClips();
    void MakeBadFiles();

    std::string folder;
};
