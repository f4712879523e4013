// Adds whole trees of directories to a path.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include <vpath/path.h>

class TreeAdder {
  public:
    explicit TreeAdder(const vpPath& path, bool ignoreCase);

    // Adds the directory `root`, a full name, and every ordinary subdirectory below it: each
    // directory before what lies in it, those of one directory in the order of their bytes. Left
    // out are hidden, private, class and package directories (the path reads the last three with
    // the directory that holds them), and links to a directory in which they lie, which have no
    // end. Directories that are on the path already stay where they are. Throws CommandError when
    // there is no directory `root`; LineInterrupted where interrupts are noted, with what it has
    // added.
    void add(const std::string& root);

    // To be told of every listing that the library reads meanwhile, as described for
    // ListingObserver: it saves reading each directory twice.
    void onListing(const char* dirName, const char* names, const unsigned int* words);

  private:
    struct FileId {
        dev_t device;
        ino_t inode;
        bool operator==(const FileId&) const = default;
    };

    // A directory whose subdirectories are being added.
    struct Level {
        std::string name;
        std::vector<std::string> subdirectories;
        size_t next;  // in subdirectories
    };

    void enter(const std::string& name);
    vpDir addToPath(const std::string& name);  // of type vpDirTypePath when it is there now
    std::vector<std::string> subdirectories(const char* names, const unsigned int* words) const;
    std::vector<std::string> listSubdirectories(const vpDir& dir);
    bool isOrdinary(const char* name) const;
    static std::optional<FileId> idOf(const std::string& name);

    const vpPath path_;
    const bool ignoreCase_;
    std::vector<FileId> above_;  // the directories that hold the one being added, from "/" down
    std::vector<Level> levels_;  // the last of those: the ones below the root of the tree
    std::string adding_;         // the directory whose listing is wanted; empty: none
    std::optional<std::vector<std::string>> listed_;  // its subdirectories, once it was read
};
