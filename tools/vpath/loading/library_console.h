// What the library prints on its console. The command defines hkPrintf, which then takes the place
// of the bundled one: standard output carries answers alone. The text goes to Complain, line by
// line, or to a ConsoleCapture.
#pragma once

#include <string>

// While it lives, the library's console is its text. One at a time.
class ConsoleCapture {
  public:
    ConsoleCapture();
    ~ConsoleCapture();
    ConsoleCapture(const ConsoleCapture&) = delete;
    ConsoleCapture& operator=(const ConsoleCapture&) = delete;

    const std::string& text() const { return text_; }

  private:
    std::string text_;
};
