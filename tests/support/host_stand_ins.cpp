// Calls that the library takes from its host and from the C library, defined by the test program in
// their place. Each passes on to the original, so that tests of the originals work here too.
#include <dlfcn.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>

#include <hostkit/hostkit.h>

#include "support/fake_host.h"

namespace {

template <class Function>
Function* Original(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool FailsNow() {
    Ledger& ledger = TheLedger();
    ++ledger.allocations;
    if (ledger.failAt <= 0) return ledger.failAt < 0;
    if (--ledger.failAt > 0) return false;
    if (ledger.failsOn) ledger.failAt = -1;
    return true;
}

}  // namespace

Ledger& TheLedger() {
    static Ledger* const ledger = new Ledger;
    return *ledger;
}

extern "C" {

time_t time(time_t* out) noexcept {
    timespec real{};
    clock_gettime(CLOCK_REALTIME, &real);
    const time_t now = FakeHost::current() == nullptr ? real.tv_sec : FakeHost::current()->now;
    if (out != nullptr) *out = now;
    return now;
}

void* hkMalloc(size_t size) {
    static auto* const original = Original<decltype(hkMalloc)>("hkMalloc");
    if (FailsNow()) return nullptr;
    ++TheLedger().blocks;
    return original(size);
}

void* hkRealloc(void* block, size_t size) {
    static auto* const original = Original<decltype(hkRealloc)>("hkRealloc");
    if (FailsNow()) return nullptr;
    if (block == nullptr) ++TheLedger().blocks;
    return original(block, size);
}

void hkFree(void* block) {
    static auto* const original = Original<decltype(hkFree)>("hkFree");
    if (block != nullptr) --TheLedger().blocks;
    if (!TheLedger().listings.empty()) TheLedger().listings.erase(block);
    original(block);
}

void hkOutOfMemoryCheck(const void* block) {
    static auto* const original = Original<decltype(hkOutOfMemoryCheck)>("hkOutOfMemoryCheck");
    if (FakeHost::current() == nullptr) original(block);  // else the call fails and goes on
}

char* hkGetcwd(char* buffer, size_t size) {
    static auto* const original = Original<decltype(hkGetcwd)>("hkGetcwd");
    const FakeHost* host = FakeHost::current();
    if (host == nullptr) return original(buffer, size);
    if (host->cwdUnknown || buffer == nullptr || size <= host->cwd.size()) return nullptr;
    return std::strcpy(buffer, host->cwd.c_str());
}

int hkPrintf(const char* format, ...) {
    char text[8192];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (FakeHost::current() == nullptr) return Original<decltype(hkPrintf)>("hkPrintf")("%s", text);
    FakeHost::current()->notePrinted(text);
    return length;
}

}  // extern "C"
