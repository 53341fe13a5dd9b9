// The panes around an edit view: they write down what they are asked, a letter each.
#pragma once

#include "editor/view/quilt_view.h"

#include <string>

struct HostLog : ViewHost {
    void RedrawTree() override { told += 't'; }
    void RedrawPropViewer() override { told += 'v'; }
    void RedrawBrushPreview() override { told += 'p'; }
    void ShowBrushMode() override { told += 'm'; }
    bool EditBrush() override { return false; }
    bool RunAreaDialog(AreaDialog) override { return false; }
    void EditName() override { told += 'n'; }
    void RedrawAll() override { told += 'r'; }

    std::string told;
};
