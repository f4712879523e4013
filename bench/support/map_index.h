// What one writes first: a standard map from lower-cased names to files. It holds the first file of
// each name only, which is all that a first-match look-up over names of one spelling needs.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class MapIndex {
  public:
    size_t addDirectory(std::string_view name);
    void add(size_t directory, std::string_view file);

    // As FlatIndex::find.
    unsigned int find(const char* name, const char** extensions, char* fullName) const;

  private:
    struct File {
        size_t directory;
        std::string name;
        std::string extension;
    };
    std::vector<std::string> directories_;
    std::unordered_map<std::string, File> files_;
};
