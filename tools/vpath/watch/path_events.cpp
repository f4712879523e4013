#include "watch/path_events.h"

#include <utility>

namespace {

// Listeners carry no context.
std::vector<PathEvent> events;

void OnEvent(vpEventType type, vpDir dir) { events.push_back({type, dir}); }

}  // namespace

PathEvents::PathEvents(const vpPath& path) : interest_(vpRegisterPathInterest(path, OnEvent)) {
    vpSuppressChangeNotify(path, false);
}

PathEvents::~PathEvents() {
    vpCancelPathInterest(interest_);
    events.clear();
}

std::vector<PathEvent> PathEvents::take() { return std::exchange(events, {}); }
