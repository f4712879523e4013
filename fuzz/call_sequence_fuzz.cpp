// Calls in any order, with handles and searches kept open over them, a listener that calls back,
// and a tree that changes meanwhile: the structures hold throughout.
#include <vector>

#include "fuzzed_path.h"

namespace {

constexpr const char* kDirectories[] = {"/a",         "/b",       "/a/d",  "d",   "/a/@C", "/a/+p",
                                        "/a/private", "/b/+p/@C", "/none", "/a/", ".",     ""};
constexpr const char* kFiles[] = {
    "/a/f.v",           "/b/f.v",         "/b/F.p",          "/a/@C/C.v",  "/b/@C/f.v", "/a/+p/f.v",
    "/b/+p/@C/C.p",     "/a/private/f.v", "/a/@C/private/g", "/a/d/f.v",   "/cwd/f.v",  "/cwd/d/",
    "/cwd/private/f.v", "/a/+p/+q/f",     "/b/d/",           "/cwd/@C/f.v"};
constexpr const char* kNames[] = {"f", "F.V", "@C/f", "+p/f", "private/f", "C", "d/f", nullptr};
constexpr const char* kLists[] = {"/a:/b", "/b;/a:d", "/b:/b/:/none", ":", "/a/d:/a"};

template <class Choices>
const char* Pick(Input& input, const Choices& choices) {
    return choices[input.below(std::size(choices))];
}

class Caller {
  public:
    explicit Caller(Input& input) : input_(input) {
        theCaller_ = this;
        for (const char* const name : kFiles) on_.host.add({name});
        vpRegisterPathInterest(on_.path, [](vpEventType, vpDir dir) { theCaller_->answer(dir); });
    }
    ~Caller() {
        for (vpSearch*& search : searches_) vpDestroySearch(&search);
    }

    void step() {
        call();
        if (vpLookupPath("fuzz").get() == nullptr) {
            on_.path = vpCreatePathWithPreFrozen(0, "fuzz", "/b", vpCaseSensitive, false);
        }
    }

    void check() { on_.check(); }

  private:
    void call() {
        const vpPath path = on_.path;
        vpDir& kept = kept_[input_.below(std::size(kept_))];
        vpSearch*& search = searches_[input_.below(std::size(searches_))];
        switch (input_.below(24)) {
            case 0:
                on_.host.add({Pick(input_, kFiles)});
                break;
            case 1:
                remove(Pick(input_, kFiles));
                break;
            case 2:
                on_.host.now += static_cast<long>(input_.below(4));
                break;
            case 3:
                touch(Pick(input_, kDirectories));
                break;
            case 4:
                kept = vpAddDir(path, Pick(input_, kDirectories), where());
                break;
            case 5:
                vpAddDirsString(path, Pick(input_, kLists), where());
                break;
            case 6:
                vpRemoveDir(kept);
                break;
            case 7:
                vpReplacePath(path, Pick(input_, kLists));
                break;
            case 8:
                vpSetCWDName(path, Pick(input_, kDirectories));
                break;
            case 9:
                vpRefreshAllDirectories(path, refreshType());
                break;
            case 10:
                vpRefreshDirectory(kept, refreshType());
                break;
            case 11:
                vpFreeze(kept);
                break;
            case 12:
                vpUnFreeze(kept);
                break;
            case 13:
                vpHideCWD(path, input_.below(2) == 0);
                break;
            case 14:
                vpSetCaseSensitivity(path, input_.below(2) == 0);
                break;
            case 15:
                kept = vpFindDirFullName(path, Pick(input_, kDirectories));
                break;
            case 16:
                kept = vpGetMethodDirs(kept, vpGetNextMethodDir(kept));
                break;
            case 17:
                kept = vpSetFullnameChanged(path, Pick(input_, kFiles));
                break;
            case 18:
                vpSetDirChanged(kept);
                break;
            case 19:
                vpDeleteNonExistentDirectories(path);
                break;
            case 20:
                open(search, kept);
                break;
            case 21:
                next(search, kept);
                break;
            case 22:
                callsBack_ = input_.below(3) == 0;
                break;
            default:
                if (input_.below(8) == 0) vpRemovePath(path);
                break;
        }
    }

    void remove(const char* name) {
        if (on_.host.exists(name)) on_.host.remove(name);
    }
    void touch(const char* name) {
        if (on_.host.exists(name)) on_.host.setTime(name, on_.host.now);
    }

    void open(vpSearch*& search, const vpDir& from) {
        vpDestroySearch(&search);
        const char* const name = Pick(input_, kNames);
        switch (input_.below(4)) {
            case 0:
                search = vpCreateAllSearch(on_.path, name, nullptr, vpReadCheckVerify);
                break;
            case 1:
                search = vpCreateVisibleSearch(from, name, nullptr, vpReadCheckSkip);
                break;
            case 2:
                search = vpCreateDirSearch(from, name, nullptr, vpReadCheckSkip);
                break;
            default:
                search = vpCreateMethodSearch(on_.path, name, nullptr, vpReadCheckSkip);
                break;
        }
    }

    void next(vpSearch* search, vpDir& dir) {
        if (search == nullptr) return;
        char name[2 * 4352];
        switch (input_.below(3)) {
            case 0:
                vpFindNextUnspecified(search, &dir, name);
                break;
            case 1:
                vpFindNextFile(search, &dir, name);
                break;
            default:
                vpFindNextDir(search, &dir);
                break;
        }
    }

    // What the listener does: another call, but none beneath it.
    void answer(const vpDir& dir) {
        char name[2 * 4352];
        if (vpGetDirNameLen(dir) < static_cast<int>(sizeof name)) vpGetDirName(dir, name);
        if (!callsBack_ || isInside_) return;
        isInside_ = true;
        call();
        isInside_ = false;
    }

    vpDirAddLocn where() { return static_cast<vpDirAddLocn>(input_.below(2)); }
    vpDirRefreshType refreshType() { return static_cast<vpDirRefreshType>(input_.below(5)); }

    static inline Caller* theCaller_ = nullptr;
    FuzzedPath on_{"/b"};
    Input& input_;
    vpDir kept_[4];
    vpSearch* searches_[3] = {};
    bool callsBack_ = false;
    bool isInside_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, std::min<size_t>(size, 4096));
    Caller caller(input);
    for (int steps = 1; !input.empty(); ++steps) {
        caller.step();
        if (steps % 16 == 0) caller.check();
    }
    caller.check();
    return 0;
}
