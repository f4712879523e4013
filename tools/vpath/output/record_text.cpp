#include "output/record_text.h"

#include <string_view>

#include "output/console.h"

namespace {

constexpr char kReset[] = "\033[0m";
constexpr char kBold[] = "\033[1m";
constexpr char kFaint[] = "\033[2m";
constexpr char kYellow[] = "\033[33m";
constexpr char kBlue[] = "\033[34m";

std::string Painted(std::string_view color, std::string_view text) {
    if (text.empty()) return "";
    return std::string(color).append(text).append(kReset);
}

std::string ColoredText(std::string_view text, Style style) {
    switch (style) {
        case Style::kPlain:
            break;
        case Style::kName:
            return Painted(kBold, text);
        case Style::kFile: {
            const size_t name = text.rfind('/') + 1;  // 0 when there is none
            return Painted(kBlue, text.substr(0, name)).append(text.substr(name));
        }
        case Style::kDirectory:
            return Painted(kBlue, text);
        case Style::kNote:
            return Painted(kYellow, text);
    }
    return std::string(text);
}

}  // namespace

std::string TextOf(const Record& record, bool colored, bool forTerminal) {
    if (record.wholeText()) return *record.wholeText();
    std::string line;
    for (const Column& column : record.columns()) {
        if (!line.empty()) line += '\t';
        const std::string text = forTerminal ? OnOneLine(column.text) : column.text;
        line += colored && !record.isFaint() ? ColoredText(text, column.style) : text;
    }
    return colored && record.isFaint() ? Painted(kFaint, line) : line;
}
