// A path that stays loaded while line after line asks about it and changes it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "command.h"
#include "watch/path_events.h"

class Session {
  public:
    // Loads the path of the context, whose options hold for every line unless it has its own.
    explicit Session(Context& context);

    // Runs a line. What is wrong with it is said on standard error. Throws OutputClosed
    // and OutputFailed alone.
    ExitStatus run(const std::vector<std::string>& words);

    const vpPath& path() const { return loaded_.path; }
    const PathOptions& options() const { return options_; }

    // What the commands of the session ask for.
    void end() { isOver_ = true; }
    bool isOver() const { return isOver_; }
    // Whether each line also tells which events of the path it caused.
    void setEvents(bool shown);
    bool areEventsShown() const { return events_.has_value(); }
    // Tells those since the last line that did.
    void tellEvents(Output& output);

  private:
    ExitStatus runLine(const std::vector<std::string>& words);

    LoadedPath loaded_;
    const PathOptions options_;
    const OutputOptions outputOptions_;
    std::optional<PathEvents> events_;
    bool isOver_ = false;
};
