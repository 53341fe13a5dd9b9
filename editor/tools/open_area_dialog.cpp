#include "editor/tools/open_area_dialog.h"

#include "editor/tools/do_distance.h"
#include "editor/tools/do_fade.h"
#include "editor/tools/do_filter.h"
#include "editor/tools/do_slime.h"
#include "editor/tools/do_speckle.h"

bool OpenAreaDialog(AreaDialog dialog, TileArea& area, Brush& brush) {
    switch (dialog) {
        case AreaDialog::Fade:
            return DoFade(area, brush).Run();
        case AreaDialog::Distance:
            return DoDistance(area, brush).Run();
        case AreaDialog::Slime:
            return DoSlime(area, brush).Run();
        case AreaDialog::Speckle:
            return DoSpeckle(area, brush).Run();
        case AreaDialog::Filter:
            return DoFilter(brush).Run();
    }
    return false;
}
