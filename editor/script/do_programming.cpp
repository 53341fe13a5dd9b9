#include "editor/script/do_programming.h"

#include "editor/script/container_styling.h"
#include "editor/script/script_colors.h"
#include "editor/script/script_hints.h"
#include "engine/command_table.h"
#include "engine/dinterface.h"
#include "engine/game_limits.h"
#include "engine/game_text.h"
#include "platform/keys.h"
#include "platform/platform.h"
#include "platform/scintilla_messages.h"

#include <algorithm>

using platform::CodeControl;
using platform::CodeEvent;
using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

std::vector<std::string> vFontFaces;

namespace {

constexpr Control kControls[] = {
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 307, 223, 29, 13, "Store the script"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 342, 223, 29, 13,
     "Leave the script as it was"},
    {kScriptText, ControlKind::Code, "Script", 7, 7, 365, 211},
    {kChangeFont, ControlKind::Button, "Change Font", 7, 223, 50, 13,
     "Choose the font of all scripts"},
};

constexpr platform::Form kForm{"Programming", 379, 243, "Courier New", 8, kControls};

constexpr const char* kFontSection = "Font";
constexpr const char* kFaceKey = "Face";
constexpr std::intptr_t kFontSize = 10;

// The look around the text, which is black on white or as the file says, whatever the desktop's
// own colours are. As 0xBBGGRR.
constexpr std::intptr_t kWhite = 0xFFFFFF;
constexpr std::uintptr_t kCaretColor = 0x000000;
constexpr std::intptr_t kSelectionColor = 0xFFD7AD;
constexpr std::intptr_t kMarginColor = 0xF2F2F2;
constexpr std::intptr_t kLineNumberColor = 0x6E6E6E;
constexpr std::uintptr_t kTipBack = 0xE1FFFF;
constexpr std::uintptr_t kTipFore = 0x202020;
constexpr std::intptr_t kTextAir = 4;  // pixels between margin and text
constexpr std::uintptr_t kListRows = 10;

std::intptr_t Text(const char* text) { return reinterpret_cast<std::intptr_t>(text); }

void FillFontFaces() {
    for (const std::string& face : vPlatform->FixedPitchFaces()) {
        if (vFontFaces.size() == kMaxFontFaces) break;
        const bool known =
            std::find(vFontFaces.begin(), vFontFaces.end(), face) != vFontFaces.end();
        if (!known && face.size() <= kMaxFaceName) vFontFaces.push_back(face);
    }
}

std::string PresentFace() {
    return vPlatform->GetProfileString(kFontSection, kFaceKey,
                                       vFontFaces.empty() ? "" : vFontFaces.front());
}

// The line numbers have four digits' room, whatever the zoom.
void FitMargin(CodeControl& code) {
    const std::intptr_t digit = code.Send(SCI_TEXTWIDTH, STYLE_DEFAULT, Text("9"));
    code.Send(SCI_SETMARGINWIDTHN, 0, 4 * digit + 4);
    code.Send(SCI_SETMARGINWIDTHN, 1, 0);
    code.Send(SCI_SETMARGINLEFT, 0, kTextAir);
}

// Every style takes the default style's face, size and background, and has a colour of its own.
void SetStyles(CodeControl& code, const std::string& face) {
    const ScriptColors colors = LoadScriptColors(kColorsFile);
    code.Send(SCI_STYLESETFORE, STYLE_DEFAULT, colors[kTextColor]);
    code.Send(SCI_STYLESETBACK, STYLE_DEFAULT, kWhite);
    code.Send(SCI_STYLESETSIZE, STYLE_DEFAULT, kFontSize);
    code.Send(SCI_STYLESETFONT, STYLE_DEFAULT, Text(face.c_str()));
    code.Send(SCI_STYLECLEARALL);
    for (const StyleRow& row : kStyleTable)
        code.Send(SCI_STYLESETFORE, static_cast<std::uintptr_t>(row.style), colors[row.color]);
    code.Send(SCI_STYLESETFORE, STYLE_LINENUMBER, kLineNumberColor);
    code.Send(SCI_STYLESETBACK, STYLE_LINENUMBER, kMarginColor);
    code.Send(SCI_CALLTIPSETBACK, kTipBack);
    code.Send(SCI_CALLTIPSETFORE, kTipFore);
    FitMargin(code);
}

void LoadScript(CodeControl& code) {
    const HandleGuard current(vWorld->GetCurrentObject());
    const char* script = vWorld->GetScript(current);
    code.Send(SCI_SETTEXT, 0, Text(script ? script : ""));
    code.Send(SCI_SETEOLMODE, SC_EOL_LF);
    code.Send(SCI_CONVERTEOLS, SC_EOL_LF);
    // The first undo does not empty the editor.
    code.Send(SCI_EMPTYUNDOBUFFER);
}

void SetListRules(CodeControl& code) {
    code.Send(SCI_AUTOCSETAUTOHIDE, 0);
    code.Send(SCI_AUTOCSETCANCELATSTART, 0);
    code.Send(SCI_AUTOCSETCHOOSESINGLE, 1);
    code.Send(SCI_AUTOCSETDROPRESTOFWORD, 0);
    code.Send(SCI_AUTOCSETMAXHEIGHT, kListRows);
    // No entry holds a blank: one that is typed ends the list and stands in the text.
    code.Send(SCI_AUTOCSTOPS, 0, Text(" "));
    // No name holds a line feed, so none is mistaken for one with a picture's number.
    code.Send(SCI_AUTOCSETTYPESEPARATOR, '\n');
}

