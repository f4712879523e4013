// Why a file answers to a name, or does not, and what would make it.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include <vpath/path.h>

#include "commands/query.h"
#include "options/extension_array.h"
#include "output/record.h"

struct Candidate {
    std::string file;  // its full name
    vpDir dir;         // that holds it
};

struct Verdict {
    const char* words;                  // "wins", or what keeps it from winning first of all
    std::optional<std::string> advice;  // all that would make it win; none when it does

    bool wins() const { return !advice; }
};

// A candidate for a name with the verdict on it.
Record CandidateRecord(const std::string& name, const std::string& file, const Verdict& verdict);

class Judge {
  public:
    Judge(const vpPath& path, const vpDir& from, vpReadCheck readCheck,
          const ExtensionArray& extensions);

    // Every file anywhere on the path that is called like the name, whatever its extension and
    // case, in the order in which the search considers them; then those that it never comes to, in
    // path order. Cost: the files of the path, once, then the candidates.
    std::vector<Candidate> candidates(const std::string& name);

    // On a file that its directory is known to hold, which the disk may have turned into a
    // directory meanwhile. Cost: a look at the disk; the files that answer to the name, once for
    // verdicts on the same name that follow each other.
    Verdict verdict(const std::string& name, const Candidate& candidate);

    // Whether the directory is known to hold the file.
    bool isKnown(const Candidate& candidate) const;

  private:
    std::vector<Candidate> read(const Search& search) const;
    void ask(const std::string& name);
    enum class Rule { kStem, kCase, kOwnExtension, kOwnExtensionCase, kExtensions, kReadCheck };
    bool fits(const Candidate& candidate, Rule rule);
    Verdict refusal(const std::string& name, const Candidate& candidate);
    bool isListedInItsCase(const std::string& extension) const;
    const char* hiddenWords(const std::string& name, const Candidate& hidden) const;
    std::string unhide(const std::string& name, const Candidate& hidden) const;
    void readIndex();

    const vpPath path_;
    const vpDir from_;
    const vpReadCheck readCheck_;
    const ExtensionArray extensions_;
    Query query_;
    Query looseQuery_;
    std::optional<std::unordered_map<std::string, std::vector<Candidate>>> index_;  // by stem

    // What is known of the name that was asked about last.
    std::optional<std::string> asked_;
    std::optional<Candidate> winner_;
    std::unordered_set<std::string> matches_;
    std::vector<Candidate> considered_;              // whatever their extension and case, in order
    std::unordered_set<std::string> reachedByCase_;  // of those, without regard to extensions
    std::map<std::pair<const void*, Rule>, std::unordered_set<std::string>>
        fitting_;                                        // by directory
    std::unordered_map<std::string, size_t> positions_;  // of those files among them
};
