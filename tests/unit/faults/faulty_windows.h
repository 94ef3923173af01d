#pragma once

// The functions of Windows through which the program can meet a failure, counted together. What
// closes something is watched but never fails: nobody could do anything about it.
//
// Left out are GetModuleFileNameW, without whose answer the program looks for its files in the root
// of the real drive (its tests are in app/manager_start_test.cpp), and
// K32GetModuleFileNameExW, K32GetProcessImageFileNameW and K32GetModuleBaseNameW, which are only
// called when another call has failed already (install/process_image_name_test.cpp).

#include <string>
#include <tuple>
#include <type_traits>

#include "tests/unit/faults/call_ledger.h"
#include "tests/unit/faults/faulty_function.h"

// These need <windows.h> first.
#include <objbase.h>
#include <psapi.h>
#include <shlobj.h>

namespace nhupdate_test {

// How the functions report a failure.

template <typename Result>
auto Gives(Result result) {
  return [result](DWORD error, const auto&...) {
    ::SetLastError(error);
    return result;
  };
}

inline constexpr auto kGivesError = [](DWORD error, const auto&...) {
  return static_cast<LSTATUS>(error);
};

inline constexpr auto kGivesHresult = [](DWORD error, const auto&...) {
  return HRESULT_FROM_WIN32(error);
};

inline constexpr auto kFailsToFindFolder = [](DWORD error, auto, auto, auto, PWSTR* path) {
  *path = nullptr;
  return HRESULT_FROM_WIN32(error);
};

// Answers above 32 mean success.
inline constexpr auto kFailsToExecute = [](DWORD error, const auto&...) {
  return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(error <= 32 ? error : 0));
};

// The text for a missing entry.
inline constexpr auto kGivesMissingEntry = [](DWORD error, auto, auto, auto, wchar_t* value,
                                              auto...) {
  value[0] = L'\0';
  ::SetLastError(error);
  return 0;
};

// What successful calls open.

inline auto Opens(ResourceKind kind) {
  return [kind](CallLedger& ledger, const std::wstring& detail, auto resource, const auto&...) {
    ledger.Opened(kind, resource, detail);
  };
}

// By way of a parameter of that type.
template <typename Receiver>
auto OpensInto(ResourceKind kind) {
  return [kind](CallLedger& ledger, const std::wstring& detail, auto result, auto... arguments) {
    const bool is_opened = std::is_same_v<Receiver, HKEY*> ? result == ERROR_SUCCESS : result != 0;
    if (is_opened) {
      // Only a token is opened without a name.
      ledger.Opened(kind, *std::get<Receiver>(std::tuple(arguments...)),
                    detail.empty() ? L"token" : detail);
    }
  };
}

inline constexpr auto kStartsChild = [](CallLedger& ledger, const std::wstring& detail,
                                        BOOL is_started, SHELLEXECUTEINFOW* execution) {
  if (is_started) {
    ledger.Opened(ResourceKind::kHandle, execution->hProcess, detail);
  }
};

class FaultyWindows {
 public:
  explicit FaultyWindows(CallLedger& ledger) : ledger_(ledger) {}

 private:
  CallLedger& ledger_;

  // Files and folders.
  FaultyFunction<INTERPOSER(CreateDirectoryW)> create_directory_{ledger_, Gives(FALSE)};
  FaultyFunction<INTERPOSER(CopyFileW)> copy_file_{ledger_, Gives(FALSE)};
  FaultyFunction<INTERPOSER(DeleteFileW)> delete_file_{ledger_, Gives(FALSE)};
  FaultyFunction<INTERPOSER(GetFileAttributesW)> get_file_attributes_{ledger_, Gives(0xFFFFFFFF)};
  FaultyFunction<INTERPOSER(FindFirstFileW)> find_first_file_{ledger_, Gives(INVALID_HANDLE_VALUE),
                                                              Opens(ResourceKind::kSearch)};
  FaultyFunction<INTERPOSER(FindNextFileW)> find_next_file_{ledger_, Gives(FALSE)};
  FaultyFunction<INTERPOSER(CreateFileW)> create_file_{ledger_, Gives(INVALID_HANDLE_VALUE),
                                                       Opens(ResourceKind::kHandle)};
  FaultyFunction<INTERPOSER(GetFileInformationByHandleEx)> get_file_information_{ledger_,
                                                                                 Gives(FALSE)};
  FaultyFunction<INTERPOSER(SetFileInformationByHandle)> set_file_information_{ledger_,
                                                                               Gives(FALSE)};
  FaultyFunction<INTERPOSER(GetFinalPathNameByHandleW)> get_final_path_name_{ledger_, Gives(0)};
  FaultyFunction<INTERPOSER(GetFileSizeEx)> get_file_size_{ledger_, Gives(FALSE)};
  FaultyFunction<INTERPOSER(ReadFile)> read_file_{ledger_, Gives(FALSE)};
  FaultyFunction<INTERPOSER(GetPrivateProfileStringW)> get_private_profile_string_{
      ledger_, kGivesMissingEntry};
  FaultyFunction<INTERPOSER(GetLongPathNameW)> get_long_path_name_{ledger_, Gives(0)};
  FaultyFunction<INTERPOSER(GetCurrentDirectoryW)> get_current_directory_{ledger_, Gives(0)};
  FaultyFunction<INTERPOSER(SetCurrentDirectoryW)> set_current_directory_{ledger_, Gives(FALSE)};
  FaultyFunction<INTERPOSER(GetSystemDirectoryW)> get_system_directory_{ledger_, Gives(0)};

