#include <vpath/path.h>

// Builds that must be repeatable bring the date with them.
#ifndef VPATH_BUILD_DATE
#define VPATH_BUILD_DATE __DATE__
#endif

const char* const libvpath_version = VPATH_VERSION;
const char* const libvpath_build_date = VPATH_BUILD_DATE;
