// The floor for edits: a list of directories and a map from their names, both of the standard
// library, and a block for the one file of each directory. It can do nothing but be edited.
#pragma once

#include <list>
#include <string>
#include <unordered_map>

#include <hostkit/hostkit.h>

#include "support/host_calls.h"

class ListPath {
  public:
    explicit ListPath(const HostFunctions& host) : host_(host) {}

    void addBack(const std::string& name) { add(name, order_.end()); }
    void addFront(const std::string& name) { add(name, order_.begin()); }
    void remove(const std::string& name) {
        const auto found = places_.find(name);
        order_.erase(found->second);
        places_.erase(found);
    }
    void moveToBack(const std::string& name) {
        order_.splice(order_.end(), order_, places_.find(name)->second);
    }

  private:
    struct Directory {
        std::string name;
        std::list<std::string> files;
        long time;
    };

    // Asks the host what a path asks for a directory that it adds.
    void add(const std::string& name, std::list<Directory>::iterator place) {
        const vpPath none;
        host_.accessibility(none, name.c_str());
        const long time = host_.modificationTime(none, name.c_str());
        unsigned int* words = nullptr;
        char* const listing = host_.list(none, name.c_str(), &words);
        places_.emplace(name, order_.insert(place, {name, {listing}, time}));
        hkFree(listing);
        hkFree(words);
    }

    HostFunctions host_;
    std::list<Directory> order_;
    std::unordered_map<std::string, std::list<Directory>::iterator> places_;
};
