// Texts with places to fill in: the report's page, completions, parts of manual pages.
//
//   {{name}}               a value, escaped for where it stands
//   {{{name}}}             a value as it is
//   {{#name}}...{{/name}}  once for each entry of a list; the values of the entry come before those
//                          around it
//
// The marks are those of Mustache. The library for it that was tried leaves an empty line wherever
// the end of a list stands on a line of its own, which scripts and manual pages would be full of.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

struct TemplateValues {
    std::map<std::string, std::string, std::less<>> texts;
    std::map<std::string, std::vector<TemplateValues>, std::less<>> lists;  // absent: empty
};

using Escape = std::function<std::string(std::string_view)>;

// Throws std::logic_error for a value that is missing and for marks that do not fit together: the
// template is wrong. Line feeds directly after the marks of a list that have a line of their own
// are left out. Cost: the text made.
std::string FillTemplate(std::string_view text, const TemplateValues& values, const Escape& escape);

// For text and attributes in double quotes.
std::string EscapeHtml(std::string_view text);
