// Marks what the library exports; everything else is hidden.
#pragma once

#define VP_EXPORT __attribute__((visibility("default")))
