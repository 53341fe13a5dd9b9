// Forms: a table of controls in dialog units, declared as data beside the class that uses it.
//
// A dialog unit is a quarter of the form font's mean character width across and an eighth of
// its line height down. The tool panels are forms that stay; a dialog is a form run modally.
// The backend lays the controls out and reports what the user does; the editor judges it.
#pragma once

#include "platform/menu.h"
#include "platform/window.h"

#include <cstdint>
#include <span>
#include <string>

namespace platform {

enum class ControlKind {
    Label,
    Group,  ///< a titled frame around the controls that lie inside it
    Button,
    DefaultButton,  ///< the button that Enter presses in a dialog
    CheckBox,
    Radio,         ///< the radio buttons of a form are one group
    Edit,          ///< one line of text of at most `high` characters, 0 for any number
    NumberEdit,    ///< one line in which only digits can be typed
    ReadOnlyEdit,  ///< shows text, takes no focus
    Slider,        ///< horizontal, `low` to `high`
    VSlider,       ///< vertical, `low` at the top
    Picture,       ///< a Window; the client gives its WindowEvents by PictureEvents
    Code,          ///< the text control for scripts, see CodeControl
    Page,          ///< a text that scrolls and cannot be changed, in simple HTML
};

struct Control {
    int id = 0;
    ControlKind kind = ControlKind::Label;
    const char* text = "";           ///< UTF-8, "&" before the mnemonic; also the accessible name
    int x = 0, y = 0, w = 0, h = 0;  ///< dialog units
    const char* tip = "";            ///< tool tip; also the accessible description
    int low = 0, high = 0;           ///< only of the kinds that have limits
    bool enabled = true;
};

/// The ids of the buttons that close a dialog.
inline constexpr int kIdOk = 1;
inline constexpr int kIdCancel = 2;

struct Form {
    const char* caption = "";
    int w = 0, h = 0;  ///< dialog units
    const char* font = "";
    int points = 10;
    std::span<const Control> controls;  ///< in tab order
};

/// The text control for scripts: Scintilla, driven by its own messages. Numbers, parameters and
/// results are those of its direct function; text is UTF-8.
class CodeControl {
public:
    virtual ~CodeControl() = default;

    virtual std::intptr_t Send(unsigned message, std::uintptr_t wParam = 0,
                               std::intptr_t lParam = 0) = 0;
};

/// What the text control tells.
struct CodeEvent {
    enum class Kind {
        CharAdded,    ///< the user typed `ch`; the caret stands behind it
        StyleNeeded,  ///< container styling: text up to `position` is about to be shown
        Changed,      ///< text was put in or taken out at `position`, by whatever road
        Zoomed,       ///< the text is shown larger or smaller
    };
    Kind kind = Kind::CharAdded;
    int ch = 0;
    std::intptr_t position = 0;    ///< bytes from the start of the text
    std::intptr_t linesAdded = 0;  ///< by a change; below 0 when lines went
};

/// The controls of a form that is on the screen. An id that the form does not have makes the
/// call do nothing and the result empty, 0 or false.
class FormWindow {
public:
    virtual ~FormWindow() = default;

    virtual void SetText(int id, const std::string& text) = 0;
    virtual std::string GetText(int id) const = 0;
    virtual void SetCheck(int id, bool on) = 0;  ///< check box or radio button; sends no event
    virtual bool IsChecked(int id) const = 0;
    virtual void SetValue(int id, int value) = 0;  ///< slider position; sends no event
    virtual int GetValue(int id) const = 0;
    virtual void Enable(int id, bool on) = 0;
    virtual void SetFocus(int id) = 0;  ///< a text field's text is selected as well
    virtual Window* Picture(int id) = 0;
    virtual CodeControl* Code(int id) = 0;
    /// Runs a pop-up menu whose top left corner is the control's bottom left corner; as
    /// TrackPopupMenu of Window.
    virtual int TrackMenuBelow(int id, const Menu& menu) = 0;
    virtual Size ClientSize() const = 0;  ///< window pixels
    virtual void Invalidate() = 0;        ///< asks for OnFormPaint and repaints every picture
    /// Ends a modal run with that result; nothing in a panel.
    virtual void EndDialog(int result) = 0;
};

class FormEvents {
public:
    virtual ~FormEvents() = default;

    /// Once, when all controls exist and before the form is shown. What it gives the focus has
    /// it at first, else the form's first control that takes it.
    virtual void OnInit(FormWindow& /*form*/) {}
    /// The WindowEvents of a Picture control, asked before OnInit; null shows an empty area.
    virtual WindowEvents* PictureEvents(int /*id*/) { return nullptr; }
    /// The menu bar of the form, asked before OnInit; its choices arrive at OnCommand.
    virtual Menu FormMenu() { return {}; }
    virtual void OnCommand(FormWindow& /*form*/, int /*command*/) {}
    /// A key (platform::Key) without Ctrl and Alt, before any control sees it; true takes it. In
    /// a panel Enter and Escape then give the keyboard back, as every click does.
    virtual bool OnFormKey(FormWindow& /*form*/, int /*key*/) { return false; }
    /// What the text control has to tell.
    virtual void OnCode(FormWindow& /*form*/, int /*id*/, const CodeEvent& /*event*/) {}
    /// A button, check box or radio button was clicked, or a key did the same. A check box or
    /// radio button has already changed. In a dialog kIdOk and kIdCancel (also Enter, Escape
    /// and the close box) arrive here; the client ends the run by EndDialog.
    virtual void OnControl(FormWindow& /*form*/, int /*id*/) {}
    /// A text field's text was changed by the user, or a slider was moved or dragged.
    virtual void OnChange(FormWindow& /*form*/, int /*id*/) {}
    /// The form repaints: a panel puts its controls in step with the world here.
    virtual void OnFormPaint(FormWindow& /*form*/) {}
};

}  // namespace platform
