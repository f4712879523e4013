#include "output/text_template.h"

#include <stdexcept>

namespace {

class Filler {
  public:
    Filler(std::string_view text, const Escape& escape) : rest_(text), escape_(escape) {}

    std::string fill(const TemplateValues& values) {
        around_ = {&values};
        fillList("");
        return std::move(made_);
    }

  private:
    struct Mark {
        std::string_view name;
        char kind = '\0';  // '#', '/', '{' or, for a plain value, nothing
    };

    // Up to the mark that ends the list `name`. Depth: that of the lists in the template.
    void fillList(std::string_view name) {
        for (;;) {
            const size_t begin = rest_.find("{{");
            made_ += rest_.substr(0, begin);
            if (begin == std::string_view::npos) {
                rest_ = {};
                if (!name.empty()) Fail("no end of", name);
                return;
            }
            rest_.remove_prefix(begin);
            const Mark mark = takeMark();
            if (mark.kind == '/') {
                if (mark.name != name) Fail("an end without a beginning of", mark.name);
                return;
            }
            if (mark.kind == '#') {
                repeat(mark.name);
            } else {
                const std::string& text = textOf(mark.name);
                made_ += mark.kind == '{' ? text : escape_(text);
            }
        }
    }

    Mark takeMark() {
        const bool raw = rest_.starts_with("{{{");
        const std::string_view closing = raw ? "}}}" : "}}";
        const size_t end = rest_.find(closing);
        if (end == std::string_view::npos) Fail("no end of the mark", rest_.substr(0, 20));
        Mark mark{rest_.substr(closing.size(), end - closing.size()), raw ? '{' : '\0'};
        rest_.remove_prefix(end + closing.size());
        if (!raw && (mark.name.starts_with('#') || mark.name.starts_with('/'))) {
            mark.kind = mark.name[0];
            mark.name.remove_prefix(1);
            dropEmptyLine();
        }
        return mark;
    }

    // A mark alone on its line makes no line.
    void dropEmptyLine() {
        if (!rest_.starts_with('\n')) return;
        const size_t last = made_.find_last_not_of(' ');
        if (last != std::string::npos && made_[last] != '\n') return;
        made_.resize(last == std::string::npos ? 0 : last + 1);
        rest_.remove_prefix(1);
    }

    void repeat(std::string_view name) {
        const std::string_view body = rest_;
        const std::vector<TemplateValues>* entries = listOf(name);
        if (entries != nullptr) {
            for (const TemplateValues& entry : *entries) {
                rest_ = body;
                around_.push_back(&entry);
                fillList(name);
                around_.pop_back();
            }
            if (!entries->empty()) return;
        }
        const std::string end = std::string("{{/").append(name).append("}}");
        const size_t at = body.find(end);
        if (at == std::string_view::npos) Fail("no end of", name);
        rest_ = body.substr(at + end.size());
        dropEmptyLine();
    }

    const std::string& textOf(std::string_view name) const {
        for (auto values = around_.rbegin(); values != around_.rend(); ++values) {
            const auto text = (*values)->texts.find(name);
            if (text != (*values)->texts.end()) return text->second;
        }
        Fail("no value for", name);
    }

    const std::vector<TemplateValues>* listOf(std::string_view name) const {
        for (auto values = around_.rbegin(); values != around_.rend(); ++values) {
            const auto list = (*values)->lists.find(name);
            if (list != (*values)->lists.end()) return &list->second;
        }
        return nullptr;
    }

    [[noreturn]] static void Fail(const char* problem, std::string_view what) {
        throw std::logic_error(std::string("template: ").append(problem) + " " + std::string(what));
    }

    std::string_view rest_;
    const Escape& escape_;
    std::vector<const TemplateValues*> around_;
    std::string made_;
};

}  // namespace

std::string FillTemplate(std::string_view text, const TemplateValues& values,
                         const Escape& escape) {
    return Filler(text, escape).fill(values);
}

std::string EscapeHtml(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            case '\'':
                escaped += "&#39;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}
