#include "doctor/directory_probe.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "output/exit_status.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// A path takes a time for final from two seconds on. A change is therefore seen if the file
// system gives it another time than one that was two seconds old.
constexpr SystemTime kTrustedAge = seconds(2);
constexpr SystemTime kStampUnit = seconds(1);  // stamps are whole seconds

constexpr SystemTime kMostStep = seconds(5);
// Times come from a clock that ticks; it is never ahead of the exact one.
constexpr SystemTime kTick = milliseconds(100);
constexpr milliseconds kFirstPause(2);
constexpr milliseconds kLastPause(64);

bool IsWhole(SystemTime time) { return time % seconds(1) == SystemTime::zero(); }

std::string InSeconds(SystemTime time) {
    char text[40];
    std::snprintf(text, sizeof text, "%.1f s", std::chrono::duration<double>(time).count());
    return text;
}

class DirectoryProbe {
  public:
    DirectoryProbe(const std::string& dirName, bool ignoresCase, const ProbeSystem& system)
        : dirName_(dirName), ignoresCase_(ignoresCase), system_(system) {}

    std::vector<Finding> run() {
        if (!probeAccess()) return std::move(findings_);
        const int watchError = system_.watch(dirName_);
        const auto before = system_.timeOf(dirName_);
        int error = system_.access(dirName_, W_OK | X_OK);
        if (error == 0) {
            make();
            error = made_.error;
        }
        if (error != 0) {
            if (watchError != 0) sayEvents(watchError);
            sayUnwritable(error);
            return std::move(findings_);
        }
        const MadeFile first = made_;
        if (probeTime(before)) {
            probeSteps();
            if (step_ <= kMostStep) probeClock();
        }
        sayEvents(watchError != 0 || system_.isTold(first.name) ? watchError : ENOMSG);
        sayCase(first.answersInCapitals);
        return std::move(findings_);
    }

  private:
    void say(const char* probe, Health health, std::string text, std::string remedy = "") {
        findings_.push_back({probe, health, std::move(text), std::move(remedy)});
    }

    void make() {
        clockBefore_ = system_.now();
        made_ = system_.makeFile(dirName_);
        clockAfter_ = system_.now();
        if (made_.removalError != 0) {
            throw CommandError("cannot remove " + dirName_ + "/" + made_.name + ": " +
                               std::strerror(made_.removalError) + "; remove it by hand");
        }
    }

    // Makes files until the directory has another time, for as long as `most`; whether it has.
    bool makeUntilAfter(std::optional<SystemTime> time, SystemTime most) {
        const SystemTime end = system_.now() + most;
        for (milliseconds pause = kFirstPause; made_.error == 0;
             pause = std::min(2 * pause, kLastPause)) {
            if (made_.dirTime && made_.dirTime != time) return true;
            if (system_.now() >= end) return false;
            system_.sleep(pause);
            make();
        }
        return false;
    }

    // Whether there is a directory to probe further.
    bool probeAccess() {
        const int error = system_.access(dirName_, R_OK);
        if (error == ENOENT || error == ENOTDIR) {
            say("access", Health::kStale, "gone: its files are answered all the same",
                "say 'refresh' in 'vpath shell', or take it off the path");
            return false;
        }
        if (error != 0) {
            say("access", Health::kStale, "cannot be read: its files are not seen",
                "give the permission with chmod u+r, or take it off the path");
        } else if (system_.access(dirName_, X_OK) != 0) {
            say("access", Health::kStale, "cannot be searched: what its names are is not seen",
                "give the permission with chmod u+x, or take it off the path");
        } else {
            say("access", Health::kOk, "readable and searchable");
        }
        return true;
    }

    void sayUnwritable(int error) {
        const bool isDenied = error == EACCES || error == EPERM;
        say("time", Health::kUnknown,
            std::string("no file can be made (") + std::strerror(error) +
                "): time, steps, clock, events and case not probed",
            error == EROFS ? "none needed where nobody writes; else run doctor where it is writable"
            : isDenied     ? "run doctor as who may write there"
                           : "make room, or run doctor again later");
    }

    bool probeTime(std::optional<SystemTime> before) {
        if (makeUntilAfter(before, kMostStep)) {
            say("time", Health::kOk, "moves when a file is made");
            return true;
        }
        say("time", Health::kStale, "does not move when a file is made: changes go unseen",
            "keep to 'vpath watch' without --poll, 'refresh --all' in 'vpath shell', or mount it "
            "so that times of directories are kept");
        return false;
    }

