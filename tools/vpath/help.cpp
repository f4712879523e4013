#include "help.h"

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
        std::string help = CLI::Formatter::make_help(app, std::move(name), mode);
        help = CLI::detail::find_and_replace(help, "[COMMAND ...]", "COMMAND ...");
        return CLI::detail::find_and_replace(help, "\n\n\n", "\n\n");
    }

    std::string make_option_usage(const CLI::Option* option) const override {
        return option->get_name(/*positional=*/true) + option->get_option_text();
    }

    // Side by side, the first half on the left.
    std::string make_subcommands(const CLI::App* app, CLI::AppFormatMode) const override {
        const std::vector<const CLI::App*> commands = app->get_subcommands({});
        if (commands.empty()) return "";
        std::string text = "\nCommands ('vpath COMMAND --help' says more):\n";
        const size_t rows = (commands.size() + 1) / 2;
        for (size_t row = 0; row < rows; ++row) {
            std::string line = commandText(*commands[row]);
            if (row + rows < commands.size()) {
                line.resize(kScreenWidth / 2, ' ');
                line += commandText(*commands[row + rows]);
            }
            text += line + "\n";
        }
        return text;
    }

  private:
    static std::string commandText(const CLI::App& command) {
        std::string text = "  " + command.get_name();
        text.resize(12, ' ');
        return text + command.get_description();
    }
};

}  // namespace

std::shared_ptr<CLI::FormatterBase> MakeHelpFormatter() {
    return std::make_shared<HelpFormatter>();
}
