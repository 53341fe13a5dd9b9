// The pictures of the manual, chapter by chapter, taken from the running program with the sample
// game open.
#pragma once

// Before Qt, which takes the word slots for itself.
#include "editor/shell/quilt_app.h"
#include "engine/dinterface.h"

#include "docs/screens/camera.h"
#include "platform/qt/qt_frame.h"

struct Studio {
    CQuiltApp& app;
    QtFrame& window;
    Camera& camera;

    QWidget& Edit() const { return *window.findChild<QWidget*>(QStringLiteral("edit")); }
    QWidget& List() const { return *window.findChild<QWidget*>(QStringLiteral("list")); }
    QWidget& Panel() const { return *window.findChild<QWidget*>(QStringLiteral("panel")); }

    /// Selects an object by its name, or the board itself when the name is empty.
    void Select(const char* board, const char* object = "");
    void ShowPanel(PanelMode panelMode);
};

/// The main window with each panel, and the menus.
void TakeWindows(Studio& studio);
/// Every dialog but that of the scripts.
void TakeDialogs(Studio& studio);
/// Programming: its colours, lists and tips.
void TakeScripts(Studio& studio);
