// vpath report: the path as a page for a browser.
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "command.h"
#include "files/replacement_file.h"
#include "loading/host_calls.h"
#include "report/report_data.h"
#include "report/report_page.h"

namespace {

ExitStatus RunReport(const std::string& fileName, Context& context) {
    if (fileName.empty()) throw CommandError("an empty FILE; give the name of the page");
    // Taken from where the command is started, before the path changes that.
    std::error_code error;
    const std::filesystem::path fullName = std::filesystem::absolute(fileName, error);
    if (error) throw CommandError(fileName + ": " + error.message());

    ReplacementFile file(fullName);  // before the work, should it not be possible

    KeepListingTimes();
    const LoadedPath& loaded = context.loaded();
    const std::string page =
        ReportPage(ReportDataOf(loaded, context.options), loaded, context.options);

    errno = 0;
    std::ofstream stream(file.name(), std::ios::binary);
    stream << page;
    stream.close();
    if (!stream) {
        throw CommandError("cannot write " + fileName + ": " +
                           (errno != 0 ? std::strerror(errno) : "failed"));
    }
    file.putInPlace();
    return kExitFound;
}

}  // namespace

Command AddReportCommand(CLI::App& app) {
    const auto fileName = std::make_shared<std::string>();
    CLI::App* report = app.add_subcommand("report", "The path as a web page");
    report->fallthrough();
    report->add_option("-o,--output", *fileName, "the page to make or replace")
        ->option_text("FILE")
        ->required();
    report->footer(
        "Writes an HTML page that shows the path without a network: a map whose areas are\n"
        "numbers of files; the names that are found in several places; the directories by\n"
        "the time that listing them took; with --cache, which of them the cache answers\n"
        "for. At every moment FILE is the old page or the new one, whole.\n"
        "Example:\n"
        "  vpath --recursive /w/lib --ext v,p report -o path.html");
    return {report, [fileName](Context& context) { return RunReport(*fileName, context); }};
}
