// A walk over everything that a path holds, for tests: each item stands where it should, once.
#pragma once

#include <string>

class PathMgr;

// What is wrong with the path's structures; "" when nothing is.
std::string CheckInvariants(PathMgr& path);
