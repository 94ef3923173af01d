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

void CompareRemovals(const CPairs& pairs, const Case& which, const TreePlace& place) {
  const std::string name = which.name + place.row;
  if (!pairs.IsWanted(name)) {
    return;
  }
  const ScratchFolder scratch(place.folder);
  const std::wstring tree = scratch.Path() + L"\\tree";
  const auto prepare = [&] {
    RemoveTree(tree);
    MakeTree(tree, which.shape);
  };
  pairs.Compare(
      {name, which.what + place.row_words, "DeleteFileW and RemoveDirectoryW in a bare loop", 1.3},
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
  for (const TreePlace& place : TreePlaces()) {
    for (const Case& which : kCases) {
      CompareRemovals(pairs, which, place);
    }
  }
}

}  // namespace nhupdate_bench
