#include "watch/retest_queue.h"

void RetestQueue::add(const vpDir& dir, TimePoint now) {
    const TimePoint due = now + kDelay;
    const auto [known, isNew] = dueOf_.try_emplace(dir.get(), due);
    if (!isNew && known->second == due) return;
    known->second = due;
    entries_.push_back({due, dir});
}

std::optional<RetestQueue::TimePoint> RetestQueue::due() const {
    if (entries_.empty()) return std::nullopt;
    return entries_.front().due;
}

std::vector<vpDir> RetestQueue::take(TimePoint now) {
    std::vector<vpDir> taken;
    while (!entries_.empty() && entries_.front().due <= now) {
        const Entry entry = entries_.front();
        entries_.pop_front();
        const auto known = dueOf_.find(entry.dir.get());
        if (known == dueOf_.end() || known->second != entry.due) continue;  // a later one follows
        dueOf_.erase(known);
        taken.push_back(entry.dir);
    }
    return taken;
}
