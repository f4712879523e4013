// The exported calls on listeners and change messages.
#include <algorithm>
#include <utility>

#include <vpath/path.h>

#include "base/guard.h"
#include "path/handle_check.h"
#include "path/path_mgr.h"

vpRegisteredInterest vpRegisterPathInterest(vpPath path, vpListenerFcn listener) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr) return {vpPath(), -1};
    return Guarded(vpRegisteredInterest{vpPath(), -1}, [&] {
        auto& listeners = live->listeners;
        // The place of a cancelled listener is used again, so that indexes stay small and stable.
        auto place = listeners.end();
        if (live->cancelledListeners != 0) {
            place = std::find(listeners.begin(), listeners.end(), nullptr);
        }
        const auto index = static_cast<int32_t>(place - listeners.begin());
        if (place == listeners.end()) {
            listeners.push_back(listener);
        } else {
            *place = listener;
            --live->cancelledListeners;
        }
        if (listener == nullptr) ++live->cancelledListeners;
        return vpRegisteredInterest{path, index};
    });
}

void vpCancelPathInterest(vpRegisteredInterest interest) {
    PathMgr* const live = LivePath(interest.path);
    if (live == nullptr || interest.index < 0) return;
    const auto index = static_cast<size_t>(interest.index);
    if (index >= live->listeners.size()) return;
    const bool wasListening = std::exchange(live->listeners[index], nullptr) != nullptr;
    if (wasListening) ++live->cancelledListeners;
}

void vpSuppressChangeNotify(vpPath path, bool suppress) {
    if (PathMgr* const live = LivePath(path)) live->suppressChangeNotify = suppress;
}

bool vpSetDirectoryReloadMessages(vpPath path, bool on) {
    PathMgr* const live = LivePath(path);
    return live != nullptr && std::exchange(live->reloadMessages, on);
}

int vpSetNotificationHandleWarnings(vpPath, vpWarnInvalidCNH) { return 0; }
