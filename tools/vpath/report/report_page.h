#pragma once

#include <string>

#include "loading/loaded_path.h"
#include "options/path_options.h"
#include "report/report_data.h"

// The report as an HTML page that needs nothing else. Names from the path are shown as
// PrintableText and escaped. Cost: what `data` holds.
std::string ReportPage(const ReportData& data, const LoadedPath& loaded,
                       const PathOptions& options);
