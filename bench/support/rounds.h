// Fair timing. Contenders take turns, round after round, so that whatever else the machine does
// falls on all of them; each figure is the median of its rounds, each ratio the median of the
// ratios of single rounds.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

struct Contender {
    std::string name;
    std::function<double()> round;  // does its work once; nanoseconds for each unit of it
};

// One line of the report. The first contender is what is measured, the others are its baselines.
struct Measure {
    std::string name;  // "group/what/size"
    std::string unit;  // "ns/file"
    // Called once, just before the rounds. May throw std::runtime_error: the measure has failed.
    std::function<std::vector<Contender>()> prepare;
    size_t fewestRounds = 7;
};

void RegisterMeasure(Measure measure);

// Sets the counters and the report line of figures that need no rounds; `figures` begins with what
// is measured.
struct Figure {
    std::string name;
    double value;
    double ratio;  // of the first figure to this one; 0 where there is none to tell
};
void ReportFigures(benchmark::State& state, const std::string& unit,
                   const std::vector<Figure>& figures);

// Processor time that this thread has used, in nanoseconds. System calls count, waiting for the
// processor does not: on a machine with other work the wall clock would mostly tell of that.
double ProcessorTime();

// Processor time that a call takes.
template <class Work>
double Nanoseconds(const Work& work) {
    const double start = ProcessorTime();
    work();
    return ProcessorTime() - start;
}

// Runs `work` in a child process, whose heap is as small as this one's was before it and which
// leaves nothing behind; answers what it answered.
std::vector<double> InChild(const std::function<std::vector<double>()>& work);
