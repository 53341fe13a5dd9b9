// The properties panel: the current node, and what the edit view composes.
#pragma once

#include "editor/shell/panel_host.h"
#include "editor/tools/prop_viewer.h"
#include "platform/form.h"

class CToolView final : public platform::FormEvents {
public:
    explicit CToolView(PanelHost& frame) : host(frame) {}

    static const platform::Form& Layout();

    platform::WindowEvents* PictureEvents(int id) override;
    void OnInit(platform::FormWindow& form) override;
    void OnControl(platform::FormWindow& form, int id) override;
    void OnFormPaint(platform::FormWindow& form) override;

private:
    Change Run(platform::FormWindow& form, int id);

    PanelHost& host;
    PropViewer viewer;
};
