// The one place that includes Allegro. The program keeps its own main function, and Allegro is
// used for memory bitmaps, files and the trace only: no display, no input.
#pragma once

#define ALLEGRO_NO_MAGIC_MAIN
#include <allegro.h>
