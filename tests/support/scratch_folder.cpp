#include "tests/support/scratch_folder.h"

#include <array>

#include "base/format.h"
#include "base/windows.h"
#include "tests/support/files.h"

namespace nhupdate_test {

ScratchFolder::ScratchFolder() {
  static int count = 0;
  std::array<wchar_t, MAX_PATH> temporary = {};
  ::GetTempPathW(static_cast<DWORD>(temporary.size()), temporary.data());
  path_ = temporary.data() +
          nhupdate::Format(L"nhupdate Pr\u00FCfung 100%%s %d-%d", ::GetCurrentProcessId(), ++count);
  RemoveTree(path_);  // an earlier process of the same id may have been killed
  CreateFolders(path_);
}

ScratchFolder::~ScratchFolder() {
  RemoveTree(path_);
}

}  // namespace nhupdate_test
