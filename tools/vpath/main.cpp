// vpath: loads a search path over real directories and answers from it.
#include <csignal>
#include <exception>
#include <string>
#include <vector>

#include "command_line.h"
#include "output/console.h"

int main(int argc, char** argv) {
    // A closed pipe, or a file at the limit of its size, shows as a failed write instead.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        Context context;
        CommandLine line(context, CommandLine::OfProgram());
        if (!line.parse(std::vector<std::string>(argv + 1, argv + argc))) return kExitFound;
        UseDefaultPath(context.options);
        return line.run();
    } catch (const OutputClosed&) {
        return kExitFound;
    } catch (const std::exception& error) {
        Complain(error.what());
        return kExitFailure;
    }
}
