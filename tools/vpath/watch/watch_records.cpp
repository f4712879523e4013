#include "watch/watch_records.h"

#include <optional>
#include <string>

#include "output/console.h"

namespace {

std::string Shown(const std::string& name) {
    std::string text;
    for (const char c : name) {
        text += c;
        if (c == '\\') text += c;
    }
    return OnOneLine(text);
}

const char* WordFor(ChangeKind kind) {
    switch (kind) {
        case ChangeKind::kReread:
            return "reread";
        case ChangeKind::kAdded:
            return "added";
        case ChangeKind::kRemoved:
            return "removed";
        case ChangeKind::kCurrent:
            return "current";
    }
    return "";
}

std::optional<std::string> FileOrNone(const std::string& file) {
    return file.empty() ? std::nullopt : std::optional<std::string>(file);
}

}  // namespace

Record RecordOf(const DirectoryChange& change) {
    return Record("change")
        .column("change", WordFor(change.kind))
        .field("directory", change.name)
        .label(Shown(change.name), Style::kDirectory);
}

Record RecordOf(const WinnerChange& change) {
    const auto shownFile = [](const std::string& file) { return file.empty() ? "-" : Shown(file); };
    return Record("winner")
        .label("winner", Style::kNote)
        .field("name", change.name)
        .label(Shown(change.name), Style::kName)
        .field("before", FileOrNone(change.before))
        .label(shownFile(change.before), Style::kFile)
        .label("→")
        .field("now", FileOrNone(change.now))
        .label(shownFile(change.now), Style::kFile);
}

Record WatchingRecord(size_t directories) {
    return Record("watching").label("watching").column("directories", directories);
}

Record RecordOf(const PathFollower::Counts& counts) {
    return Record("watched")
        .field("events", counts.events)
        .field("bursts", counts.bursts)
        .field("retests", counts.retests)
        .field("polls", counts.polls)
        .field("reads", counts.reads)
        .text("watched: " + std::to_string(counts.events) + " events in " +
              std::to_string(counts.bursts) + " bursts, " + std::to_string(counts.retests) +
              " retests, " + std::to_string(counts.polls) + " polls, " +
              std::to_string(counts.reads) + " directories read");
}
