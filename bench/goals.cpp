#include "goals.h"

#include <cstdio>

namespace {

// A goal is reached when the figure is within its own limit or within its limit relative to the
// baseline of the same run; a limit of 0 is none.
struct Goal {
    const char* number;
    const char* text;
    const char* measure;
    double limit;
    const char* baseline;
    double ratioLimit;
};

constexpr Goal kGoals[] = {
    {"1", "hit, 10 directories", "lookup/hit/10", 150, "", 0},
    {"1", "hit, 1,000 directories", "lookup/hit/1000", 0, "flat", 2.0},
    {"1", "hit, 10,000 directories", "lookup/hit/10000", 0, "flat", 1.5},
    {"1", "hit with read check", "lookup/hit_verified_access/1000", 0, "flat+access", 1.15},
    {"2", "miss, 10 directories", "lookup/miss/10", 0, "flat", 2.5},
    {"2", "miss, 1,000 directories", "lookup/miss/1000", 0, "flat", 2.5},
    {"2", "miss, 10,000 directories", "lookup/miss/10000", 0, "flat", 2.5},
    {"2", "name in each of 10,000 directories", "lookup/everywhere/10000", 0, "at 10", 1.1},
    {"3", "load, 1,000 directories on disk", "disk/load/1000", 0, "callbacks", 1.6},
    {"3", "load, 10,000 directories on disk", "disk/load/10000", 0, "callbacks", 2.0},
    {"3", "load, 100,000 directories", "load/100000", 0, "at 1,000", 1.5},
    {"4", "memory, bytes a file", "memory/10000", 120, "", 0},
    {"5", "load from a cache file, 1,000 directories", "disk/load_from_cache/1000", 0, "callbacks",
     0.8},
    {"5", "load from a cache file, 10,000 directories", "disk/load_from_cache/10000", 0,
     "callbacks", 1.0},
    {"5", "cache file read", "cache/read/10000", 45, "fgets", 2.2},
    {"5", "cache file written", "cache/write/10000", 0, "one buffer", 1.5},
    {"6", "look-up in file order", "cache/lookup_in_order/10000", 100, "map", 4.0},
    {"6", "look-up in random order", "cache/lookup_random/10000", 100, "map", 4.0},
    {"6", "look-up of absent names", "cache/lookup_absent/10000", 100, "map", 4.0},
    {"7", "nothing changed, 10,000 directories on disk", "disk/unchanged/10000", 0, "callbacks",
     1.05},
    {"7", "one changed, 10,000 directories on disk", "disk/one_changed/10000", 0, "callbacks",
     1.05},
    {"7", "frozen directory", "refresh/frozen/10000", 10, "", 0},
    {"8", "merge, 100 files on disk", "disk/merge/100", 0, "callbacks", 1.1},
    {"8", "merge, 100,000 files on disk", "disk/merge/100000", 0, "callbacks", 1.1},
    {"8", "merge, a file of 100,000", "refresh/merge/100000", 0, "at 100", 1.3},
    {"9", "add, one string", "edit/add_string/10000", 0, "at 1,000", 1.5},
    {"9", "add, one by one", "edit/add_one_by_one/10000", 0, "at 1,000", 1.5},
    {"9", "add in front", "edit/add_in_front/10000", 0, "at 1,000", 1.5},
    {"9", "add in front, searching", "edit/add_in_front_searching/10000", 0, "at 1,000", 1.5},
    {"9", "add at end, searching", "edit/add_at_end_searching/10000", 0, "at 1,000", 1.5},
    {"9", "remove from front", "edit/remove_from_front/10000", 0, "at 1,000", 1.5},
    {"9", "remove from end, searching", "edit/remove_from_end_searching/10000", 0, "at 1,000", 1.5},
    {"9", "reverse", "edit/reverse/10000", 0, "at 1,000", 1.5},
    {"9", "replace by itself", "edit/replace_by_itself/10000", 1000, "", 0},
};

using Run = benchmark::BenchmarkReporter::Run;

const Run* FindRun(const std::vector<Run>& runs, const char* measure) {
    for (const Run& run : runs) {
        if (run.run_name.function_name == measure && !run.error_occurred) return &run;
    }
    return nullptr;
}

// The figure is the only counter that a '/' follows in the names of the ratios.
double RatioTo(const Run& run, const std::string& baseline) {
    for (const auto& [name, counter] : run.counters) {
        const size_t slash = name.find('/');
        if (slash != std::string::npos && name.substr(slash + 1) == baseline) return counter.value;
    }
    return 0;
}

std::string Verdict(const Goal& goal, const Run& run) {
    char text[100];
    if (goal.limit != 0) {
        // Manual time is the figure, in nanoseconds.
        const double figure = run.counters.count("library") != 0
                                  ? run.counters.at("library").value
                                  : run.counters.at("requested").value;
        if (figure <= goal.limit || goal.ratioLimit == 0) {
            std::snprintf(text, sizeof text, "%8.1f of %.0f    %s", figure, goal.limit,
                          figure <= goal.limit ? "ok" : "short");
            return text;
        }
    }
    const double ratio = RatioTo(run, goal.baseline);
    std::snprintf(text, sizeof text, "   x%.2f of x%.2f %s   %s", ratio, goal.ratioLimit,
                  goal.baseline, ratio != 0 && ratio <= goal.ratioLimit ? "ok" : "short");
    return text;
}

}  // namespace

void GoalSheet::take(const std::vector<Run>& runs) {
    runs_.insert(runs_.end(), runs.begin(), runs.end());
}

void GoalSheet::print() const {
    std::printf("\n");
    for (const Goal& goal : kGoals) {
        const Run* const run = FindRun(runs_, goal.measure);
        if (run == nullptr) continue;
        std::printf("goal %s  %-44s %s\n", goal.number, goal.text, Verdict(goal, *run).c_str());
    }
}
