#include "loading/host_calls.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <string>
#include <utility>

#include <vpath/path.h>
#include <vpath_posix/posix_host.h>

#include "loading/class_text.h"
#include "output/console.h"

namespace {

// Callbacks carry no context.
CallCounts counts;
ListingObserver listingObserver;
bool keepsListingTimes = false;
std::unordered_map<std::string, ListingTime> listingTimes;
std::unordered_map<std::string, int> failedListings;

void NoteListing(const char* dirName, int error) {
    if (error == 0) {
        failedListings.erase(dirName);
        return;
    }
    failedListings[dirName] = error;
    if (error == EACCES || error == ENOENT || error == ENOTDIR) return;
    Complain(std::string("warning: cannot list ").append(dirName) + ": " + std::strerror(error));
}

char* TimedListing(const vpPath& path, const char* dirName, unsigned int** words) {
    const auto start = std::chrono::steady_clock::now();
    char* names = vpPosixListDirectory(path, dirName, words);
    const int error = errno;
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    ListingTime& time = listingTimes[dirName];
    time.seconds += elapsed.count();
    ++time.listings;
    errno = error;
    return names;
}

char* List(vpPath path, const char* dirName, unsigned int** words) {
    ++counts.listings;
    char* names = keepsListingTimes ? TimedListing(path, dirName, words)
                                    : vpPosixListDirectory(path, dirName, words);
    if (errno != 0 || !failedListings.empty()) NoteListing(dirName, errno);
    if (listingObserver) listingObserver(dirName, names, *words);
    return names;
}

vpDirAccessibility Accessibility(vpPath path, const char* dirName) {
    ++counts.accessibility;
    const vpDirAccessibility answer = vpPosixAccessibility(path, dirName);
    if (answer == vpDirPermissionDenied) failedListings[dirName] = EACCES;
    return answer;
}

bool IsReadable(const char* name) {
    ++counts.readability;
    return vpPosixIsReadable(name);
}

bool IsDirectory(vpPath path, const char* name) {
    ++counts.isDirectory;
    return vpPosixIsDirectory(path, name);
}

long ModificationTime(vpPath path, const char* name) {
    ++counts.timeStamps;
    return vpPosixModificationTime(path, name);
}

int ChangeDirectory(const char* dirName) {
    ++counts.changeDirectory;
    return vpPosixChangeDirectory(dirName);
}

void OnError(const char* text) { Complain(std::string("error: ") + text); }
void OnWarning(const char* text) { Complain(std::string("warning: ") + text); }
void OnInfo(const char* text) { Complain(text); }

}  // namespace

void InstallHost() {
    vpSetMessageFcns(OnError, OnWarning, OnInfo);
    vpSetDefaultIOFcnsNew(List, Accessibility, IsReadable, IsDirectory, ModificationTime,
                          ChangeDirectory);
    vpSetIsClassFcn(DeclaresClass);
}

CallCounts HostCalls() { return counts; }

const std::unordered_map<std::string, int>& FailedListings() { return failedListings; }

void KeepListingTimes() { keepsListingTimes = true; }

const std::unordered_map<std::string, ListingTime>& ListingTimes() { return listingTimes; }

ListingObservation::ListingObservation(ListingObserver observer) {
    listingObserver = std::move(observer);
}

ListingObservation::~ListingObservation() { listingObserver = nullptr; }
