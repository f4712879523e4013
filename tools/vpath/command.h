// What the commands share, and the list of them.
#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "loading/loaded_path.h"
#include "options/path_options.h"
#include "output/exit_status.h"
#include "output/output.h"

namespace CLI {
class App;
}

// The path that a command works on, loaded when it is first asked for, and where its answers go.
class Context {
  public:
    Context() = default;
    explicit Context(LoadedPath loaded) : loaded_(std::move(loaded)) {}

    PathOptions options;
    OutputOptions outputOptions;

    // `frozen` is that of LoadPath.
    const LoadedPath& loaded(const char* frozen = nullptr) {
        if (!loaded_) loaded_ = LoadPath(options, frozen);
        return *loaded_;
    }
    bool isLoaded() const { return loaded_.has_value(); }

    Output& output() {
        if (!output_) output_.emplace(outputOptions);
        return *output_;
    }

  private:
    std::optional<LoadedPath> loaded_;
    std::optional<Output> output_;
};

struct Command {
    CLI::App* app;  // tells whether the command was given
    std::function<ExitStatus(Context&)> run;
};

// Each adds a command with its options to `app`.
Command AddWhichCommand(CLI::App& app);
Command AddClassCommand(CLI::App& app);
Command AddClassesCommand(CLI::App& app);
Command AddMethodsCommand(CLI::App& app);
Command AddPackagesCommand(CLI::App& app);
Command AddWatchCommand(CLI::App& app);
Command AddCacheCommand(CLI::App& app);
Command AddDirsCommand(CLI::App& app);
Command AddLsCommand(CLI::App& app);
Command AddStatsCommand(CLI::App& app);
Command AddShadowsCommand(CLI::App& app);
Command AddDiffCommand(CLI::App& app);
Command AddWhyNotCommand(CLI::App& app);
Command AddReportCommand(CLI::App& app);
Command AddDoctorCommand(CLI::App& app);
Command AddShellCommand(CLI::App& app);
