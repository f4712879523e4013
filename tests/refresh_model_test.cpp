// Whatever changes on disk, in whatever second and however it falls between the library's calls: a
// refresh in a quiet moment, two seconds later, brings the path to what the disk holds.
#include <algorithm>
#include <sstream>

#include "support/path_test.h"

namespace {

class RefreshModel : public PathTest {
  protected:
    // Makes or removes a file, or the class directory with its file, in this second.
    void toggle(const std::string& name) {
        const bool isDirectory = name.back() == '/';
        if (host.exists(name)) {
            host.remove(isDirectory ? name.substr(0, name.size() - 1) : name);
        } else {
            host.add({isDirectory ? name + "y" : name});
            if (isDirectory) host.setTime(name, host.now);
        }
        host.setTime(name.substr(0, name.rfind('/', name.size() - 2)), host.now);
    }

    void act(char action) {
        switch (action) {
            case 't':
                ++host.now;
                break;
            case 'f':
                toggle("/a/x");
                break;
            case 'g':
                if (host.exists("/a/@C")) toggle("/a/@C/y");
                break;
            case 'c':
                toggle("/a/@C/");
                break;
            case 'r':
                vpRefreshAllDirectories(path, vpRefreshIfChanged);
                break;
            case 'm':
                vpSetFullnameChanged(path, "/a/@C/y");
                vpRefreshAllDirectories(path, vpRefreshPending);
                break;
            case 'u':
                vpChangedUnknownDir(path);
                break;
            case 'l':  // changes while it is read, slowly
                host.onListed = [this](const std::string& name) {
                    if (name != "/a") return;
                    toggle("/a/z");
                    host.now += 3;
                };
                vpRefreshAllDirectories(path, vpRefreshUnlessFrozen);
                host.onListed = nullptr;
                break;
        }
    }

    static std::string sorted(std::vector<std::string> names) {
        std::sort(names.begin(), names.end());
        std::string text;
        for (const std::string& name : names) text += name + " ";
        return text;
    }

    std::string onPath(const std::string& name) {
        if (vpGetDirType(dir(name)) == vpDirTypeNone) return "";
        std::istringstream words(step("holds " + name));
        std::vector<std::string> names;
        for (std::string word; words >> word;) {
            if (word != "|") names.push_back(word);
        }
        return sorted(names);
    }
};

TEST_F(RefreshModel, AQuietRefreshFindsAllChanges) {
    const std::string actions = "tfgcrmul";
    const int length = 5;
    host.recording = false;
    int sequences = 1;
    for (int i = 0; i < length; ++i) sequences *= static_cast<int>(actions.size());
    for (int number = 0; number < sequences && !HasFailure(); ++number) {
        vpTerminate();
        host.reset();
        host.now = 1000;
        run("tree /a/x /a/@C/ ; time /a 999 ; path /a");
        std::string sequence;
        for (int i = 0, left = number; i < length; ++i, left /= static_cast<int>(actions.size())) {
            sequence += actions[static_cast<size_t>(left) % actions.size()];
            act(sequence.back());
        }
        host.now += 2;
        vpRefreshAllDirectories(path, vpRefreshIfChanged);
        for (const std::string name : {"/a", "/a/@C"}) {
            ASSERT_EQ(onPath(name), sorted(host.entries(name))) << sequence;
        }
    }
    CheckTable(path);
}

}  // namespace
