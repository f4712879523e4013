#include "command_words.h"

#include <CLI/CLI.hpp>

#include "output/output.h"

namespace {

ValueWord::Kind KindOf(const std::string& option, const std::string& value) {
    if (option == "--ext") return ValueWord::kNothing;
    if (value == "FILE") return ValueWord::kFile;
    if (value == "DIR") return ValueWord::kDirectory;
    if (value == "LIST" || value == "PATH1" || value == "PATH2") return ValueWord::kDirectoryList;
    if (value == "WHEN") return ValueWord::kWords;
    return ValueWord::kNothing;
}

// What the help calls it.
std::string NameOfValue(const CLI::Option& option) {
    if (option.get_items_expected_max() == 0) return "";
    const std::string& text = option.get_option_text();
    return text.empty() ? option.get_type_name() : text;
}

ValueWord ValueOf(const std::string& option, const std::string& name) {
    ValueWord value{name, KindOf(option, name), {}};
    if (value.kind == ValueWord::kWords) value.words = ColorWords();
    return value;
}

CommandWords WordsOf(const CLI::App& app, std::vector<std::string> path) {
    CommandWords command{std::move(path), app.get_description(), {}, {}, {}};
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_group().empty()) continue;
        const std::string& about = option->get_description();
        const bool isRequired = option->get_required();
        if (option->get_positional()) {
            const std::string name = option->get_name(/*positional=*/true);
            const bool isMany = option->get_items_expected_max() > 1;
            command.arguments.push_back({ValueOf(name, name), about, isRequired, isMany});
            continue;
        }
        const std::vector<std::string>& shortNames = option->get_snames();
        const std::vector<std::string>& longNames = option->get_lnames();
        const std::string shortName = shortNames.empty() ? "" : "-" + shortNames[0];
        const std::string longName = longNames.empty() ? "" : "--" + longNames[0];
        command.options.push_back(
            {shortName, longName, about, ValueOf(longName, NameOfValue(*option)), isRequired});
    }
    for (const CLI::App* inner : app.get_subcommands({})) {
        command.commands.push_back(inner->get_name());
    }
    return command;
}

}  // namespace

std::vector<CommandWords> CommandWordsOf(const CLI::App& app) {
    struct Command {
        const CLI::App* app;
        std::vector<std::string> path;
    };
    std::vector<CommandWords> commands;
    std::vector<Command> left = {{&app, {}}};
    while (!left.empty()) {
        const Command command = left.back();
        left.pop_back();
        commands.push_back(WordsOf(*command.app, command.path));
        const std::vector<const CLI::App*> inner = command.app->get_subcommands({});
        for (auto at = inner.rbegin(); at != inner.rend(); ++at) {
            left.push_back({*at, command.path});
            left.back().path.push_back((*at)->get_name());
        }
    }
    return commands;
}
