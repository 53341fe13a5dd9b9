#include "editor/tools/open_area_dialog.h"

#include "editor/tools/do_distance.h"
#include "editor/tools/do_fade.h"
#include "editor/tools/do_filter.h"
#include "editor/tools/do_slime.h"
#include "editor/tools/do_speckle.h"

bool OpenAreaDialog(AreaDialog dialog, TileArea& area) {
    switch (dialog) {
        case AreaDialog::Fade:
            return DoFade(area).Run();
        case AreaDialog::Distance:
            return DoDistance(area).Run();
        case AreaDialog::Slime:
            return DoSlime(area).Run();
        case AreaDialog::Speckle:
            return DoSpeckle(area).Run();
        case AreaDialog::Filter:
            return DoFilter().Run();
    }
    return false;
}
