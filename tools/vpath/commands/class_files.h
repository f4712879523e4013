// The file that defines a class.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <vpath/path.h>

#include "options/path_options.h"

// The full name of the file that defines the class "Name" or "pkg.Name". Of several in one
// directory the one whose extension stands last in --ext; p before v when that is not given.
std::optional<std::string> ClassFile(const vpPath& path, const std::string& className,
                                     const PathOptions& options);

// Why there is none, as far as the names on the path and the texts of files tell, and what would
// help.
std::string WhyNoClassFile(const vpPath& path, const std::string& className,
                           const PathOptions& options);
