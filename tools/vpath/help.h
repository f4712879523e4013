// How the help of the command and of its commands is laid out: it fits a screen of 24 lines.
#pragma once

#include <memory>

namespace CLI {
class FormatterBase;
}

std::shared_ptr<CLI::FormatterBase> MakeHelpFormatter();
