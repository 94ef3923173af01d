#pragma once

// Trees of folders for the measurements, and the barest loops over them.

#include <string>
#include <vector>

namespace nhupdate_bench {

[[nodiscard]] std::wstring TemporaryFolder();

// Where a measurement has its trees.
struct TreePlace {
  std::string row;        // added to the name of a row
  std::string row_words;  // added to what is measured
  std::wstring folder;
};

// The temporary folder, on the disk, and the one that NHUPDATE_MEMORY_FOLDER names, if any: in
// memory, where what a disk takes for the same calls doesn't hide what is done beside them.
[[nodiscard]] std::vector<TreePlace> TreePlaces();

// A new empty folder in the given one. It goes with the object, with all that is in it.
class ScratchFolder {
 public:
  explicit ScratchFolder(const std::wstring& parent);
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::wstring& Path() const { return path_; }

 private:
  std::wstring path_;
};

struct TreeShape {
  int folders = 0;
  int files_in_each = 0;
  int file_bytes = 0;
};

void MakeFolder(const std::wstring& folder);

// Makes the folder with sub-folders of that shape. Ends the program when it can't, as all of these
// do.
void MakeTree(const std::wstring& folder, const TreeShape& shape);

// Deletes all that is in the folder, and the folder. Nothing happens when there is none.
void RemoveTree(const std::wstring& folder);

// Copies what is in the folder into another one that is there: one CreateDirectoryW for each
// folder, one CopyFileW for each file, and what it takes to list them.
void CopyTree(const std::wstring& source, const std::wstring& target);

// Counts the folders at every depth, and sees every entry on the way.
[[nodiscard]] int CountFolders(const std::wstring& folder);

}  // namespace nhupdate_bench
