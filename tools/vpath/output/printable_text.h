#pragma once

#include <string>
#include <string_view>

// A name as text that shows all there is in it, in valid UTF-8: a backslash doubled, control
// characters as \n, \t or \x1b, bytes that are not UTF-8 as \xff, characters that are not seen or
// turn the direction of what follows as \u202e.
std::string PrintableText(std::string_view bytes);
