#pragma once

// What a stand-in knows of itself.

#include <string>

namespace nhupdate_stand_in {

// The folder that holds this executable.
[[nodiscard]] std::wstring OwnFolder();

// Writes down how this process was started: its executable's path, its working folder, its show
// state ("-" without one), the id and file name of its parent, and its whole command line. The
// journal's path is in the environment variable NHUPDATE_CHILD_JOURNAL.
void RecordOwnStart();

}  // namespace nhupdate_stand_in
