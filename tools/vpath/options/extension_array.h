#pragma once

#include <string>
#include <vector>

// A list of extensions as searches and class look-ups take it: ended by null, or null for any.
class ExtensionArray {
  public:
    ExtensionArray() = default;  // any
    explicit ExtensionArray(const std::vector<std::string>& extensions) {
        for (const std::string& extension : extensions) list_.push_back(extension.c_str());
        list_.push_back(nullptr);
    }

    bool isAny() const { return list_.empty(); }
    const char** data() { return list_.empty() ? nullptr : list_.data(); }

  private:
    std::vector<const char*> list_;  // of the caller's strings
};