    void probeSteps() {
        first_ = *made_.dirTime;
        if (IsWhole(first_) && makeUntilAfter(first_, kMostStep)) {
            // What came by chance to a whole second may be fine all the same.
            step_ = IsWhole(*made_.dirTime)
                        ? std::max(*made_.dirTime, first_) - std::min(*made_.dirTime, first_)
                        : SystemTime::zero();
        } else if (IsWhole(first_)) {
            step_ = 2 * kMostStep;
        }
        if (step_ <= SystemTime::zero()) {
            say("steps", Health::kOk, "times are finer than a second");
        } else if (step_ <= kTrustedAge) {
            say("steps", Health::kOk, "times move in steps of " + InSeconds(step_));
        } else {
            say("steps", Health::kStale,
                "times move in steps of " + InSeconds(step_) +
                    ": later changes in a step go unseen",
                "keep to 'vpath watch' without --poll, or 'refresh --all' in 'vpath shell'");
        }
    }

    // By the last file.
    void probeClock() {
        const SystemTime ahead = *made_.dirTime - clockAfter_;
        const SystemTime behind = clockBefore_ - *made_.dirTime - step_;
        const char* const kRemedy =
            "set the clocks of this machine and of the server by one time service";
        if (ahead > kTick) {
            say("clock", Health::kStale,
                InSeconds(ahead) + " ahead of this machine's: new times are taken for old ones",
                kRemedy);
        } else if (behind > kTick && behind + std::max(step_, kStampUnit) > kTrustedAge) {
            say("clock", Health::kStale,
                InSeconds(behind) + " behind this machine's: new times are taken for old ones",
                kRemedy);
        } else if (behind > kTick) {
            say("clock", Health::kOk, InSeconds(behind) + " behind this machine's, which may be");
        } else {
            say("clock", Health::kOk, "the same as this machine's");
        }
    }

    // ENOMSG: the watch stands, but nothing comes.
    void sayEvents(int error) {
        if (error == EMFILE || error == ENFILE) {
            say("events", Health::kSlow,
                "no inotify instance left: 'vpath watch' looks every second",
                "raise fs.inotify.max_user_instances with sysctl");
        } else if (error == ENOSPC) {
            say("events", Health::kSlow, "no inotify watch left: 'vpath watch' looks every second",
                "raise fs.inotify.max_user_watches with sysctl");
        } else if (error == ENOMSG && system_.tellsOfAll(dirName_)) {
            say("events", Health::kStale, "inotify does not tell of a file made here",
                "give 'vpath watch' the option --poll 1");
        } else if (error == ENOMSG || (error == 0 && !system_.tellsOfAll(dirName_))) {
            say("events", Health::kSlow,
                "the file system does not tell what others change: 'vpath watch' looks every "
                "second",
                "where it keeps attributes (NFS, SMB), mount it with actimeo=1; choose the "
                "interval "
                "with 'vpath watch --poll'");
        } else if (error != 0) {
            say("events", Health::kSlow,
                std::string("cannot be watched (") + std::strerror(error) +
                    "): 'vpath watch' looks every second",
                "give the permission with chmod u+r");
        } else {
            say("events", Health::kOk, "inotify tells of a file made here");
        }
    }

    void sayCase(bool answersInCapitals) {
        if (!answersInCapitals) {
            say("case", Health::kOk, "told apart");
        } else if (ignoresCase_) {
            say("case", Health::kOk, "ignored, as --ignore-case has it");
        } else {
            say("case", Health::kStale,
                "ignored by the file system alone: names that open a file are not found",
                "give the option --ignore-case");
        }
    }

    const std::string& dirName_;
    const bool ignoresCase_;
    const ProbeSystem& system_;
    std::vector<Finding> findings_;
    MadeFile made_;  // the last
    SystemTime clockBefore_{};
    SystemTime clockAfter_{};
    SystemTime first_{};
    SystemTime step_{};  // 0: less than a second; more than kMostStep: not known
};

}  // namespace

std::vector<Finding> ProbeDirectory(const std::string& dirName, bool ignoresCase,
                                    const ProbeSystem& system) {
    return DirectoryProbe(dirName, ignoresCase, system).run();
}
