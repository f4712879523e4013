#include "support/tree_host.h"

#include <unistd.h>

#include <benchmark/benchmark.h>
#include <cstring>
#include <memory>
#include <string_view>
#include <unordered_map>

#include <hostkit/hostkit.h>

TreeHost::ReadCost TreeHost::readCost = ReadCost::kNothing;

namespace {

constexpr unsigned int kDirectoryWord = 0x4000;
constexpr unsigned int kFileWord = 0x8000;

struct Node {
    std::string name;
    std::string listing;  // as the library wants it but for the last NUL, which c_str() adds
    std::vector<unsigned int> words;
    long time = 1000;
};

std::unordered_map<std::string_view, std::unique_ptr<Node>>& Nodes() {
    static std::unordered_map<std::string_view, std::unique_ptr<Node>> nodes;
    return nodes;
}

Node* Find(const char* name) {
    const auto found = Nodes().find(name);
    return found == Nodes().end() ? nullptr : found->second.get();
}

char* List(vpPath, const char* name, unsigned int** words) {
    const Node* const node = Find(name);
    if (node == nullptr) return nullptr;
    const size_t size = node->listing.size() + 1;
    char* const listing = static_cast<char*>(hkMalloc(size));
    std::memcpy(listing, node->listing.c_str(), size);
    *words = static_cast<unsigned int*>(hkMalloc(node->words.size() * sizeof(unsigned int)));
    std::memcpy(*words, node->words.data(), node->words.size() * sizeof(unsigned int));
    return listing;
}

vpDirAccessibility Accessibility(vpPath, const char* name) {
    return Find(name) != nullptr ? vpDirAccessible : vpDirNonexistent;
}

bool IsReadable(const char* name) {
    if (TreeHost::readCost == TreeHost::ReadCost::kAccess) {
        benchmark::DoNotOptimize(access(name, R_OK));
    }
    return true;
}

bool IsDirectory(vpPath, const char* name) { return Find(name) != nullptr; }

long ModificationTime(vpPath, const char* name) {
    const Node* const node = Find(name);
    return node != nullptr ? node->time : 0;
}

}  // namespace

const HostFunctions& TreeHost::functions() {
    static constexpr HostFunctions kFunctions = {List, Accessibility, IsReadable, IsDirectory,
                                                 ModificationTime};
    return kFunctions;
}

void TreeHost::addDirectory(const std::string& name, const std::vector<std::string>& entries) {
    auto node = std::make_unique<Node>();
    node->name = name;
    for (const std::string& entry : entries) {
        node->listing.append(entry).push_back('\0');
        node->words.push_back(entry == "private" || entry[0] == '@' ? kDirectoryWord : kFileWord);
    }
    const std::string_view key = node->name;
    Nodes().erase(key);  // with the key, which is part of the old node
    Nodes().emplace(key, std::move(node));
}

void TreeHost::add(const GeneratedTree& tree) {
    for (const GeneratedTree::Directory& directory : tree.directories) {
        addDirectory(directory.name, directory.entries);
        if (!directory.privateFiles.empty()) {
            addDirectory(directory.name + "/private", directory.privateFiles);
        }
    }
}

void TreeHost::touch(const std::string& directory) { ++Find(directory.c_str())->time; }
