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

// Asks the host whether the directory's time has moved since its stamp was recorded. If so, the new
// one is recorded as far as the stamp's mode says and the directory marked changed; but a time of
// this second or the one before only answers true: more may change in it.
bool CompareStamp(PathAllDirItemInfo& directory);
