#include "support/host_calls.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <stdexcept>

#include <hostkit/hostkit.h>

namespace {

// Callbacks carry no context.
const HostFunctions* recorded = nullptr;
HostCalls* record = nullptr;

void Note(HostCalls::Kind kind, const char* name) { record->add(kind, name); }

char* List(vpPath path, const char* name, unsigned int** words) {
    Note(HostCalls::kList, name);
    return recorded->list(path, name, words);
}

vpDirAccessibility Accessibility(vpPath path, const char* name) {
    Note(HostCalls::kAccessibility, name);
    return recorded->accessibility(path, name);
}

bool IsReadable(const char* name) {
    Note(HostCalls::kIsReadable, name);
    return recorded->isReadable(name);
}

bool IsDirectory(vpPath path, const char* name) {
    Note(HostCalls::kIsDirectory, name);
    return recorded->isDirectory(path, name);
}

long ModificationTime(vpPath path, const char* name) {
    Note(HostCalls::kModificationTime, name);
    return recorded->modificationTime(path, name);
}

void InstallOn(const vpPath& path, const HostFunctions& functions) {
    vpSetIOFcns(path, functions.list, functions.accessibility, functions.isReadable,
                functions.isDirectory, functions.modificationTime);
}

}  // namespace

void Install(const HostFunctions& functions) {
    vpSetDefaultIOFcns(functions.list, functions.accessibility, functions.isReadable,
                       functions.isDirectory, functions.modificationTime);
}

HostCalls Record(const HostFunctions& functions, const vpPath& path,
                 const std::function<void()>& work) {
    HostCalls calls;
    calls.calls.reserve(1 << 17);  // not among the blocks that the path takes
    calls.names.reserve(1 << 23);
    recorded = &functions;
    record = &calls;
    InstallOn(path, {List, Accessibility, IsReadable, IsDirectory, ModificationTime});
    work();
    InstallOn(path, functions);
    return calls;
}

void HostCalls::add(Kind kind, const std::string& name) {
    calls.push_back({kind, names.size()});
    names.append(name).push_back('\0');
}

size_t HostCalls::count(Kind kind) const {
    return static_cast<size_t>(std::count_if(
        calls.begin(), calls.end(), [kind](const Call& call) { return call.kind == kind; }));
}

void Replay(const HostFunctions& functions, const vpPath& path, const HostCalls& calls) {
    for (const HostCalls::Call& call : calls.calls) {
        const char* const name = calls.names.c_str() + call.name;
        switch (call.kind) {
            case HostCalls::kList: {
                unsigned int* words = nullptr;
                hkFree(functions.list(path, name, &words));
                hkFree(words);
                break;
            }
            case HostCalls::kAccessibility:
                benchmark::DoNotOptimize(functions.accessibility(path, name));
                break;
            case HostCalls::kIsReadable:
                benchmark::DoNotOptimize(functions.isReadable(name));
                break;
            case HostCalls::kIsDirectory:
                benchmark::DoNotOptimize(functions.isDirectory(path, name));
                break;
            case HostCalls::kModificationTime:
                benchmark::DoNotOptimize(functions.modificationTime(path, name));
                break;
        }
    }
}

vpPath NewPath(const HostFunctions& functions) {
    static int number = 0;
    Install(functions);
    vpPath path = vpCreatePathWithPreFrozen(0, ("bench" + std::to_string(++number)).c_str(),
                                            nullptr, vpCaseDefault, false);
    if (path.get() == nullptr) throw std::runtime_error("no path");
    return path;
}
