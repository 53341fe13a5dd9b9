// The paint panel: brush modes, brush slots, backup and restore, and how far F1 and F2 go.
// It holds no data of its own; all it shows is read when it paints, all it changes is written
// at once.
#pragma once

#include "editor/shell/panel_host.h"
#include "editor/tools/brush_preview.h"
#include "platform/form.h"

class CPaintView final : public platform::FormEvents {
public:
    explicit CPaintView(PanelHost& frame) : host(frame) {}

    static const platform::Form& Layout();

    platform::WindowEvents* PictureEvents(int id) override;
    void OnInit(platform::FormWindow& form) override;
    bool OnFormKey(platform::FormWindow& form, int code) override;
    void OnControl(platform::FormWindow& form, int id) override;
    void OnChange(platform::FormWindow& form, int id) override;
    void OnFormPaint(platform::FormWindow& form) override;

private:
    Change Run(platform::FormWindow& form, int id);
    void ReadStep(platform::FormWindow& form, int id);

    PanelHost& host;
    BrushPreview preview{PreviewRole::Panel};
};
