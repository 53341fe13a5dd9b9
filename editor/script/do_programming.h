// The dialog "Programming": the script of the current object in a text editor with colours,
// completion lists and tips.
#pragma once

#include "platform/form.h"

#include <string>
#include <vector>

/// Control numbers.
enum ProgrammingControl : int {
    kScriptText = 1001,
    kChangeFont,
};

/// The installed fixed-pitch faces, as far as dialogs have asked. Only grows.
extern std::vector<std::string> vFontFaces;
inline constexpr std::size_t kMaxFontFaces = 200;
inline constexpr std::size_t kMaxFaceName = 63;
inline constexpr int kFaceMenuBase = 1024;  ///< the font menu's first command

/// What a script may have at most, in bytes; OK cuts off the rest.
inline constexpr std::size_t kMaxScript = 65'534;

class DoProgramming final : public platform::FormEvents {
public:
    DoProgramming();

    /// Modal. OK stores the text as the current object's script, with line feeds alone.
    void Run();

    void OnInit(platform::FormWindow& form) override;
    bool OnFormKey(platform::FormWindow& form, int pressed) override;
    void OnCode(platform::FormWindow& form, int id, const platform::CodeEvent& event) override;
    void OnControl(platform::FormWindow& form, int id) override;
};
