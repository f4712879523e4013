#include "watch/file_systems.h"

#include <linux/magic.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cstdint>

namespace {

// By statfs(2). The numbers without a name are those that the kernel's header leaves out.
constexpr uint32_t kSilent[] = {
    NFS_SUPER_MAGIC,    SMB_SUPER_MAGIC,     CIFS_SUPER_MAGIC, SMB2_SUPER_MAGIC,
    AFS_SUPER_MAGIC,    AFS_FS_MAGIC,        CODA_SUPER_MAGIC, NCP_SUPER_MAGIC,
    CEPH_SUPER_MAGIC,   V9FS_MAGIC,          FUSE_SUPER_MAGIC, OVERLAYFS_SUPER_MAGIC,
    OCFS2_SUPER_MAGIC,
    0x01161970,  // GFS2
    0x0bd00bd0,  // Lustre
    0x47504653,  // GPFS
    0x19830326,  // BeeGFS
    0x786f4256,  // folders that a virtual machine shares with its host, three kinds
    0xbacbacbc,         0x7c7c6673,          PROC_SUPER_MAGIC, SYSFS_MAGIC,
    CGROUP_SUPER_MAGIC, CGROUP2_SUPER_MAGIC,
};

}  // namespace

bool TellsOfChanges(const std::string& dirName) {
    struct statfs status;
    if (statfs(dirName.c_str(), &status) != 0) return true;
    const auto type = static_cast<uint32_t>(status.f_type);
    return std::find(std::begin(kSilent), std::end(kSilent), type) == std::end(kSilent);
}
