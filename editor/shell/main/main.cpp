// quilt-edit: picks the window system and runs the application.

#include "editor/shell/program_folder.h"
#include "editor/shell/quilt_app.h"
#include "platform/qt/qt_platform.h"

