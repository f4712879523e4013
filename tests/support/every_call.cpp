#include "support/every_call.h"

#include <cstring>
#include <iterator>

#include <hostkit/hostkit.h>

#include <vpath/pathname.h>
#include <vpath/search.h>

#include "support/fake_host.h"
#include "support/temp_tree.h"

namespace {

using Host = FakeHost;

const char* theExtensions[] = {"v", "p", nullptr};

vpDir A(const vpPath& path) { return vpFindDirFullName(path, "/a"); }
vpDir Class(const vpPath& path) { return vpGetNextMethodClassDir(vpGetNullDir(path), "C"); }

// A file that holds nothing but the directories of the tests.
const char* CacheFile() {
    static const TempTree tree;
    static const std::string name = tree.at("cache");
    std::ofstream(name) << "<Lumenvale type=\"Path Cache File\" version=\"1.1\" date=\"\">\n"
                           " <D name=\"a\">\n  <F name=\"f.v\"/>\n   <D name=\"a/@C\">\n"
                           "    <F name=\"f.v\"/>\n   </D>\n </D>\n</Lumenvale>\n";
    return name.c_str();
}

}  // namespace

const EveryCall kEveryCall[] = {
    {"callbacks",
     [](const vpPath& path) {
         vpSetDefaultIOFcns(Host::list, Host::accessibility, Host::isReadable, Host::isDir,
                            Host::modificationTime);
         vpSetDefaultIOFcnsNew(Host::list, Host::accessibility, Host::isReadable, Host::isDir,
                               Host::modificationTime, Host::changeDir);
         vpUpdatePathArrayDefaultIOFcns();
         vpSetIOFcns(path, Host::list, Host::accessibility, Host::isReadable, Host::isDir,
                     Host::modificationTime);
         vpSetIOFcnsNew(path, Host::list, Host::accessibility, Host::isReadable, Host::isDir,
                        Host::modificationTime, Host::changeDir);
         vpSetMessageFcns(Host::onError, Host::onWarning, Host::onInfo);
         vpReturnEnvironmentFcns(vpGetEnvironmentFcns());
         vpDiagnostics(0);
         vpSetIsClassFcn(nullptr);
     }},
    {"registry",
     [](const vpPath& path) {
         const vpPath other = vpCreatePath(0, "other");
         vpCreatePathWithPreFrozen(0, "frozen", "/a", vpCaseInsensitive, true);
         vpLookupPath("p");
         vpLookupPathname(path);
         vpRemovePath(other);
         vpSetCurrentPathname(vpGetCurrentPathname());
         vpSetDefaultPathname("p");
         vpCurrentPathExists();
     }},
    {"case",
     [](const vpPath& path) {
         vpSetCaseSensitivity(path, !vpGetPathCaseSensitivity(path));
         vpSetCaseSensitivity(path, true);
     }},
    {"add array",
     [](const vpPath& path) {
         const char* names[] = {"/d", "rel", "/b"};
         vpAddDirsArray(path, names, 3, vpAddAtBeginning);
     }},
    {"path questions",
     [](const vpPath& path) {
         vpGetNumPathDirs(path);
         vpCheckIsDir(path, "/new");
         const vpDir next = vpGetNextPathDir(vpGetNullDir(path));
         vpSelectDirFirstOnPath(next, A(path));
     }},
    {"freeze all",
     [](const vpPath& path) {
         const bool before = vpSetFreezeAllAddedDirectories(path, true);
         vpAddDir(path, "/new", vpAddAtEnd);
         vpSetFreezeAllAddedDirectories(path, before);
     }},
    {"cwd",
     [](const vpPath& path) {
         char name[5000];
         vpSetCWDName(path, "/new");
         vpGetCWDName(path, name, sizeof name);
         vpIsPathDirAlsoCWD(vpGetCWD(path));
         vpIsCWDOnPath(path);
     }},
    {"directory questions",
     [](const vpPath& path) {
         char name[10000];
         for (const vpDir& dir : {A(path), Class(path), vpGetPrivateDir(A(path)), vpDir()}) {
             vpIsDirHandleValid(dir);
             vpLookupPathname(vpGetPathOfDir(dir));
             vpIsSameDir(dir, vpGetPathDir(dir));
             if (vpGetDirNameLen(dir) > 0) vpConcatDirName(dir, "sub", name);
             vpGetDirName(dir, name);
             vpGetBaseDirName(dir);
             vpGetDirType(dir);
             vpIsAbsoluteDir(dir);
             vpGetParentDir(dir);
         }
         vpIsPrivateDirName("private");
         vpPath().copy(path);
     }},
    {"listeners",
     [](const vpPath& path) {
         const vpRegisteredInterest third = vpRegisterPathInterest(path, Host::secondListener);
         vpCancelPathInterest({path, 1});
         vpCancelPathInterest(third);
         vpSuppressChangeNotify(path, false);
         vpSetDirectoryReloadMessages(path, vpSetDirectoryReloadMessages(path, true));
         vpSetNotificationHandleWarnings(path, vpWarnInvalidCNHOff);
     }},
    {"time stamps",
     [](const vpPath& path) {
         vpTimeStamp_tag* const one = vpCreateTimeStamp();
         vpTimeStamp_tag* const two = vpCreateTimeStamp();
         if (one != nullptr && two != nullptr) {
             vpGetTimeStamp(path, "/a/f.v", one);
             vpGetTimeStampFromDir(A(path), "f.v", two);
             vpIsFileTimeStampDifferent(one, two);
             vpHasFileChanged(A(path), "f.v", one, vpUpdateTimeStamp);
             vpCopyTimeStamp(one, two);
         }
         vpDestroyTimeStamp(one);
         vpDestroyTimeStamp(two);
     }},
    {"marks",
     [](const vpPath& path) {
         vpSetDirChanged(A(path));
         vpSetDirChanged(path, "/a/@C");
         vpSetFullnameChanged(path, "/b/f.v");
         vpSetAllChanged(path);
         vpChangedUnknownDir(path);
         vpNonNotifiedRemoteCWDRefreshPolicy(path, vpRefreshPolicyDefault);
         vpNonNotifiedRemotePathRefreshPolicy(path, vpRefreshPolicyDefault);
     }},
    {"use cache",
     [](const vpPath& path) { vpUseToolboxCache(path, CacheFile(), "/", /*verbose=*/true); }},
    {"caches",
     [](const vpPath& path) {
         static const TempTree written;
         vpEnableToolboxCacheDiagnosticStatusReport(true);
         vpEnableToolboxCacheDiagnosticTrace(true);
         vpUseToolboxCache(path, CacheFile(), "/", /*verbose=*/false);
         vpInToolboxCacheMode();
         vpAddDir(path, "/a", vpAddAtEnd);
         vpWritePathToCacheFile(path, written.at("copy").c_str());
         vpRevertFromToolboxCache(path);
         vpEnableToolboxCacheDiagnosticStatusReport(false);
         vpEnableToolboxCacheDiagnosticTrace(false);
     }},
    {"classes",
     [](const vpPath& path) {
         char name[10000];
         vpIsFileClassdef(path, "/a/f.v");
         vpDoesClassFileExist(path, "C", theExtensions);
         vpGetClassFile(path, "C", name, sizeof name, theExtensions);
         vpGetMethodDirs(A(path), A(path));
         vpGetPackageDirs(A(path), A(path));
         vpGetNextMethodDir(Class(path));
     }},
    {"look-ups",
     [](const vpPath& path) {
         char name[10000];
         vpDir dir;
         const vpReadCheck check = vpReadCheckVerify;
         vpFindFirstFileInAll(path, "f", theExtensions, check, &dir, name);
         vpFindFirstFileVisibleToDir(A(path), "f", theExtensions, check, &dir, name);
         vpFindFirstFileVisibleToFile(path, "/a/f.v", "f", theExtensions, check, &dir, name);
     }},
    {"pathnames",
     [](const vpPath& path) {
         char text[10000];
         int length = 0;
         char* normal = nullptr;
         vpNormalizeDirName("/a/../b", true, 0, &length, &normal);
         vpFreeNormalizedDirName(normal);
         vpFullPath(text, "b", sizeof text);
         vpTildeExpansion(text, std::strcpy(text, "~/a"));
         vpGetObjectNameFromPath(path, "/a/@C/f.v", text, sizeof text);
     }},
};
const int kEveryCallCount = static_cast<int>(std::size(kEveryCall));
