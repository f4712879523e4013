#pragma once

#include <string>

// For CLI::Option::check. An empty name is mostly that of a script's variable that was never set;
// taken for an option that is not there, it would answer another question.
inline std::string NotEmpty(const std::string& value) {
    return value.empty() ? "the value is empty" : "";
}