  // Registry.
  FaultyFunction<INTERPOSER(RegOpenKeyExW)> open_key_{ledger_, kGivesError,
                                                      OpensInto<HKEY*>(ResourceKind::kKey)};
  FaultyFunction<INTERPOSER(RegQueryValueExW)> query_value_{ledger_, kGivesError};
  FaultyFunction<INTERPOSER(RegCreateKeyExW)> create_key_{ledger_, kGivesError,
                                                          OpensInto<HKEY*>(ResourceKind::kKey)};
  FaultyFunction<INTERPOSER(RegSetValueExW)> set_value_{ledger_, kGivesError};

  // Processes and their token.
  FaultyFunction<INTERPOSER(K32EnumProcesses)> enumerate_processes_{ledger_, Gives(FALSE)};
  FaultyFunction<INTERPOSER(OpenProcess)> open_process_{ledger_, Gives(nullptr),
                                                        Opens(ResourceKind::kHandle)};
  FaultyFunction<INTERPOSER(QueryFullProcessImageNameW)> query_image_name_{ledger_, Gives(FALSE)};
  FaultyFunction<INTERPOSER(TerminateProcess)> terminate_process_{ledger_, Gives(FALSE)};
  FaultyFunction<INTERPOSER(WaitForSingleObject)> wait_for_single_object_{ledger_,
                                                                          Gives(0xFFFFFFFF)};
  FaultyFunction<INTERPOSER(GetExitCodeProcess)> get_exit_code_{ledger_, Gives(FALSE)};
  FaultyFunction<INTERPOSER(OpenProcessToken)> open_process_token_{
      ledger_, Gives(FALSE), OpensInto<HANDLE*>(ResourceKind::kHandle)};
  FaultyFunction<INTERPOSER(GetTokenInformation)> get_token_information_{ledger_, Gives(FALSE)};

  // Shell and user interface.
  FaultyFunction<INTERPOSER(ShellExecuteExW)> shell_execute_ex_{ledger_, Gives(FALSE),
                                                                kStartsChild};
  FaultyFunction<INTERPOSER(ShellExecuteW)> shell_execute_{ledger_, kFailsToExecute};
  FaultyFunction<INTERPOSER(SHGetKnownFolderPath)> get_known_folder_path_{ledger_,
                                                                          kFailsToFindFolder};
  FaultyFunction<INTERPOSER(GetUserPreferredUILanguages)> get_ui_languages_{ledger_, Gives(FALSE)};
  FaultyFunction<INTERPOSER(MultiByteToWideChar)> to_wide_{ledger_, Gives(0)};
  FaultyFunction<INTERPOSER(MessageBoxW)> message_box_{ledger_, Gives(0)};

  // The program's own start.
  FaultyFunction<INTERPOSER(GetModuleHandleW)> get_module_handle_{ledger_, Gives(nullptr)};
  FaultyFunction<INTERPOSER(GetThreadErrorMode)> get_thread_error_mode_{ledger_, Gives(0)};
  FaultyFunction<INTERPOSER(SetThreadErrorMode)> set_thread_error_mode_{ledger_, Gives(FALSE)};
  FaultyFunction<INTERPOSER(SetDefaultDllDirectories)> set_default_dll_directories_{ledger_,
                                                                                    Gives(FALSE)};
  FaultyFunction<INTERPOSER(CommandLineToArgvW)> command_line_to_argv_{ledger_, Gives(nullptr)};
  FaultyFunction<INTERPOSER(CoInitialize)> co_initialize_{ledger_, kGivesHresult};
  FaultyFunction<INTERPOSER(LoadLibraryW)> load_library_{ledger_, Gives(nullptr),
                                                         Opens(ResourceKind::kLibrary)};
  FaultyFunction<INTERPOSER(GetProcAddress)> get_proc_address_{ledger_, Gives(nullptr)};

  CountedClose<INTERPOSER(CloseHandle)> close_handle_{ledger_, ResourceKind::kHandle};
  CountedClose<INTERPOSER(FindClose)> find_close_{ledger_, ResourceKind::kSearch};
  CountedClose<INTERPOSER(RegCloseKey)> close_key_{ledger_, ResourceKind::kKey};
  CountedClose<INTERPOSER(FreeLibrary)> free_library_{ledger_, ResourceKind::kLibrary};
};

}  // namespace nhupdate_test
