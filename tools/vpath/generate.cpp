#include "generate.h"

#include <algorithm>
#include <utility>

#include <CLI/CLI.hpp>

#include "command_words.h"
#include "embedded_texts.h"
#include "output/exit_status.h"
#include "output/text_template.h"

namespace {

std::string Joined(const std::vector<std::string>& words, const char* separator) {
    std::string text;
    for (const std::string& word : words) text.append(text.empty() ? "" : separator).append(word);
    return text;
}

// `text` with `mark` before each of `characters`.
std::string Marked(std::string_view text, std::string_view characters, char mark) {
    std::string marked;
    for (const char c : text) {
        if (characters.find(c) != std::string_view::npos) marked += mark;
        marked += c;
    }
    return marked;
}

// For bash and zsh, inside single quotes.
std::string InQuotes(std::string_view text) {
    return CLI::detail::find_and_replace(std::string(text), "'", "'\\''");
}

std::string InFishQuotes(std::string_view text) { return Marked(text, "\\'", '\\'); }

std::string InManual(std::string_view text) {
    const std::string escaped = CLI::detail::find_and_replace(std::string(text), "\\", "\\e");
    return Marked(escaped, "-", '\\');
}

std::vector<std::string> Names(const OptionWords& option) {
    std::vector<std::string> names;
    for (const std::string& name : {option.shortName, option.longName}) {
        if (!name.empty()) names.push_back(name);
    }
    return names;
}

// The help of a command within that command is as good as everywhere.
std::vector<OptionWords> OwnOptions(const CommandWords& command) {
    std::vector<OptionWords> options = command.options;
    if (command.path.empty()) return options;
    std::erase_if(options, [](const OptionWords& option) { return option.longName == "--help"; });
    return options;
}

std::string BashKind(const ValueWord& value) {
    switch (value.kind) {
        case ValueWord::kFile:
            return "file";
        case ValueWord::kDirectory:
            return "directory";
        case ValueWord::kDirectoryList:
            return "directories";
        default:
            return Joined(value.words, " ");
    }
}

std::string ZshAction(const ValueWord& value) {
    switch (value.kind) {
        case ValueWord::kFile:
            return "_files";
        case ValueWord::kDirectory:
            return "_files -/";
        case ValueWord::kDirectoryList:
            return "_dir_list";
        case ValueWord::kWords:
            return "(" + Joined(value.words, " ") + ")";
        default:
            return " ";
    }
}

std::string FishValue(const ValueWord& value) {
    switch (value.kind) {
        case ValueWord::kFile:
            return " -F";
        case ValueWord::kDirectory:
            return " -x -a '(__fish_complete_directories (commandline -ct))'";
        case ValueWord::kDirectoryList:
            return " -x -a '(__vpath_directories)'";
        case ValueWord::kWords:
            return " -x -a '" + Joined(value.words, " ") + "'";
        default:
            return " -x";
    }
}

// For _arguments, quoted.
std::string ZshOption(const OptionWords& option) {
    std::string about = "[" + Marked(option.about, "[]\\", '\\') + "]";
    const std::vector<std::string> names = Names(option);
    const bool hasValue = !option.value.name.empty();
    if (hasValue) about += ":" + option.value.name + ":" + ZshAction(option.value);
    about = "'" + InQuotes(about) + "'";
    const std::string before = hasValue           ? "'*'"
                               : names.size() > 1 ? "'(" + Joined(names, " ") + ")'"
                                                  : "";
    if (!hasValue) {
        return names.size() > 1 ? before + "{" + Joined(names, ",") + "}" + about
                                : names[0] + about;
    }
    return names.size() > 1 ? before + "{" + names[0] + "+," + names[1] + "=}" + about
                            : before + names[0] + "=" + about;
}

std::string ZshArgument(const ArgumentWord& argument) {
    return std::string(argument.isMany ? "'*:" : "':") + argument.value.name + ":" +
           ZshAction(argument.value) + "'";
}

std::string FishNames(const OptionWords& option) {
    std::string names;
    if (!option.shortName.empty()) names += " -s " + option.shortName.substr(1);
    if (!option.longName.empty()) names += " -l " + option.longName.substr(2);
    return names;
}

std::string ManualOption(const OptionWords& option) {
    std::string text;
    for (const std::string& name : Names(option)) {
        text.append(text.empty() ? "" : ", ").append("\\fB").append(InManual(name)).append("\\fR");
    }
    if (!option.value.name.empty()) text += " \\fI" + option.value.name + "\\fR";
    return text;
}

std::string ManualUsage(const CommandWords& command) {
    std::string usage = " \\fB" + InManual(Joined(command.path, " ")) + "\\fR";
    for (const OptionWords& option : OwnOptions(command)) {
        OptionWords shortest = option;
        if (!option.shortName.empty()) shortest.longName.clear();
        const std::string text = ManualOption(shortest);
        usage += option.isRequired ? " " + text : " [" + text + "]";
    }
    for (const ArgumentWord& argument : command.arguments) {
        const std::string text =
            "\\fI" + argument.value.name + "\\fR" + (argument.isMany ? "..." : "");
        usage += argument.isRequired ? " " + text : " [" + text + "]";
    }
    return usage;
}

void AddOptions(const CommandWords& command, TemplateValues& values) {
    const bool isMain = command.path.empty();
    const std::string name = Joined(command.path, " ");
    std::vector<std::string> own;
    for (const OptionWords& option : OwnOptions(command)) {
        for (const std::string& optionName : Names(option)) own.push_back(optionName);
        values.lists[isMain ? "globals" : "owns"].push_back({{{"words", ZshOption(option)}}, {}});
        values.lists["options"].push_back(
            {{{"condition", isMain ? "" : " -n '__vpath_in \"" + name + "\"'"},
              {"names", FishNames(option)},
              {"value", option.value.name.empty() ? "" : " -r" + FishValue(option.value)},
              {"about", option.about}},
             {}});
        values.lists["ownOptions"].push_back(
            {{{"names", ManualOption(option)}, {"about", option.about}}, {}});
        if (option.value.name.empty()) continue;
        TemplateValues valued{{{"long", option.longName}, {"kind", BashKind(option.value)}}, {}};
        if (!option.shortName.empty()) {
            valued.lists["short"] = {{{{"short", option.shortName}}, {}}};
        }
        values.lists["valueOptions"].push_back(std::move(valued));
    }
    if (!isMain && !own.empty()) values.lists["own"] = {{{{"own", Joined(own, " ")}}, {}}};
    if (isMain) values.texts["globalOptions"] = Joined(own, " ");
}

void AddArguments(const CommandWords& command, TemplateValues& values) {
    for (size_t i = 0; i < command.arguments.size(); ++i) {
        const ArgumentWord& argument = command.arguments[i];
        values.lists["owns"].push_back({{{"words", ZshArgument(argument)}}, {}});
        if (argument.value.kind == ValueWord::kNothing) continue;
        values.lists["arguments"].push_back(
            {{{"place", argument.isMany ? "many" : std::to_string(i)},
              {"kind", BashKind(argument.value)}},
             {}});
        values.lists["offers"].push_back({{{"value", FishValue(argument.value)}}, {}});
    }
}

TemplateValues ValuesOf(const std::vector<CommandWords>& commands) {
    TemplateValues all;
    for (const CommandWords& command : commands) {
        const std::string name = Joined(command.path, " ");
        TemplateValues values;
        values.texts = {{"command", name},
                        {"scope", command.path.empty() ? "*" : "'" + name + "'"},
                        {"id", command.path.empty() ? "" : "_" + Joined(command.path, "_")},
                        {"about", command.about},
                        {"usage", ManualUsage(command)}};
        AddOptions(command, values);
        AddArguments(command, values);
        values.lists[command.commands.empty() ? "leaf" : "innerCommands"] = {{}};
        if (command.commands.empty()) values.lists["usable"] = {{}};
        for (const CommandWords& inner : commands) {
            if (inner.path.size() != command.path.size() + 1 ||
                !std::equal(command.path.begin(), command.path.end(), inner.path.begin())) {
                continue;
            }
            values.lists["commandNames"].push_back(
                {{{"name", inner.path.back()}, {"about", inner.about}}, {}});
        }
        if (!command.commands.empty()) {
            values.lists["inner"] = {{{{"inner", Joined(command.commands, " ")}}, {}}};
        }
        if (command.path.empty()) {
            all.texts["globalOptions"] = values.texts["globalOptions"];
        }
        all.lists["commands"].push_back(std::move(values));
    }
    return all;
}

}  // namespace

void AddGenerateOption(CLI::App& app, std::string& what) {
    app.add_option("--generate", what)->group("");  // hidden: for the build
}

std::string Generate(const CLI::App& app, const std::string& what) {
    const TemplateValues values = ValuesOf(CommandWordsOf(app));
    if (what == "bash") return FillTemplate(kBashCompletion, values, InQuotes);
    if (what == "zsh") return FillTemplate(kZshCompletion, values, InQuotes);
    if (what == "fish") return FillTemplate(kFishCompletion, values, InFishQuotes);
    if (what == "man") return FillTemplate(kManualCommands, values, InManual);
    throw CommandError("--generate " + what + ": not bash, zsh, fish or man");
}
