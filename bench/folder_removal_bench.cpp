// Deleting a folder with all that is in it, beside the barest loop that does it by path.

#include <string>

#include "base/windows.h"
#include "bench/support/folders.h"
#include "bench/support/pairs.h"
#include "install/folder_removal.h"

namespace nhupdate_bench {

namespace {

struct Case {
  const char* name;
  const char* what;
  TreeShape shape;
};

constexpr Case kCases[] = {
    {"folder_removal_files", "removal of 10,000 files in 100 folders", {100, 100, 100}},
    {"folder_removal_folders", "removal of 1,000 folders of one file", {1000, 1, 100}},
};

void CompareRemovals(const CPairs& pairs, const Case& which) {
  if (!pairs.IsWanted(which.name)) {
    return;
  }
  const ScratchFolder scratch;
  const std::wstring tree = scratch.Path() + L"\\tree";
  const auto prepare = [&] {
    RemoveTree(tree);
    MakeTree(tree, which.shape);
  };
  pairs.Compare({which.name, which.what, "DeleteFileW and RemoveDirectoryW in a bare loop", 1.3},
                {[&] {
                   if (!nhupdate::DeleteFolderTree(tree, scratch.Path())) {
                     GiveUp("The removal fails.");
                   }
                 },
                 prepare},
                {[&] { RemoveTree(tree); }, prepare});
}

}  // namespace

void MeasureAll(const CPairs& pairs) {
  for (const Case& which : kCases) {
    CompareRemovals(pairs, which);
  }
}

}  // namespace nhupdate_bench
