#include <histedit.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <utility>

#include "output/console.h"
#include "output/exit_status.h"
#include "output/interruption.h"
#include "shell/history.h"
#include "shell/line_reader.h"

namespace {

constexpr size_t kMostCandidates = 100;
constexpr int kMostHistory = 1000;

size_t TerminalWidth() {
    winsize size = {};
    const bool isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : 80;
}

// In columns, down and then right.
void PrintCandidates(const std::vector<std::string>& candidates) {
    const size_t count = std::min(candidates.size(), kMostCandidates);
    std::vector<std::string> cells;
    size_t width = 0;
    for (size_t at = 0; at < count; ++at) {
        cells.push_back(OnOneLine(candidates[at]));
        width = std::max(width, cells.back().size() + 2);
    }
    const size_t columns = std::max<size_t>(1, TerminalWidth() / width);
    const size_t rows = (count + columns - 1) / columns;
    std::string text = "\n";
    for (size_t row = 0; row < rows; ++row) {
        for (size_t at = row; at < count; at += rows) {
            if (at + rows < count) cells[at].resize(width, ' ');
            text += cells[at];
        }
        text += '\n';
    }
    if (count < candidates.size()) {
        text += "... and " + std::to_string(candidates.size() - count) + " more\n";
    }
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

class TerminalReader : public LineReader {
  public:
    explicit TerminalReader(CandidateFinder find)
        : find_(std::move(find)), file_(HistoryFileName()), history_(history_init()) {
        std::setlocale(LC_CTYPE, "");  // characters of several bytes
        el_ = el_init("vpath", stdin, stdout, stderr);
        if (el_ == nullptr || history_ == nullptr) throw CommandError("cannot edit lines here");
        HistEvent event;
        history(history_, &event, H_SETSIZE, kMostHistory);
        history(history_, &event, H_SETUNIQUE, 1);
        for (const std::string& line : file_.read()) {
            history(history_, &event, H_ENTER, line.c_str());
        }
        el_set(el_, EL_CLIENTDATA, this);
        el_set(el_, EL_PROMPT, prompt);
        el_set(el_, EL_EDITOR, "emacs");
        el_set(el_, EL_SIGNAL, 1);
        el_set(el_, EL_HIST, history, history_);
        // By the wide call: the other one keeps copies for ever.
        el_wset(el_, EL_ADDFN, L"vpath-complete", L"Complete the word", complete);
        el_set(el_, EL_BIND, "^I", "vpath-complete", nullptr);
        el_set(el_, EL_BIND, "^R", "em-inc-search-prev", nullptr);
        el_source(el_, nullptr);  // what the user has for all programs
    }

    ~TerminalReader() override {
        el_end(el_);
        history_end(history_);
    }

    Result read(const char* prompt, std::string& line) override {
        prompt_ = prompt;
        int size = 0;
        const char* const text = el_gets(el_, &size);
        if (IsInterrupted()) {
            ForgetInterrupt();
            PrintLine("^C");
            FlushOutput();
            return Result::kInterrupted;
        }
        if (text == nullptr || size <= 0) {
            PrintLine("");
            return Result::kEnd;
        }
        line.assign(text, static_cast<size_t>(size));
        if (line.ends_with('\n')) line.pop_back();
        return Result::kLine;
    }

    void remember(const std::string& line) override {
        if (line.empty() || line[0] == ' ' || line == last_) return;
        last_ = line;
        HistEvent event;
        history(history_, &event, H_ENTER, line.c_str());
        if (line.find('\n') == std::string::npos) file_.append(line);
    }

  private:
    static TerminalReader& self(EditLine* el) {
        void* data = nullptr;
        el_get(el, EL_CLIENTDATA, &data);
        return *static_cast<TerminalReader*>(data);
    }

    static char* prompt(EditLine* el) { return const_cast<char*>(self(el).prompt_); }

    static unsigned char complete(EditLine* el, int) {
        const LineInfo* const info = el_line(el);
        Completion completion;
        try {
            completion = Complete(std::string(info->buffer, info->cursor), self(el).find_);
        } catch (...) {  // which may not pass through the library
        }
        if (IsInterrupted()) return CC_EOF;  // read() tells it from an end
        if (!completion.insertion.empty()) {
            return el_insertstr(el, completion.insertion.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
        }
        if (completion.candidates.empty()) return CC_ERROR;
        PrintCandidates(completion.candidates);
        return CC_REDISPLAY;
    }

    const CandidateFinder find_;
    const HistoryFile file_;
    History* const history_;
    EditLine* el_ = nullptr;
    const char* prompt_ = "";
    std::string last_;
};

}  // namespace

std::unique_ptr<LineReader> MakeTerminalReader(CandidateFinder find) {
    return std::make_unique<TerminalReader>(std::move(find));
}
