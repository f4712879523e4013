// Joining a directory name and a name below it: the one place that knows the rule.
//
// An empty directory leaves the name as it is. Otherwise the directory gets a '/' at its end unless
// it has one, and one leading '/' of the name is dropped: "a" and "//b" give "a//b".
#pragma once

#include <string_view>

#include "base/memory.h"

// What has to follow `dir`: a separator or none, then `tail`.
struct Joint {
    bool separator;
    std::string_view tail;
};

inline Joint JointOf(std::string_view dir, std::string_view name) {
    if (dir.empty()) return {false, name};
    if (!name.empty() && name.front() == '/') name.remove_prefix(1);
    return {dir.back() != '/', name};
}

// Appends `name`, which may not lie in `dir` itself.
inline void AppendPathName(HkString& dir, std::string_view name) {
    const Joint joint = JointOf(dir, name);
    if (joint.separator) dir += '/';
    dir += joint.tail;
}