void SetEditing(CodeControl& code) {
    code.Send(SCI_SETCARETFORE, kCaretColor);
    code.Send(SCI_SETSELFORE, 0, 0);
    code.Send(SCI_SETSELBACK, 1, kSelectionColor);
    // A scroll bar below only when a line is too long for the window.
    code.Send(SCI_SETSCROLLWIDTH, 1);
    code.Send(SCI_SETSCROLLWIDTHTRACKING, 1);
    code.Send(SCI_ASSIGNCMDKEY, 'Z' | (SCMOD_CTRL | SCMOD_SHIFT) << 16, SCI_REDO);
}

// A character whose bytes the cut has parted goes as a whole.
void DropPartCharacter(std::string& text) {
    std::size_t lead = text.size();
    for (int back = 0; back < 3 && lead > 0; ++back) {
        const auto byte = static_cast<unsigned char>(text[--lead]);
        if (byte < 0x80) return;
        if (byte < 0xC0) continue;
        const std::size_t wanted = byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
        if (text.size() - lead < wanted) text.resize(lead);
        return;
    }
}

std::string ScriptText(CodeControl& code) {
    const auto length = static_cast<std::size_t>(code.Send(SCI_GETLENGTH));
    std::string text(std::min(length, kMaxScript) + 1, '\0');
    // The length of the message counts the zero behind the text.
    code.Send(SCI_GETTEXT, text.size(), reinterpret_cast<std::intptr_t>(text.data()));
    text.pop_back();
    if (length > kMaxScript) DropPartCharacter(text);
    return text;
}

// False, with the line selected, when the script could not be saved.
bool StoreScript(CodeControl& code) {
    const HandleGuard current(vWorld->GetCurrentObject());
    const std::string script = ScriptText(code);
    const BadLine bad = FindBadLine(script);
    if (bad.why.empty()) {
        vWorld->SetScript(current, script);
        return true;
    }
    const char* name = vWorld->GetName(current);
    vPlatform->MessageBox("In the script of " + Quoted(name ? name : "") + ", line " +
                              std::to_string(bad.number) + " " + bad.why + ".\nChange the line.",
                          "Programming", platform::Buttons::Ok, platform::Icon::Warning);
    code.Send(SCI_SETSEL, bad.start, static_cast<std::intptr_t>(bad.end));
    return false;
}

void ChangeFont(FormWindow& form) {
    const std::string present = PresentFace();
    platform::Menu menu;
    for (const std::string& face : vFontFaces) {
        menu.push_back(platform::Entry(platform::MenuText(face),
                                       kFaceMenuBase + static_cast<int>(menu.size())));
        menu.back().checked = face == present;
    }
    menu.push_back(platform::Separator());
    menu.push_back(platform::Entry("&Cancel", 0));
    const int choice = form.TrackMenuBelow(kChangeFont, menu) - kFaceMenuBase;
    if (choice < 0 || static_cast<std::size_t>(choice) >= vFontFaces.size()) return;
    const std::string& face = vFontFaces[static_cast<std::size_t>(choice)];
    SetStyles(*form.Code(kScriptText), face);
    vPlatform->WriteProfileString(kFontSection, kFaceKey, face);
}

}  // namespace

DoProgramming::DoProgramming() {
    FillFontFaces();
    vSortedKeywords = SortWordList(vKeywordList);
}

void DoProgramming::Run() { vPlatform->RunDialog(kForm, *this); }

void DoProgramming::OnInit(FormWindow& form) {
    CodeControl& code = *form.Code(kScriptText);
    code.Send(SCI_SETLEXER, SCLEX_CONTAINER);
    SetStyles(code, PresentFace());
    LoadScript(code);
    SetListRules(code);
    SetEditing(code);
    form.SetFocus(kScriptText);
}

// Escape closes what is open over the text before it asks to leave the dialog. Whatever is open,
// what is typed comes out as it was typed.
bool DoProgramming::OnFormKey(FormWindow& form, int pressed) {
    CodeControl& code = *form.Code(kScriptText);
    if (pressed == platform::kKeyEnter || pressed == platform::kKeyTab) OnTakingKey(code);
    if (pressed != platform::kKeyEscape) return false;
    if (code.Send(SCI_AUTOCACTIVE) || code.Send(SCI_CALLTIPACTIVE)) return false;
    OnControl(form, platform::kIdCancel);
    return true;
}

void DoProgramming::OnCode(FormWindow& form, int id, const CodeEvent& event) {
    CodeControl* code = form.Code(id);
    if (!code) return;
    switch (event.kind) {
        case CodeEvent::Kind::CharAdded:
            OnScriptChar(*code, event.ch);
            break;
        case CodeEvent::Kind::StyleNeeded:
            StyleTo(*code, event.position);
            break;
        case CodeEvent::Kind::Changed:
            MarkChanged(*code, event.position, event.linesAdded);
            break;
        case CodeEvent::Kind::Zoomed:
            FitMargin(*code);
            break;
    }
}

void DoProgramming::OnControl(FormWindow& form, int id) {
    switch (id) {
        case kChangeFont:
            ChangeFont(form);
            break;
        case platform::kIdOk:
            if (StoreScript(*form.Code(kScriptText)))
                form.EndDialog(platform::kIdOk);
            else
                form.SetFocus(kScriptText);
            break;
        case platform::kIdCancel:
            if (vPlatform->MessageBox("Discard Changes ?", "Confirm Cancel",
                                      platform::Buttons::OkCancel, platform::Icon::Question))
                form.EndDialog(platform::kIdCancel);
            break;
        default:
            break;
    }
}
