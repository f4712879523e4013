// The registry of live paths by name, and their creation and removal.
#pragma once

#include "base/memory.h"

class PathMgr;

// The live path of that exact name, null being the empty name; or null.
PathMgr* FindPath(const char* name);

HkVector<PathMgr*> RegisteredPaths();

// Tells the listeners, then unregisters and empties a live path.
void RemovePath(PathMgr& path);
