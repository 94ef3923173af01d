#pragma once

// What "Start" returns. The numbers are shown to people and stay what they are; 5, which meant that
// something else than a plain file had the log file's name, is not used again.

namespace nhupdate {

enum class StartResult : int {
  kStarted = 0,
  kNoFolderName = 1,     // the log folder's name is a null pointer or empty
  kFolderNotUsable = 2,  // there is no such folder, or it can't be looked at
  kFolderIsLink = 3,     // the log folder stands for another place, or may do so: by itself or by
                         // a folder above it
  kFileNotOpened = 4,    // neither the log file nor one in its place can be made or opened
};

}  // namespace nhupdate
