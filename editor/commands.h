// Every command number of the program. Menus, keys and handlers meet by these.
#pragma once

enum Command : int {
    kCmdNone = 0,

    // A choice from a pick list is this plus the id of a node.
    kCmdPickBase = 1024,
    kCmdPickEnd = 32768,

    // The pop-up menu of the edit view's area tools.
    kCmdToolCancel = 32802,
    kCmdFill = 32794,
    kCmdFadeNormal = 32796,
    kCmdFadeDistance = 32797,
    kCmdFadeSlime = 32798,
    kCmdSpeckle = 32795,
    kCmdFloodFill = 32806,
    kCmdFloodFadeNormal = 32807,
    kCmdFloodFadeDistance = 32808,
    kCmdFloodFadeSlime = 32809,
    kCmdFloodSpeckle = 32810,
    kCmdSameAsFill = 32811,
    kCmdSameAsFadeNormal = 32813,
    kCmdSameAsFadeDistance = 32814,
    kCmdSameAsSpeckle = 32812,
    kCmdReplaceFill = 32819,
    kCmdReplaceSpeckle = 32820,
    kCmdReplaceFloodFill = 32821,
    kCmdReplaceFloodSpeckle = 32822,
    kCmdReplaceSameAsFill = 32823,
    kCmdReplaceSameAsSpeckle = 32824,
    kCmdZoomIn = 32825,
    kCmdZoomOut = 32826,
    kCmdCopyFill = 32851,
    kCmdCopyFlood = 32852,
    kCmdCopySameAs = 32853,
    kCmdPasteFill = 32854,
    kCmdPasteFlood = 32855,
    kCmdPasteSameAs = 32856,
    kCmdPasteSprite = 32901,
    kCmdRuler = 32896,
    kCmdMakeObject = 32899,

    // The pop-up menu of the primitives.
    kCmdPrimCancel = 32828,
    kCmdLineFill = 32829,
    kCmdLineFadeNormal = 32831,
    kCmdLineFadeDistance = 32832,
    kCmdLineSpeckle = 32834,
    kCmdRectFill = 32836,
    kCmdRectFadeNormal = 32838,
    kCmdRectFadeDistance = 32839,
    kCmdRectSpeckle = 32837,
    kCmdCircleFill = 32841,
    kCmdCircleFadeNormal = 32844,
    kCmdCircleFadeDistance = 32845,
    kCmdCircleSpeckle = 32843,
    kCmdBlendFadeFill = 32847,
    kCmdBlendFadeFlood = 32848,
    kCmdBlendFadeSameAs = 32849,

    // The two pop-up menus of the list of boards and objects. A move is the base plus the id of
    // the new parent, however large that is: no other menu is up at the time.
    kCmdAddBoard = 32910,
    kCmdAddObject = 32911,
    kCmdDuplicateBoard = 32912,
    kCmdPasteBoard = 32913,
    kCmdPasteOnBoard = 32914,
    kCmdPasteOnObject = 32915,
    kCmdCopyBoard = 32916,
    kCmdCopyObject = 32917,
    kCmdDelete = 32918,
    kCmdBoardName = 32919,
    kCmdObjectName = 32920,
    kCmdProgramming = 32921,
    kCmdLocation = 32922,
    kCmdSize = 32923,
    kCmdViewport = 32924,
    kCmdExpandAll = 32925,
    kCmdHide = 32926,
    kCmdMoveBase = 33000,

    // The menu bar.
    kCmdFileNew = 57600,
    kCmdFileOpen = 57601,
    kCmdFileSave = 57603,
    kCmdFileSaveAs = 57604,
    kCmdFileRecent = 57616,  ///< and the numbers behind it, one for each recent file
    kCmdFileExit = 57665,
    kCmdAbout = 57664,
    kCmdStatusBar = 59393,
    kCmdRun = 33100,
    kCmdVideoMode = 33110,  ///< and the three numbers behind it
    kCmdWindowed = 33114,
    kCmdFontEdit = 33120,
    kCmdTileClipboard = 33121,
    kCmdObjectClipboard = 33122,

    // Posted, never on a menu.
    kCmdOpenSample = 165534,
    kCmdShowPaintPanel = 165535,
    kCmdShowPropertiesPanel = 165536,
};
