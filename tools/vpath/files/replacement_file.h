// Replacing a file so that whoever opens it finds the old one or the new one, whole, whatever
// happens meanwhile.
#pragma once

#include <sys/types.h>

#include <string>

// A new file beside the one that it is to replace, which gets the same
// permissions if that is there. It is removed again unless it is put in the place of the other,
// also when SIGINT, SIGTERM or SIGHUP end the process; a kill that cannot be caught leaves it
// behind, named ".vpath.XXXXXX". One at a time in a process. Failures are thrown as
// CommandErrors.
class ReplacementFile {
  public:
    // `target` is a full name; where it is a link, the file that it leads to is replaced.
    explicit ReplacementFile(const std::string& target);
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    // The name under which it can be written until then.
    const std::string& name() const { return name_; }

    // Waits until what was written is on the disk, then renames, then waits for that.
    void putInPlace();

  private:
    std::string target_;
    std::string directory_;
    std::string name_;
    mode_t mode_ = 0;
    uid_t owner_ = static_cast<uid_t>(-1);  // -1: as it is
    gid_t group_ = static_cast<gid_t>(-1);
};
