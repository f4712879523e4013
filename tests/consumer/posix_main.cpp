// A program on the ready-made host, built against an installation: finds a file of the directory in
// which it runs.
#include <cstdio>

#include <vpath/search.h>
#include <vpath_posix/posix_host.h>

int main() {
    if (!vpInstallPosixHost()) return 1;
    vpPath path = vpCreatePath(0, "main");
    vpAddDir(path, "/", vpAddAtEnd);
    if (vpGetNumPathDirs(path) != 2) return 1;
    vpSearch* search = vpCreateAllSearch(path, nullptr, nullptr, vpReadCheckVerify);
    vpDir where;
    const bool found = vpFindNextUnspecified(search, &where, nullptr) != 0;
    vpDestroySearch(&search);
    vpRemovePath(path);
    std::printf("version %s\n", found ? libvpath_version : "none");
    return 0;
}
