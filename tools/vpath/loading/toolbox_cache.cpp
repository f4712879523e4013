#include "loading/toolbox_cache.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "loading/library_console.h"
#include "loading/path_names.h"
#include "output/exit_status.h"

namespace {

// Of what the library says about a load that failed, the cause.
std::string Cause(const std::string& console) {
    std::string cause = console.substr(0, console.find("Error occurred loading: "));
    while (!cause.empty() && (cause.back() == '\n' || cause.back() == '.')) cause.pop_back();
    return cause.empty() ? "not a whole cache file" : cause;
}

}  // namespace

std::string_view Toolbox::nameIn(std::string_view fullName) const {
    if (fullName.size() <= dir.size() + 1 || !fullName.starts_with(dir) ||
        fullName[dir.size()] != '/') {
        return {};
    }
    return fullName.substr(dir.size() + 1);
}

Toolbox ToolboxOf(const std::string& root) {
    const auto fullName = FullDirName(root);
    if (!fullName) {
        throw CommandError("--root " + root + ": no such directory; name that of the installation");
    }
    Toolbox toolbox;
    if (*fullName != "/") toolbox.root = *fullName;
    toolbox.dir = toolbox.root + "/toolbox";
    return toolbox;
}

std::string FullNameOfCacheFile(const std::string& fileName) {
    std::error_code error;
    const std::filesystem::path full = std::filesystem::absolute(fileName, error);
    if (error) throw CommandError(fileName + ": " + error.message());
    return full;
}

void UseCache(const vpPath& path, const std::string& said, const std::string& fileName,
              const Toolbox& toolbox) {
    struct stat status;
    if (stat(fileName.c_str(), &status) != 0 || access(fileName.c_str(), R_OK) != 0) {
        throw CommandError(said + ": " + std::strerror(errno) + "; name a readable cache file");
    }
    if (!S_ISREG(status.st_mode)) {
        throw CommandError(said + ": not a regular file; name a cache file");
    }
    const ConsoleCapture console;
    vpUseToolboxCache(path, fileName.c_str(), toolbox.root.c_str(), /*verbose=*/false);
    if (!console.text().empty()) {
        throw CommandError(said + ": " + Cause(console.text()) +
                           "; make the file again with 'vpath cache write'");
    }
}

CacheStatistics RevertFromCache(const vpPath& path) {
    const ConsoleCapture console;
    vpEnableToolboxCacheDiagnosticStatusReport(true);
    vpRevertFromToolboxCache(path);
    vpEnableToolboxCacheDiagnosticStatusReport(false);

    CacheStatistics statistics;
    const auto read = [&](const char* label, int& number) {
        const size_t at = console.text().find(label);
        if (at != std::string::npos) number = std::atoi(&console.text()[at + std::strlen(label)]);
    };
    read("TotalDirLookupRequests = ", statistics.requests);
    read("TotalDirLookupHits = ", statistics.hits);
    read("NumCompares = ", statistics.comparisons);
    return statistics;
}
