#include "path/host_hooks.h"

#include <unistd.h>

#include <hostkit/hostkit.h>

#include "base/guard.h"
#include "base/reporting.h"
#include "path/handle_check.h"
#include "path/path_mgr.h"
#include "path/registry.h"

namespace {

bool defaultsComplete = false;

int ChangeDirByLibrary(const char* name) { return chdir(name); }

// Stores `given` unless it is null; answers whether the slot is filled.
template <class Function>
bool Fill(Function& slot, Function given) {
    if (given != nullptr) slot = given;
    return slot != nullptr;
}

}  // namespace

IOFunctions& DefaultIOFunctions() {
    static IOFunctions functions;
    return functions;
}

bool DefaultIOFunctionsComplete() { return defaultsComplete; }

IOFunctions WithDefaults(const IOFunctions& given) {
    const IOFunctions& defaults = DefaultIOFunctions();
    const auto pick = [](auto own, auto byDefault) { return own != nullptr ? own : byDefault; };
    return {pick(given.listing, defaults.listing),
            pick(given.accessibility, defaults.accessibility),
            pick(given.isPathnameOk, defaults.isPathnameOk),
            pick(given.isDirectory, defaults.isDirectory),
            pick(given.timeStamp, defaults.timeStamp),
            pick(given.changeDir, defaults.changeDir)};
}

bool vpSetDefaultIOFcns(vpListingFcn listing, vpAccessibilityFcn accessibility,
                        vpPathnameOkFcn isPathnameOk, vpIsDirectoryFcn isDirectory,
                        vpTimeStampFcn timeStamp) {
    return vpSetDefaultIOFcnsNew(listing, accessibility, isPathnameOk, isDirectory, timeStamp,
                                 nullptr);
}

bool vpSetDefaultIOFcnsNew(vpListingFcn listing, vpAccessibilityFcn accessibility,
                           vpPathnameOkFcn isPathnameOk, vpIsDirectoryFcn isDirectory,
                           vpTimeStampFcn timeStamp, vpChangeDirFcn changeDir) {
    IOFunctions& defaults = DefaultIOFunctions();
    bool complete = Fill(defaults.listing, listing);
    complete &= Fill(defaults.accessibility, accessibility);
    complete &= Fill(defaults.isPathnameOk, isPathnameOk);
    complete &= Fill(defaults.isDirectory, isDirectory);
    complete &= Fill(defaults.timeStamp, timeStamp);
    defaults.changeDir = changeDir != nullptr ? changeDir : ChangeDirByLibrary;
    defaultsComplete = complete;
    return complete;
}

void vpUpdatePathArrayDefaultIOFcns() {
    Guarded([] {
        for (PathMgr* path : RegisteredPaths()) path->io = WithDefaults({});
    });
}

bool vpSetIOFcns(vpPath path, vpListingFcn listing, vpAccessibilityFcn accessibility,
                 vpPathnameOkFcn isPathnameOk, vpIsDirectoryFcn isDirectory,
                 vpTimeStampFcn timeStamp) {
    return vpSetIOFcnsNew(path, listing, accessibility, isPathnameOk, isDirectory, timeStamp,
                          nullptr);
}

bool vpSetIOFcnsNew(vpPath path, vpListingFcn listing, vpAccessibilityFcn accessibility,
                    vpPathnameOkFcn isPathnameOk, vpIsDirectoryFcn isDirectory,
                    vpTimeStampFcn timeStamp, vpChangeDirFcn changeDir) {
    if (PathMgr* const live = AssertLive(path)) {
        live->io =
            WithDefaults({listing, accessibility, isPathnameOk, isDirectory, timeStamp, changeDir});
    }
    return true;
}

void vpSetMessageFcns(vpMessageFcn error, vpMessageFcn warning, vpMessageFcn info) {
    MessageFunctions() = {error, warning, info};
}

vpEnvironmentFcns* vpGetEnvironmentFcns() {
    auto* const saved = static_cast<vpEnvironmentFcns*>(hkCalloc(1, sizeof(vpEnvironmentFcns)));
    if (saved != nullptr) *saved = MessageFunctions();
    return saved;
}

void vpReturnEnvironmentFcns(vpEnvironmentFcns* saved) {
    if (saved == nullptr) return;
    MessageFunctions() = *saved;
    hkFree(saved);
}

void vpDiagnostics(int) {}
