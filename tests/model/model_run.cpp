// Random steps on a path beside the naive model of it, each seed on a path of its own.
//
//     model_run [--seed S] [--steps N] [--seconds N]
//
// runs from seed S on until so many steps or seconds are over. Where the two part, or the library
// ends the process, the steps are made as few as still show it and printed with what was expected.
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest-spi.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

#include "model/model.h"
#include "support/steps.h"

namespace {

using Script = std::vector<std::string>;

constexpr long kStepsOnAPath = 300;

// What a process under test leaves behind, however it ends.
struct Trace {
    unsigned seed;
    long steps;
    char script[1 << 18];
    char wrong[1 << 16];
};
Trace* theTrace;

void SetWrong(const std::string& text) {
    std::snprintf(theTrace->wrong, sizeof theTrace->wrong, "%s", text.c_str());
}

// The library's path and the model's, side by side.
class Runner : public PathTest {
  public:
    Runner() {
        host.onCall = [this](const std::string& call) {
            calls_ += (calls_.empty() ? "" : "|") + call;
        };
    }
    ~Runner() override { step("cacherevert"); }
    void TestBody() override {}

    Model model{host};

    // What is wrong after the command; "" when both came to the same.
    std::string compare(const std::string& command) {
        const bool hasPath = path.get() != nullptr;
        if (!Steps::IsPossible(host, hasPath, command)) return "";
        if (command == "cacheload" && !model.hasCache()) return "";
        calls_.clear();
        Outcome found{step(command), ""};
        found.calls = std::exchange(calls_, "");
        forget();
        CheckTable(path);
        if (path.get() == nullptr) return "";  // not yet
        const Outcome due = model.step(command, found);
        std::string order;
        for (const Node::Ptr& top : model.onPath()) order += (order.empty() ? "" : " ") + top->full;
        return differ("answer", due.answer, found.answer) +
               differ("calls", due.calls, found.calls) + differ("path", order, OnPath(path));
    }

  private:
    static std::string differ(const char* what, const std::string& due, const std::string& found) {
        if (due == found) return "";
        return std::string(what) + " expected: " + due + "\n# " + what + " found:    " + found +
               "\n# ";
    }

    std::string calls_;
};

// One path, from its making to its end, with the commands that `next` gives; true when all is well.
template <class Next>
bool RunPath(Next next) {
    testing::TestPartResultArray failures;
    std::string wrong;
    SetWrong("the process ended\n");
    alarm(10);
    {
        const testing::ScopedFakeTestPartResultReporter catchAll(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ALL_THREADS, &failures);
        Runner runner;
        for (std::string command = next(runner); !command.empty(); command = next(runner)) {
            wrong = runner.compare(command);
            if (!wrong.empty() || failures.size() != 0) break;
        }
    }
    for (int at = 0; at < failures.size(); ++at)
        wrong += failures.GetTestPartResult(at).message() + std::string("\n");
    SetWrong(wrong);
    return wrong.empty();
}

bool RunSeed(unsigned seed) {
    std::mt19937 random(seed);
    std::optional<Steps> steps;
    long left = kStepsOnAPath;
    size_t length = 0;
    theTrace->seed = seed;
    return RunPath([&](Runner& runner) -> std::string {
        const auto directories = [&runner] {
            Script names;
            for (const Node::Ptr& dir : runner.model.directories()) names.push_back(dir->full);
            return names;
        };
        if (!steps)
            steps.emplace(
                runner.host, [&](size_t n) { return random() % n; }, directories);
        if (--left < 0) return "";
        std::string command = steps->next();
        const int written = std::snprintf(
            theTrace->script + length, sizeof theTrace->script - length, "%s\n", command.c_str());
        length += static_cast<size_t>(written);
        ++theTrace->steps;
        return command;
    });
}

bool RunScript(const Script& script) {
    size_t at = 0;
    return RunPath([&](Runner&) { return at < script.size() ? script[at++] : std::string(); });
}

// Whether `run` answers true, in a process of its own.
template <class Run>
bool IsWell(Run run) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) std::exit(run() ? 0 : 1);
    int status = 1;
    return waitpid(child, &status, 0) == child && status == 0;
}

bool RunSeeds(unsigned first, long steps, double seconds) {
    const auto start = std::chrono::steady_clock::now();
    for (unsigned seed = first; RunSeed(seed); ++seed) {
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        if (taken.count() < seconds || theTrace->steps < steps) continue;
        std::printf("%ld steps, seeds %u to %u, %.0f steps a second\n", theTrace->steps, first,
                    seed, static_cast<double>(theTrace->steps) / taken.count());
        return true;
    }
    return false;
}

// Drops runs of steps, long ones first, as long as what is left still fails.
Script Shrunk(Script script) {
    for (size_t length = script.size(); length > 0; length /= 2) {
        for (size_t at = 0; at < script.size();) {
            Script shorter = script;
            const auto from = shorter.begin() + static_cast<long>(at);
            shorter.erase(from, from + static_cast<long>(std::min(length, script.size() - at)));
            if (IsWell([&] { return RunScript(shorter); })) {
                at += length;
            } else {
                script = std::move(shorter);
            }
        }
    }
    IsWell([&] { return RunScript(script); });  // for what is wrong with this one
    return script;
}

}  // namespace

int main(int argc, char** argv) {
    theTrace = static_cast<Trace*>(
        mmap(nullptr, sizeof(Trace), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    std::map<std::string, long> options = {{"--seed", 1}, {"--steps", 0}, {"--seconds", 0}};
    for (int at = 1; at < argc; at += 2) {
        if (options.count(argv[at]) == 0 || at + 1 == argc) {
            std::fprintf(stderr, "usage: %s [--seed S] [--steps N] [--seconds N]\n", argv[0]);
            return 2;
        }
        options[argv[at]] = std::atol(argv[at + 1]);
    }
    const auto seed = static_cast<unsigned>(options["--seed"]);
    const auto seconds = static_cast<double>(options["--seconds"]);
    if (IsWell([&] { return RunSeeds(seed, options["--steps"], seconds); })) return 0;
    std::printf("%s", theTrace->wrong);
    std::istringstream lines(theTrace->script);
    Script script;
    for (std::string line; std::getline(lines, line);) script.push_back(line);
    for (const std::string& line : Shrunk(script)) std::printf("%s\n", line.c_str());
    std::printf("# %s%s --seed %u\n", theTrace->wrong, argv[0], theTrace->seed);
    return 1;
}
