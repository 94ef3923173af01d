#include "install/empty_folders.h"

#include "base/folder_listing.h"
#include "base/windows_path.h"

namespace nhupdate {

namespace {

// For a folder whose name Windows takes for another one's. What is in that one could be a link and
// lead back here, so nobody goes any deeper.
bool LeadsToNothing(const std::wstring& folder) {
  CFolderListing listing(folder);
  return !listing.Next() && !listing.HasBrokenOff();
}

}  // namespace

bool CollectEmptyFolders(const std::wstring& folder, std::vector<std::wstring>& found,
                         const CLog& log) {
  bool is_empty = true;
  CFolderListing listing(folder);
  while (listing.Next()) {
    if (!listing.IsFolder() || listing.IsLink()) {
      is_empty = false;
      continue;
    }
    const std::wstring sub_folder = folder + L"\\" + listing.Name();
    if (IsTakenAsItStands(listing.Name()) ? CollectEmptyFolders(sub_folder, found, log)
                                          : LeadsToNothing(sub_folder)) {
      log.Write(LogLevel::kInformation, L"Remove empty folder : %s", sub_folder);
      found.push_back(sub_folder);
    } else {
      is_empty = false;
    }
  }
  // A folder of which only a part was seen must not be taken for an empty one.
  return is_empty && !listing.HasBrokenOff();
}

}  // namespace nhupdate
