#include <algorithm>
#include <cstring>
#include <ctime>

#include <hostkit/hostkit.h>

namespace {

constexpr size_t kSpansKept = 64;
constexpr uint64_t kNanosecondsPerSecond = 1000000000;

// A ring: the newest span stands just before `next`.
struct Spans {
    hkMarkedTime ring[kSpansKept];
    size_t next;
    size_t count;
    int depth;
};
Spans g_spans;

}  // namespace

void hkWallClock(hkWallClockTime* out) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    out->hours = local.tm_hour;
    out->minutes = local.tm_min;
    out->seconds = local.tm_sec + static_cast<double>(now.tv_nsec) / kNanosecondsPerSecond;
}

hkTick hkPERFtic(int on) {
    if (on == 0) return 0;
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<hkTick>(now.tv_sec) * kNanosecondsPerSecond +
           static_cast<hkTick>(now.tv_nsec);
}

void hkMarkTime(const char* label, hkTick start, hkTick end) {
    hkMarkedTime& span = g_spans.ring[g_spans.next];
    span = {{}, start, end, g_spans.depth};
    const size_t kept = std::min(hkStrlen(label), sizeof span.label - 1);
    if (kept > 0) std::memcpy(span.label, label, kept);
    g_spans.next = (g_spans.next + 1) % kSpansKept;
    g_spans.count = std::min(g_spans.count + 1, kSpansKept);
}

void hkIncrementTicDepth(void) { ++g_spans.depth; }

void hkDecrementTicDepth(void) {
    if (g_spans.depth > 0) --g_spans.depth;
}

size_t hkGetMarkedTimes(hkMarkedTime* out, size_t capacity) {
    const size_t copied = std::min(capacity, g_spans.count);
    for (size_t i = 0; i < copied; ++i) {
        out[i] = g_spans.ring[(g_spans.next + kSpansKept - 1 - i) % kSpansKept];
    }
    return copied;
}
