// Marks what the library exports; everything else is hidden.
#pragma once

// Stands before each declaration that is exported.
#define VP_EXPORT __attribute__((visibility("default")))
