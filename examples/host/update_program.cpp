#include "update_program.h"

#include "owned_handle.h"

#include <tlhelp32.h>  // needs <windows.h> first

namespace nimba_hub {

Command CommandFor(Mode mode, const std::filesystem::path& product_folder) {
  const std::filesystem::path in_folder =
      std::filesystem::path(L"NHUpdateManager") / kUpdateProgramName;
  const std::filesystem::path installed = product_folder / in_folder;
  switch (mode) {
    case Mode::kDownload:
      return {installed, L"-download"};
    case Mode::kUpdate:
      return {installed, L"-update"};
    case Mode::kSelfUpdate:
      return {StagedFolder(product_folder) / in_folder, L"-self_update"};
    case Mode::kFinalUpdate:
      return {installed, L"-final_update"};
  }
  return {};
}

std::filesystem::path StagedFolder(const std::filesystem::path& product_folder) {
  return product_folder / L"Updater" / L"App";
}

int CountProcesses(const std::wstring& file_name) {
  const OwnedHandle snapshot = OwnFile(::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  if (snapshot == nullptr) {
    return 0;
  }
  int count = 0;
  PROCESSENTRY32W entry = {};
  entry.dwSize = sizeof(entry);
  for (BOOL more = ::Process32FirstW(snapshot.get(), &entry); more;
       more = ::Process32NextW(snapshot.get(), &entry)) {
    if (::CompareStringOrdinal(entry.szExeFile, -1, file_name.c_str(), -1, TRUE) == CSTR_EQUAL) {
      ++count;
    }
  }
  return count;
}

}  // namespace nimba_hub
