// vpath watch: says, line by line, what changes on a path and what names come to stand for.
#include <signal.h>

#include <chrono>
#include <climits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "command.h"
#include "options/name_arguments.h"
#include "options/not_empty.h"
#include "output/console.h"
#include "watch/burst.h"
#include "watch/event_loop.h"
#include "watch/path_follower.h"
#include "watch/watch_records.h"
#include "watch/winners.h"

namespace {

using Clock = std::chrono::steady_clock;
using TimePoint = Clock::time_point;

struct WatchOptions {
    std::vector<std::string> names;
    std::optional<double> pollSeconds;  // polls everything
};

constexpr double kPollSeconds = 1;
constexpr double kLeastPollSeconds = 0.01;
constexpr double kMostPollSeconds = 86400;

class Watch {
  public:
    Watch(const vpPath& path, const PathOptions& options, const WatchOptions& watchOptions,
          Output& output)
        : output_(output),
          pollInterval_(std::chrono::duration_cast<Clock::duration>(
              std::chrono::duration<double>(watchOptions.pollSeconds.value_or(kPollSeconds)))),
          announcesPolling_(!watchOptions.pollSeconds),
          follower_(path, !watchOptions.pollSeconds),
          winners_(path, options, watchOptions.names,
                   [this](const vpDir& dir) { return follower_.shownName(dir); }) {
        if (const auto input = follower_.input()) loop_.setInput(*input);
    }

    // Ends by an exception alone.
    [[noreturn]] void run() {
        winners_.update();
        for (const WinnerChange& winner : winners_.all()) say(RecordOf(winner));
        say(WatchingRecord(follower_.directoryCount()));
        while (true) {
            setPolling();
            if (loop_.wait(nextDue()) && follower_.readInput()) burst_.extend(Clock::now());
            const TimePoint now = Clock::now();
            if (isDue(burst_.due(), now)) {
                burst_.end();
                tell(follower_.takeBurst(now));
            }
            if (isDue(follower_.retestDue(), now)) tell(follower_.retest(now));
            if (isDue(pollDue_, now)) {
                tell(follower_.poll());
                pollDue_ = Clock::now() + pollInterval_;
            }
        }
    }

    PathFollower::Counts counts() const { return follower_.counts(); }

  private:
    static bool isDue(const std::optional<TimePoint>& due, TimePoint now) {
        return due && *due <= now;
    }

    std::optional<TimePoint> nextDue() const {
        return earlier(pollDue_, earlier(burst_.due(), follower_.retestDue()));
    }

    static std::optional<TimePoint> earlier(const std::optional<TimePoint>& a,
                                            const std::optional<TimePoint>& b) {
        return !a || (b && *b < *a) ? b : a;
    }

    // Polls for as long as something cannot be watched, and says so the first time.
    void setPolling() {
        if (!follower_.mustPoll()) {
            pollDue_.reset();
        } else if (!pollDue_) {
            pollDue_ = Clock::now() + pollInterval_;
            if (!std::exchange(announcesPolling_, false)) return;
            Complain("some directories cannot be watched: " + follower_.whyPoll() +
                     "; looking at them every second instead");
        }
    }

    void tell(const PathFollower::Changes& changes) {
        for (const DirectoryChange& change : changes) say(RecordOf(change));
        if (changes.empty()) return;
        for (const WinnerChange& winner : winners_.update()) say(RecordOf(winner));
    }

    void say(const Record& record) {
        loop_.waitForOutput();
        output_.print(record);
    }

    Output& output_;
    const Clock::duration pollInterval_;
    bool announcesPolling_;
    EventLoop loop_;
    PathFollower follower_;
    Winners winners_;
    Burst burst_;
    std::optional<TimePoint> pollDue_;
};

ExitStatus RunWatch(const WatchOptions& options, Context& context) {
    CheckNameArguments(options.names, "--name", "a file");
    // Also false for what is not a number.
    const double pollSeconds = options.pollSeconds.value_or(kPollSeconds);
    if (!(pollSeconds >= kLeastPollSeconds && pollSeconds <= kMostPollSeconds)) {
        throw CommandError("--poll: not from 0.01 to 86400 seconds");
    }
    context.output().stream();
    Watch watch(context.loaded().path, context.options, options, context.output());
    try {
        watch.run();
    } catch (const Interrupted& interrupted) {
        if (context.options.stats) context.output().remark(RecordOf(watch.counts()));
        return interrupted.signal == SIGINT ? kExitInterrupted : kExitTerminated;
    }
}

}  // namespace

Command AddWatchCommand(CLI::App& app) {
    const auto options = std::make_shared<WatchOptions>();
    CLI::App* watch = app.add_subcommand("watch", "Changes of the path");
    watch->fallthrough();
    watch->footer(
        "Lines, with a tab between fields:\n"
        "  watching DIRECTORIES    once it watches\n"
        "  reread DIR              its contents changed\n"
        "  added DIR, removed DIR  special ones; those of the path when they come and go\n"
        "  current DIR             the current directory was replaced and entered again\n"
        "  winner NAME OLD → NEW   the file that NAME stands for; '-' for none\n"
        "A backslash in a name shows as \\\\, control characters as \\t, \\n, \\x1b.\n"
        "Exit status: 130 after SIGINT, 143 after SIGTERM.\n"
        "Example: the file that 'foo' stands for, whenever that changes\n"
        "  vpath --path /w/lib:/w/tools watch --name foo | sed -un 's/^winner.*\\t//p'");
    watch->add_option("--name", options->names, "tell what NAME stands for; may be repeated")
        ->option_text("NAME")
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    watch
        ->add_option("--poll", options->pollSeconds,
                     "look at the directories every SECONDS instead")
        ->option_text("SECONDS")
        ->check(NotEmpty);
    return {watch, [options](Context& context) { return RunWatch(*options, context); }};
}
