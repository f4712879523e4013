#include "support/rounds.h"

#include <malloc.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>

namespace {

constexpr size_t kMostRounds = 201;
constexpr std::chrono::milliseconds kEnough(500);

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// The figures of each contender, round by round.
std::vector<std::vector<double>> RunRounds(const std::vector<Contender>& contenders,
                                           size_t fewest) {
    const size_t count = contenders.size();
    std::vector<std::vector<double>> figures(count);
    for (const Contender& contender : contenders) contender.round();  // warms up
    const auto start = std::chrono::steady_clock::now();
    const auto hasEnough = [&start] { return std::chrono::steady_clock::now() - start > kEnough; };
    for (size_t round = 0; round < fewest || (!hasEnough() && round < kMostRounds); ++round) {
        // Nobody always has the same predecessor, nor the caches that it leaves.
        for (size_t i = 0; i < count; ++i) {
            const size_t turn = (i + round) % count;
            figures[turn].push_back(contenders[turn].round());
        }
    }
    return figures;
}

std::vector<Figure> Summarize(const std::vector<Contender>& contenders,
                              const std::vector<std::vector<double>>& figures) {
    std::vector<Figure> summary;
    for (size_t i = 0; i < contenders.size(); ++i) {
        std::vector<double> ratios;
        for (size_t round = 0; round < figures[i].size(); ++round) {
            ratios.push_back(figures[0][round] / figures[i][round]);
        }
        summary.push_back({contenders[i].name, Median(figures[i]), Median(ratios)});
    }
    return summary;
}

}  // namespace

double ProcessorTime() {
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

void ReportFigures(benchmark::State& state, const std::string& unit,
                   const std::vector<Figure>& figures) {
    char text[128];
    std::snprintf(text, sizeof text, "%9.1f %s", figures[0].value, unit.c_str());
    std::string line = text;
    state.counters[figures[0].name] = figures[0].value;
    for (size_t i = 1; i < figures.size(); ++i) {
        const Figure& baseline = figures[i];
        std::snprintf(text, sizeof text, "   %s %.1f", baseline.name.c_str(), baseline.value);
        line += text;
        state.counters[baseline.name] = baseline.value;
        if (baseline.ratio == 0) continue;
        std::snprintf(text, sizeof text, " (x%.2f)", baseline.ratio);
        line += text;
        state.counters[figures[0].name + "/" + baseline.name] = baseline.ratio;
    }
    state.SetLabel(line);
}

void RegisterMeasure(Measure measure) {
    const std::string name = measure.name;
    benchmark::RegisterBenchmark(
        name.c_str(),
        [measure = std::move(measure)](benchmark::State& state) {
            try {
                const std::vector<Contender> contenders = measure.prepare();
                const auto figures =
                    Summarize(contenders, RunRounds(contenders, measure.fewestRounds));
                for (auto _ : state) state.SetIterationTime(figures[0].value * 1e-9);
                ReportFigures(state, measure.unit, figures);
            } catch (const std::exception& failure) {
                state.SkipWithError(failure.what());
            }
        })
        ->Iterations(1)
        ->UseManualTime();
}

std::vector<double> InChild(const std::function<std::vector<double>()>& work) {
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("no pipe");
    // What is free goes back to the system: the child then takes fresh pages, as a new process
    // does, and does not pay for copying pages that it shares.
    malloc_trim(0);
    std::fflush(stdout);  // else the child would print it again
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("no child process");
    if (child == 0) {
        bool written = false;
        try {
            const std::vector<double> answer = work();
            const size_t size = answer.size() * sizeof(double);
            written = write(ends[1], answer.data(), size) == static_cast<ssize_t>(size);
        } catch (const std::exception& failure) {
            std::fprintf(stderr, "%s\n", failure.what());
        }
        _exit(written ? 0 : 1);
    }
    close(ends[1]);
    std::vector<double> answer;
    double value;
    while (read(ends[0], &value, sizeof value) == static_cast<ssize_t>(sizeof value)) {
        answer.push_back(value);
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (status != 0 || answer.empty()) throw std::runtime_error("the child process failed");
    return answer;
}
