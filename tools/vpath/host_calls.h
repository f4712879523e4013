// The ready-made host as the command installs it: every callback is counted, and the listings can
// be looked at on their way into the library.
#pragma once

#include <cstdint>
#include <functional>

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

// While it lives, its observer is called. One at a time.
class ListingObservation {
  public:
    explicit ListingObservation(ListingObserver observer);
    ~ListingObservation();
    ListingObservation(const ListingObservation&) = delete;
    ListingObservation& operator=(const ListingObservation&) = delete;
};
