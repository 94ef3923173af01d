// Looking for folders without a file, beside the barest loop that sees every entry of a tree.

#include "install/empty_folders.h"

#include <string>
#include <vector>

#include "bench/support/folders.h"
#include "bench/support/pairs.h"
#include "bench/support/started_log.h"

namespace nhupdate_bench {

namespace {

constexpr int kOuterFolders = 200;
constexpr int kInnerFolders = 100;  // in each of them
constexpr int kAllFolders = kOuterFolders * (kInnerFolders + 1);

// None of them is empty, as after nearly every update: what is compared is the walk, not the log.
constexpr TreeShape kInnerShape = {kInnerFolders, 1, 0};

void CompareScans(const CPairs& pairs, const TreePlace& place) {
  const Row row = {"empty_folders" + place.row,
                   "scan for empty folders in 20,200 folders with 20,000 files" + place.row_words,
                   "FindFirstFileW and FindNextFileW in a bare loop", 1.05};
  if (!pairs.IsWanted(row.name)) {
    return;
  }
  const ScratchFolder scratch(place.folder);
  const std::wstring tree = scratch.Path() + L"\\tree";
  MakeFolder(tree);
  for (int index = 0; index < kOuterFolders; ++index) {
    MakeTree(tree + L"\\outer" + std::to_wstring(index), kInnerShape);
  }
  StartedLog log(scratch.Path());

  pairs.Compare(row, {[&] {
                  std::vector<std::wstring> found;
                  if (nhupdate::CollectEmptyFolders(tree, found, log.Log()) || !found.empty()) {
                    GiveUp("A folder with a file counts as empty.");
                  }
                }},
                {[&] {
                  if (CountFolders(tree) != kAllFolders) {
                    GiveUp("The loop misses folders.");
                  }
                }});
}

}  // namespace

void MeasureAll(const CPairs& pairs) {
  for (const TreePlace& place : TreePlaces()) {
    CompareScans(pairs, place);
  }
}

}  // namespace nhupdate_bench
