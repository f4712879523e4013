// What `vpath doctor` asks of the system, so that its judgement can be put to any file system.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

using SystemTime = std::chrono::nanoseconds;  // since the epoch

// What came of making a file in a directory and removing it at once.
struct MadeFile {
    int error = 0;         // errno when it could not be made
    int removalError = 0;  // errno when it could not be removed again
    std::string name;
    std::optional<SystemTime> dirTime;  // of the directory while the file was there
    bool answersInCapitals = false;     // also to its name in capitals
};

struct ProbeSystem {
    // 0, or errno. `mode` is that of access(2).
    std::function<int(const std::string& dirName, int mode)> access;
    // As the path's host tells it, but finer; nothing when there is none.
    std::function<std::optional<SystemTime>(const std::string& dirName)> timeOf;
    std::function<SystemTime()> now;
    std::function<void(std::chrono::milliseconds)> sleep;
    std::function<MadeFile(const std::string& dirName)> makeFile;
    // Watches the directory instead of the one before; 0, or errno.
    std::function<int(const std::string& dirName)> watch;
    // Whether the watch tells of that file; waits for it, but not for long.
    std::function<bool(const std::string& fileName)> isTold;
    // TellsOfChanges of file_systems.h.
    std::function<bool(const std::string& dirName)> tellsOfAll;
};

// The functions keep what they share alive.
ProbeSystem RealProbeSystem();
