// Putting a staged product over the installed one, beside the barest loop that copies a tree.

#include <string>

#include "base/product_folders.h"
#include "bench/support/folders.h"
#include "bench/support/pairs.h"
#include "bench/support/started_log.h"
#include "install/folder_copy.h"

namespace nhupdate_bench {

namespace {

struct Case {
  const char* name;
  const char* what;
  TreeShape shape;
  bool log_details;
  double target;
};

constexpr Case kCases[] = {
    {"install_copy_files_log",
     "install copy of 10,000 files of 100 bytes in 100 folders, each in the log",
     {100, 100, 100},
     true,
     1.08},
    {"install_copy_files",
     "install copy of 10,000 files of 100 bytes in 100 folders",
     {100, 100, 100},
     false,
     1.03},
    {"install_copy_folders",
     "install copy of 1,000 folders of one file",
     {1000, 1, 100},
     false,
     1.15},
    {"install_copy_large", "install copy of 100 files of 4 MiB", {1, 100, 4 << 20}, false, 1.0},
};

void CompareCopies(const CPairs& pairs, const Case& which, const TreePlace& place) {
  const std::string name = which.name + place.row;
  if (!pairs.IsWanted(name)) {
    return;
  }
  const ScratchFolder scratch(place.folder);
  const std::wstring source = scratch.Path() + L"\\source";
  const std::wstring target = scratch.Path() + L"\\target";
  MakeTree(source, which.shape);
  StartedLog log(scratch.Path());

  nhupdate::ProductFolders folders;
  folders.base_folder = target;
  folders.module_folder = scratch.Path() + L"\\elsewhere";
  std::wstring last_failed_path;
  nhupdate::CFolderCopy copy(folders, log.Log(), last_failed_path);
  nhupdate::CopyOptions options;
  options.log_details = which.log_details;
  options.delete_existing_sub_folders = true;

  const auto prepare = [&] {
    RemoveTree(target);
    MakeFolder(target);
  };
  pairs.Compare({name, which.what + place.row_words,
                 "CreateDirectoryW and CopyFileW in a bare loop", which.target},
                {[&] {
                   if (!copy.Copy(target, source, options)) {
                     GiveUp("The copy fails.");
                   }
                 },
                 prepare},
                {[&] { CopyTree(source, target); }, prepare});
}

}  // namespace

void MeasureAll(const CPairs& pairs) {
  for (const TreePlace& place : TreePlaces()) {
    for (const Case& which : kCases) {
      CompareCopies(pairs, which, place);
    }
  }
}

}  // namespace nhupdate_bench
