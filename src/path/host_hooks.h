// The host's I/O callbacks: the process-wide table, from which each path takes its own.
#pragma once

#include <vpath/path.h>

struct IOFunctions {
    vpListingFcn listing = nullptr;
    vpAccessibilityFcn accessibility = nullptr;
    vpPathnameOkFcn isPathnameOk = nullptr;
    vpIsDirectoryFcn isDirectory = nullptr;
    vpTimeStampFcn timeStamp = nullptr;
    vpChangeDirFcn changeDir = nullptr;
};

IOFunctions& DefaultIOFunctions();

// Whether the first five process-wide callbacks are all installed.
bool DefaultIOFunctionsComplete();

// `given` with each null replaced by the process-wide callback.
IOFunctions WithDefaults(const IOFunctions& given);
