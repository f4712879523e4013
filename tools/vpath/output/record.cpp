#include "output/record.h"

#include <utility>

namespace {

std::string ColumnText(const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value.data)) return *text;
    if (const auto* number = std::get_if<int64_t>(&value.data)) return std::to_string(*number);
    return "-";
}

}  // namespace

Value::Value(std::nullptr_t null) : data(null) {}
Value::Value(double number) : data(number) {}
Value::Value(const char* text) : data(std::string(text)) {}
Value::Value(std::string text) : data(std::move(text)) {}
Value::Value(std::optional<std::string> text) {
    if (text) data = *std::move(text);
}
Value::Value(List list) : data(std::move(list)) {}
Value::Value(Object object) : data(std::move(object)) {}

Record& Record::column(const char* name, Value value, Style style) {
    columns_.push_back({ColumnText(value), style});
    return field(name, std::move(value));
}

Record& Record::label(std::string text, Style style) {
    columns_.push_back({std::move(text), style});
    return *this;
}

Record& Record::field(const char* name, Value value) {
    fields_.push_back({name, std::move(value)});
    return *this;
}

Record& Record::mark(const char* name, bool isSet) {
    if (isSet) columns_.push_back({name, Style::kNote});
    return field(name, isSet);
}

Record& Record::faint(bool isFaint) {
    isFaint_ = isFaint;
    return *this;
}

Record& Record::text(std::string lines) {
    text_ = std::move(lines);
    return *this;
}
