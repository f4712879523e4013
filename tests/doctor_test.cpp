// What `vpath doctor` says of file systems that this machine does not have.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <ostream>
#include <string>

#include "doctor/directory_probe.h"
#include "output/exit_status.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr SystemTime kNow = seconds(1'000'000) + milliseconds(1234);

// A directory on a file system whose every trait can be chosen. Its clock stands still but in
// sleeps.
struct FakeSystem {
    SystemTime now = kNow;
    SystemTime step = milliseconds(4);
    SystemTime ahead{};
    SystemTime dirTime = seconds(1000);
    SystemTime waited{};
    bool moves = true;
    int denied = 0;  // of the modes of access(2)
    int refusal = EACCES;
    int makeError = 0;
    int removalError = 0;
    int watchError = 0;
    bool tells = true;
    bool tellsOfAll = true;
    bool ignoresCase = false;

    ProbeSystem system() {
        return {
            .access = [this](const std::string&, int mode) { return mode & denied ? refusal : 0; },
            .timeOf = [this](const std::string&) { return dirTime; },
            .now = [this] { return now; },
            .sleep =
                [this](milliseconds time) {
                    now += time;
                    waited += time;
                },
            .makeFile =
                [this](const std::string&) {
                    const SystemTime time = now + ahead;
                    if (moves) dirTime = time - time % step;
                    return MadeFile{makeError, removalError, "f", dirTime, ignoresCase};
                },
            .watch = [this](const std::string&) { return watchError; },
            .isTold = [this](const std::string&) { return tells; },
            .tellsOfAll = [this](const std::string&) { return tellsOfAll; },
        };
    }
};

struct Row {
    const char* name;
    FakeSystem fake;
    const char* expected;  // the first letter of what is not ok, and the probe
    bool pathIgnoresCase = false;
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

class DoctorTest : public testing::TestWithParam<Row> {};

TEST_P(DoctorTest, FindsWhatIsWrong) {
    FakeSystem fake = GetParam().fake;
    std::string found;
    for (const Finding& finding : ProbeDirectory("/d", GetParam().pathIgnoresCase, fake.system())) {
        EXPECT_EQ(finding.remedy.empty(), finding.health == Health::kOk) << finding.text;
        if (finding.health == Health::kOk) continue;
        found += std::string(found.empty() ? "" : " ") + "?sSu"[static_cast<int>(finding.health)] +
                 ":" + finding.probe;
    }
    EXPECT_EQ(found, GetParam().expected);
    EXPECT_LT(fake.waited, seconds(11));
}

INSTANTIATE_TEST_SUITE_P(
    Vpath, DoctorTest,
    testing::Values(
        Row{"fine", {}, ""},
        Row{"changed within the same step", {.dirTime = kNow - kNow % milliseconds(4)}, ""},
        Row{"time stands", {.moves = false}, "S:time"},
        Row{"whole seconds", {.step = seconds(1)}, ""},
        Row{"two seconds, just changed",
            {.step = seconds(2), .dirTime = kNow - kNow % seconds(2)},
            ""},
        Row{"three seconds", {.step = seconds(3)}, "S:steps"},
        Row{"a minute", {.step = seconds(60)}, "S:steps"},
        Row{"a whole second by chance", {.now = seconds(1'000'000)}, ""},
        Row{"a little behind", {.ahead = milliseconds(-900)}, ""},
        Row{"behind", {.ahead = milliseconds(-1100)}, "S:clock"},
        Row{"ahead", {.ahead = milliseconds(300)}, "S:clock"},
        Row{"behind in whole seconds", {.step = seconds(1), .ahead = seconds(-3)}, "S:clock"},
        Row{"unreadable", {.denied = R_OK}, "S:access"},
        Row{"gone", {.denied = R_OK | W_OK | X_OK, .refusal = ENOENT}, "S:access"},
        Row{"neither searched nor written", {.denied = X_OK}, "S:access u:time"},
        Row{"not written", {.denied = W_OK}, "u:time"},
        Row{"full", {.makeError = ENOSPC}, "u:time"},
        Row{"no watches, not written", {.denied = W_OK, .watchError = ENOSPC}, "s:events u:time"},
        Row{"no instances", {.watchError = EMFILE}, "s:events"},
        Row{"deaf", {.tells = false}, "S:events"},
        Row{"others may change it", {.tellsOfAll = false}, "s:events"},
        Row{"one case", {.ignoresCase = true}, "S:case"},
        Row{"one case, as asked for", {.ignoresCase = true}, "", true}));

TEST(Doctor, LeavesNoFileUnsaid) {
    FakeSystem fake;
    fake.removalError = EPERM;
    EXPECT_THROW(ProbeDirectory("/d", false, fake.system()), CommandError);
}

}  // namespace
