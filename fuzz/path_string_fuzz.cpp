// Path strings: whatever was put on a path in one string stays there when put on again, comes back
// when it has been replaced, and can be taken off.
#include "fuzzed_path.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    FuzzedPath on;
    vpSetIOFcns(
        on.path, FakeHost::list, [](vpPath, const char*) { return vpDirAccessible; },
        FakeHost::isReadable, [](vpPath, const char*) { return true; }, FakeHost::modificationTime);
    const auto where = static_cast<vpDirAddLocn>(input.below(2));
    const std::string first = input.text();
    const std::string second = input.text();
    vpAddDirsString(on.path, first.c_str(), where);
    on.check();
    const int before = vpGetNumPathDirs(on.path);
    vpAddDirsString(on.path, first.c_str(), where);
    CHECK(vpGetNumPathDirs(on.path) == before);
    vpReplacePath(on.path, second.c_str());
    on.check();
    vpReplacePath(on.path, first.c_str());
    on.check();
    CHECK(vpGetNumPathDirs(on.path) == before);
    vpDir dir = vpGetNullDir(on.path);
    for (int left = before; left > 1; --left) {
        const vpDir next = vpGetNextPathDir(dir);
        if (vpGetDirType(next) == vpDirTypeNone) break;
        if (vpGetDirType(next) == vpDirTypeCurrent) {
            dir = next;
            continue;
        }
        vpRemoveDir(next);
    }
    on.check();
    return 0;
}
