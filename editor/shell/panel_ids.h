// Control numbers of the two tool panels.
#pragma once

enum PanelControl : int {
    kBrushPreview = 1013,
    kBrushName = 1024,
    kStepX = 1049,
    kStepY = 1050,
    kSlotSlider = 1051,
    kRadioBrush = 1052,
    kRadioBlender = 1053,
    kRadioText = 1054,
    kShowAttrib = 1055,
    kRestoreBackup = 1056,
    kSaveBackup = 1057,
    kToProperties = 1058,
    kScrollBack = 1059,
    kScrollForward = 1060,

    kPropViewer = 1070,
    kNodeName = 1071,
    kNodeProgramming = 1072,
    kNodeSize = 1073,
    kNodeViewport = 1074,
    kNodeLocation = 1075,
    kShowAll = 1076,
    kToPaint = 1077,
    kFocusMode = 1078,
    kHideObjs = 1079,
};
