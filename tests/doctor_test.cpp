// What `vpath doctor` says of file systems that this machine does not have.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <ostream>
#include <string>

#include "doctor/directory_probe.h"
#include "output/exit_status.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// A directory on a file system whose every trait can be chosen. Its clock stands still but in
// sleeps.
struct FakeSystem {
    SystemTime now = seconds(1'000'000) + milliseconds(1234);
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
    std::function<void(FakeSystem&)> change;
    const char* expected;  // the first letter of what is not ok, and the probe
    bool pathIgnoresCase = false;
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

class DoctorTest : public testing::TestWithParam<Row> {};

TEST_P(DoctorTest, FindsWhatIsWrong) {
    FakeSystem fake;
    GetParam().change(fake);
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
        Row{"fine", [](FakeSystem&) {}, ""},
        Row{"changed within the same step",
            [](FakeSystem& fake) { fake.dirTime = fake.now - fake.now % fake.step; }, ""},
        Row{"time stands", [](FakeSystem& fake) { fake.moves = false; }, "S:time"},
        Row{"whole seconds", [](FakeSystem& fake) { fake.step = seconds(1); }, ""},
        Row{"two seconds, just changed",
            [](FakeSystem& fake) {
                fake.step = seconds(2);
                fake.dirTime = fake.now - fake.now % fake.step;
            },
            ""},
        Row{"three seconds", [](FakeSystem& fake) { fake.step = seconds(3); }, "S:steps"},
        Row{"a minute", [](FakeSystem& fake) { fake.step = seconds(60); }, "S:steps"},
        Row{"a whole second by chance", [](FakeSystem& fake) { fake.now = seconds(1'000'000); },
            ""},
        Row{"a little behind", [](FakeSystem& fake) { fake.ahead = milliseconds(-900); }, ""},
        Row{"behind", [](FakeSystem& fake) { fake.ahead = milliseconds(-1100); }, "S:clock"},
        Row{"ahead", [](FakeSystem& fake) { fake.ahead = milliseconds(300); }, "S:clock"},
        Row{"behind in whole seconds",
            [](FakeSystem& fake) {
                fake.step = seconds(1);
                fake.ahead = seconds(-3);
            },
            "S:clock"},
        Row{"unreadable", [](FakeSystem& fake) { fake.denied = R_OK; }, "S:access"},
        Row{"gone",
            [](FakeSystem& fake) {
                fake.denied = R_OK | W_OK | X_OK;
                fake.refusal = ENOENT;
            },
            "S:access"},
        Row{"neither searched nor written", [](FakeSystem& fake) { fake.denied = X_OK; },
            "S:access u:time"},
        Row{"not written", [](FakeSystem& fake) { fake.denied = W_OK; }, "u:time"},
        Row{"full", [](FakeSystem& fake) { fake.makeError = ENOSPC; }, "u:time"},
        Row{"no watches, not written",
            [](FakeSystem& fake) {
                fake.denied = W_OK;
                fake.watchError = ENOSPC;
            },
            "s:events u:time"},
        Row{"no instances", [](FakeSystem& fake) { fake.watchError = EMFILE; }, "s:events"},
        Row{"deaf", [](FakeSystem& fake) { fake.tells = false; }, "S:events"},
        Row{"others may change it", [](FakeSystem& fake) { fake.tellsOfAll = false; }, "s:events"},
        Row{"one case", [](FakeSystem& fake) { fake.ignoresCase = true; }, "S:case"},
        Row{"one case, as asked for", [](FakeSystem& fake) { fake.ignoresCase = true; }, "",
            true}));

TEST(Doctor, LeavesNoFileUnsaid) {
    FakeSystem fake;
    fake.removalError = EPERM;
    EXPECT_THROW(ProbeDirectory("/d", false, fake.system()), CommandError);
}

}  // namespace
