#pragma once

// Files and folders as they were at some moment, and what has become of them since.

#include <map>
#include <string>

namespace nhupdate_test {

// Full paths, those of folders with a backslash at the end, and the contents of the files: the
// bytes themselves when there are few of them, with line ends as \r and \n, else how many they are
// and their hash; "program VERSION" for one that CInstalledHub::PutManager has put. The content
// of a log, which has times and process ids in it, and of a file that is held is left out.
using Tree = std::map<std::wstring, std::string>;

// All that is below the folder, not through links; nothing when there is no such folder.
[[nodiscard]] Tree ReadTree(const std::wstring& folder);

// One line for each file or folder that is "gone", "new" or "changed"; empty when all is as before.
// What is too long to show is named by a file that had the same content before, if there is one.
[[nodiscard]] std::string DescribeChanges(const Tree& before, const Tree& after);

}  // namespace nhupdate_test
