#include "options/name_arguments.h"

#include <climits>

#include <CLI/CLI.hpp>

#include "output/exit_status.h"

CLI::Option* AddNameArguments(CLI::App& command, const char* what, std::vector<std::string>& names,
                              const char* help) {
    // Any number, but not CLI11's "unlimited": that would take '[a,b]' for two names.
    constexpr int kManyNames = 1 << 28;
    return command.add_option(what, names, help)
        ->required()
        ->expected(kManyNames, kManyNames)
        ->allow_extra_args(false)
        ->option_text("...")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void CheckNameArguments(const std::vector<std::string>& names, const char* what,
                        const char* whose) {
    for (const std::string& name : names) {
        if (name.empty()) {
            throw CommandError(std::string("an empty ") + what + "; give the name of " + whose);
        }
        if (name.size() > PATH_MAX) {
            throw CommandError(std::string("a ") + what + " of more than " +
                               std::to_string(PATH_MAX) + " characters; no file can have it");
        }
    }
}
