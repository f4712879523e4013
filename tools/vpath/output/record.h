// What commands answer: records of named fields, stated once and printed as text or as JSON.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

struct Field;

// What a field holds. Texts are bytes as file names are; they need not be UTF-8.
struct Value {
    using List = std::vector<Value>;
    using Object = std::vector<Field>;
    std::variant<std::nullptr_t, bool, int64_t, double, std::string, List, Object> data;

    Value(std::nullptr_t null);
    Value(double number);
    Value(const char* text);
    Value(std::string text);
    Value(std::optional<std::string> text);  // null for none
    Value(List list);
    Value(Object object);
    template <std::integral Number>
    Value(Number number);  // or bool
};

struct Field {
    std::string name;
    Value value;
};

template <std::integral Number>
Value::Value(Number number) {
    if constexpr (std::is_same_v<Number, bool>) {
        data = number;
    } else {
        data = static_cast<int64_t>(number);
    }
}

// How a column looks where colours are shown.
enum class Style {
    kPlain,
    kName,       // what the record is about
    kFile,       // a full name; its directory is set apart
    kDirectory,  // a full name
    kNote,       // what deserves attention
};

struct Column {
    std::string text;
    Style style;
};

class Record {
  public:
    // The type tells the records of one command from those of the others; share/vpath/schema.json
    // describes it.
    explicit Record(const char* type) : fields_{{"type", type}} {}

    // A field that is a column of the text too; a null is shown there as "-". Holds a text, a
    // number or null.
    Record& column(const char* name, Value value, Style style = Style::kPlain);
    // A column of the text alone.
    Record& label(std::string text, Style style = Style::kPlain);
    // A field of JSON alone.
    Record& field(const char* name, Value value);
    // True or false in JSON; in text a last column with the name when true.
    Record& mark(const char* name, bool isSet);
    // Shown as less important where colours are shown.
    Record& faint(bool isFaint = true);
    // The text instead of the columns, without the line feed at its end.
    Record& text(std::string lines);

    const Value::Object& fields() const { return fields_; }
    const std::vector<Column>& columns() const { return columns_; }
    const std::optional<std::string>& wholeText() const { return text_; }
    bool isFaint() const { return isFaint_; }

  private:
    Value::Object fields_;
    std::vector<Column> columns_;
    std::optional<std::string> text_;
    bool isFaint_ = false;
};
