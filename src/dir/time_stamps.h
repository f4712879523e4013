// Time stamps of directories, and the test whether one has changed on disk.
//
// Times are whole seconds, so a change made in the second in which a time was read cannot be told
// from no change. Hence the two-second rule: a time of the current second or the one before is
// never trusted. At load such a stamp is recorded as older than it is, and at a test it counts as a
// change that is not recorded; either way the directory is looked at again.
#pragma once

class PathAllDirItemInfo;

// Values of PathAllDirItemInfo::stampMode. A changed stamp is recorded up to kStampModeOpen.
inline constexpr int kStampModeLoaded = 1;
inline constexpr int kStampModeOpen = 2;
inline constexpr int kStampModeHeld = 5;

// Records the directory's time as after a load.
void ReadStampAfterLoad(PathAllDirItemInfo& directory);

// Whether the directory changed since its stamp was recorded; a frozen one never, one that was
// never read or is marked changed always, without a call. May move the load state.
bool HasChanged(PathAllDirItemInfo& directory);

// The same for a directory of any state, asking the host: for a re-read that is to record the
// stamp.
bool CompareStamp(PathAllDirItemInfo& directory);
