#include "help.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

namespace {

constexpr size_t kScreenWidth = 80;

class HelpFormatter : public CLI::Formatter {
  public:
    HelpFormatter() {
        label("SUBCOMMAND", "COMMAND ...");
        label("Positionals", "Arguments");
        column_width(24);
    }

    std::string make_help(const CLI::App* app, std::string name,
                          CLI::AppFormatMode mode) const override {
        if (app->get_parent() == nullptr) return mainHelp(*app, name);
        std::string help = CLI::Formatter::make_help(app, std::move(name), mode);
        help = CLI::detail::find_and_replace(help, "[COMMAND ...]", "COMMAND ...");
        return CLI::detail::find_and_replace(help, "\n\n\n", "\n\n");
    }

    std::string make_option_usage(const CLI::Option* option) const override {
        const bool isMany = option->get_option_text() == "...";
        const std::string name = option->get_name(/*positional=*/true) + (isMany ? "..." : "");
        return option->get_required() ? name : "[" + name + "]";
    }

    std::string make_option_opts(const CLI::Option* option) const override {
        const bool named = !option->get_positional() || !option->get_option_text().empty();
        return named ? CLI::Formatter::make_option_opts(option) : "";
    }

    // Of a command that has commands.
    std::string make_subcommands(const CLI::App* app, CLI::AppFormatMode) const override {
        const std::vector<const CLI::App*> commands = app->get_subcommands({});
        if (commands.empty()) return "";
        return "\nCommands ('vpath " + app->get_name() + " COMMAND --help' says more):\n" +
               lines(commandCells(commands));
    }

  private:
    // Of the command itself: commands and most options side by side.
    std::string mainHelp(const CLI::App& app, const std::string& name) const {
        const std::string usage = make_usage(&app, name);
        std::string help = make_description(&app) +
                           CLI::detail::find_and_replace(usage, "[COMMAND ...]", "COMMAND ...") +
                           "Commands ('" + (name.empty() ? "" : name + " ") +
                           "COMMAND --help' says more):\n";
        help += sideBySide(commandCells(app.get_subcommands({})));
        std::vector<std::string> cells;
        std::vector<std::string> groups = app.get_groups();
        std::reverse(groups.begin(), groups.end());  // the path before what applies to it
        for (const std::string& group : groups) {
            if (group.empty()) continue;  // hidden
            const auto options = app.get_options(
                [&](const CLI::Option* option) { return option->get_group() == group; });
            const bool isNarrow = group == "Options";
            cells.clear();
            for (const CLI::Option* option : options) {
                const std::string title =
                    make_option_name(option, false) + make_option_opts(option);
                cells.push_back(cell(title, isNarrow ? 16 : 18, option->get_description()));
            }
            help += group + ":\n" + (isNarrow ? sideBySide(cells) : lines(cells));
        }
        return help + make_footer(&app);
    }

    static std::vector<std::string> commandCells(const std::vector<const CLI::App*>& commands) {
        std::vector<std::string> cells;
        cells.reserve(commands.size());
        for (const CLI::App* command : commands) {
            cells.push_back(cell(command->get_name(), 10, command->get_description()));
        }
        return cells;
    }

    static std::string cell(std::string title, size_t titleWidth, const std::string& text) {
        title.resize(std::max(titleWidth, title.size() + 1), ' ');
        return "  " + title + text;
    }

    static std::string lines(const std::vector<std::string>& cells) {
        std::string text;
        for (const std::string& cell : cells) text += cell + "\n";
        return text;
    }

    // In two columns, the first half on the left.
    static std::string sideBySide(const std::vector<std::string>& cells) {
        std::string text;
        const size_t rows = (cells.size() + 1) / 2;
        for (size_t row = 0; row < rows; ++row) {
            std::string line = cells[row];
            if (row + rows < cells.size()) {
                line.resize(kScreenWidth / 2, ' ');
                line += cells[row + rows];
            }
            text += line + "\n";
        }
        return text;
    }
};

}  // namespace

std::shared_ptr<CLI::FormatterBase> MakeHelpFormatter() {
    return std::make_shared<HelpFormatter>();
}
