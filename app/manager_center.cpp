#include "app/manager_center.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <tuple>

#include "app/elevation.h"
#include "base/known_folder.h"
#include "base/windows.h"
#include "text/string_file.h"

#include <objbase.h>  // needs <windows.h> first

namespace nhupdate {

namespace {

constexpr wchar_t kLogTag[] = L"NHUpdateManager";

// At most 259 characters: a longer path is cut off.
std::wstring ExecutablePath() {
  std::array<wchar_t, MAX_PATH> buffer = {};
  const DWORD length =
      ::GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
  return std::wstring(buffer.data(), std::min<std::size_t>(length, buffer.size() - 1));
}

void CreateFolder(const std::wstring& path) {
  std::ignore = ::CreateDirectoryW(path.c_str(), nullptr);  // it usually exists already
}

}  // namespace

CManagerCenter::CManagerCenter() {
  std::ignore = ::CoInitialize(nullptr);  // only some shell calls profit from COM
}

CManagerCenter::~CManagerCenter() {
  ::CoUninitialize();
}

int CManagerCenter::Initialize() {
  paths_ = FoldersOfExecutable(ExecutablePath());
  PrepareDataFolders();

  // Without a log the program works on in silence; the console has been told.
  std::ignore = log_center_.StartLog(paths_.module_folder + L"\\NSWLogDynamic64U.dll",
                                     paths_.module_folder + L"\\LogConfig.ini", paths_.log_folder);

  elevated_ = IsProcessElevated() ? 1 : 0;
  if (IsElevated()) {
    Log(LogLevel::kInformation, L"Process elevated.");
  } else {
    Log(LogLevel::kInformation, L"Process NOT elevated.");
  }

  const std::wstring language = SelectLanguage();
  paths_.string_file_path = ChooseStringFile(paths_.configuration_folder, language);
  LoadStrings(paths_.string_file_path);
  return 0;
}

void CManagerCenter::PrepareDataFolders() {
  const std::optional<std::wstring> program_data = ProgramDataFolder();
  if (!program_data) {
    return;
  }
  std::wstring folder = *program_data;
  for (const wchar_t* name : {L"\\Corvane", L"\\NimbaSoftware", L"\\NimbaHub"}) {
    folder += name;
    CreateFolder(folder);
  }
  paths_.product_data_folder = folder;
  paths_.log_folder = folder + L"\\Log";
  CreateFolder(paths_.log_folder);
}

bool CManagerCenter::RequireElevation() {
  if (!IsElevated()) {
    Log(LogLevel::kError, L"Process not been elevated for install.");  // sic
  }
  return IsElevated();
}

void CManagerCenter::LogText(LogLevel level, const std::wstring& message) {
  log_center_.WriteRecord(static_cast<int>(level), kLogTag, message);
}

}  // namespace nhupdate
