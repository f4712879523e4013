#include <string_view>

#include <nlohmann/json.hpp>

#include "output/record_text.h"

namespace {

using Json = nlohmann::ordered_json;

bool IsUtf8(const std::string& text) {
    try {
        static_cast<void>(Json(text).dump());
        return true;
    } catch (const Json::type_error&) {
        return false;
    }
}

std::string Base64(std::string_view bytes) {
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (size_t at = 0; at < bytes.size(); at += 3) {
        const std::string_view three = bytes.substr(at, 3);
        unsigned int bits = 0;
        for (size_t i = 0; i < 3; ++i) {
            bits = bits << 8 | (i < three.size() ? static_cast<unsigned char>(three[i]) : 0U);
        }
        for (size_t i = 0; i < 4; ++i) {
            text += i <= three.size() ? kDigits[bits >> (18 - 6 * i) & 63] : '=';
        }
    }
    return text;
}

Json JsonValue(const Value& value);

struct ToJson {
    template <typename Plain>
    Json operator()(const Plain& plain) const {
        return plain;
    }
    Json operator()(const std::string& text) const {
        if (IsUtf8(text)) return text;
        return {{"base64", Base64(text)}};
    }
    Json operator()(const Value::List& list) const {
        Json array = Json::array();
        for (const Value& value : list) array.push_back(JsonValue(value));
        return array;
    }
    Json operator()(const Value::Object& fields) const {
        Json object = Json::object();
        for (const Field& field : fields) object[field.name] = JsonValue(field.value);
        return object;
    }
};

Json JsonValue(const Value& value) { return std::visit(ToJson(), value.data); }

}  // namespace

std::string JsonOf(const Record& record) { return ToJson()(record.fields()).dump(); }
