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
        return CLI::detail::find_and_replace(help, "\n\n\n", "\n\n");
    }

    std::string make_option_usage(const CLI::Option* option) const override {
        return option->get_name(/*positional=*/true) + option->get_option_text();
    }

  private:
    // Of the command itself: commands and most options side by side.
    std::string mainHelp(const CLI::App& app, const std::string& name) const {
        const std::string usage = make_usage(&app, name);
        std::string help = make_description(&app) +
                           CLI::detail::find_and_replace(usage, "[COMMAND ...]", "COMMAND ...") +
                           "\nCommands ('vpath COMMAND --help' says more):\n";
        std::vector<std::string> cells;
        for (const CLI::App* command : app.get_subcommands({})) {
            cells.push_back(cell(command->get_name(), 10, command->get_description()));
        }
        help += sideBySide(cells);
        std::vector<std::string> groups = app.get_groups();
        std::reverse(groups.begin(), groups.end());  // the path before what applies to it
        for (const std::string& group : groups) {
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
