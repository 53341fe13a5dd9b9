// The paint panel: the brush's mode and slots, the backup of the tiles and the scroll steps.
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
    void SetMode(platform::FormWindow& form, int mode);
    void ReadStep(platform::FormWindow& form, int id);

    PanelHost& host;
    BrushPreview preview;
};
