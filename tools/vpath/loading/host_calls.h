// The ready-made host as the command installs it: every callback is counted, and the listings can
// be looked at on their way into the library.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>

struct CallCounts {
    uint64_t listings = 0;
    uint64_t accessibility = 0;
    uint64_t readability = 0;
    uint64_t isDirectory = 0;
    uint64_t timeStamps = 0;
    uint64_t changeDirectory = 0;
};

// Called for each directory that the library reads, with its full name and what the listing
// callback answers: names and words as described for vpListingFcn, both null for nothing.
using ListingObserver =
    std::function<void(const char* dirName, const char* names, const unsigned int* words)>;

// Makes the counting callbacks the process-wide ones, DeclaresClass the judge of class files, and
// sends the library's messages to Complain.
void InstallHost();

// The calls so far.
CallCounts HostCalls();

// The directories that could not be read when the library last wanted to, by the name under which
// it asked, with the value of errno. A warning was given unless that tells of what is gone or not
// permitted.
const std::unordered_map<std::string, int>& FailedListings();

struct ListingTime {
    double seconds = 0;  // of all of them
    uint64_t listings = 0;
};

// From now on, keeps how long the disk took to list each directory.
void KeepListingTimes();

// By the name under which the library asked.
const std::unordered_map<std::string, ListingTime>& ListingTimes();

// While it lives, its observer is called. One at a time.
class ListingObservation {
  public:
    explicit ListingObservation(ListingObserver observer);
    ~ListingObservation();
    ListingObservation(const ListingObservation&) = delete;
    ListingObservation& operator=(const ListingObservation&) = delete;
};
