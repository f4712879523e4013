// The clock by which time stamps are judged.
#pragma once

#include <cstdint>
#include <ctime>

// Now, in whole seconds. The one place where the library asks for the time of day.
inline int64_t CurrentSeconds() { return static_cast<int64_t>(std::time(nullptr)); }
