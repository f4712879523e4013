#pragma once

#include <string>

// Whether the file system that holds a directory tells of every change in it. Those do not that
// others may change too, over a network or beneath, and those that have no files of their own. True
// for a directory that is not there.
bool TellsOfChanges(const std::string& dirName);
