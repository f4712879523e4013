// What the library wants to reach, and whether it did.
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

// Gathers what measures have given and prints one line for each goal that
// was measured: ok or short.
class GoalSheet {
  public:
    void take(const std::vector<benchmark::BenchmarkReporter::Run>& runs);
    void print() const;

  private:
    std::vector<benchmark::BenchmarkReporter::Run> runs_;
};
