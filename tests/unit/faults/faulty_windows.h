#pragma once

// The functions of Windows through which the program can meet a failure, counted together. What
// closes something is watched but never fails: nobody could do anything about it.
//
// Left out are GetModuleFileNameW, without whose answer the program looks for its files in the root
// of the real drive (its tests are in app/manager_start_test.cpp), and
// K32GetModuleFileNameExW, K32GetProcessImageFileNameW and K32GetModuleBaseNameW, which are only
// called when another call has failed already (install/process_image_name_test.cpp).

#include "tests/unit/faults/call_ledger.h"
#include "tests/unit/faults/faulty_function.h"

// These need <windows.h> first.
#include <objbase.h>
#include <psapi.h>
#include <shlobj.h>

namespace nhupdate_test {

class FaultyWindows {
 public:
  explicit FaultyWindows(CallLedger& ledger);
  FaultyWindows(const FaultyWindows&) = delete;
  FaultyWindows& operator=(const FaultyWindows&) = delete;

 private:
  // Files and folders.
  FaultyFunction<INTERPOSER(CreateDirectoryW)> create_directory_;
  FaultyFunction<INTERPOSER(CopyFileW)> copy_file_;
  FaultyFunction<INTERPOSER(DeleteFileW)> delete_file_;
  FaultyFunction<INTERPOSER(GetFileAttributesW)> get_file_attributes_;
  FaultyFunction<INTERPOSER(FindFirstFileW)> find_first_file_;
  FaultyFunction<INTERPOSER(FindNextFileW)> find_next_file_;
  FaultyFunction<INTERPOSER(CreateFileW)> create_file_;
  FaultyFunction<INTERPOSER(GetFileInformationByHandleEx)> get_file_information_;
  FaultyFunction<INTERPOSER(SetFileInformationByHandle)> set_file_information_;
  FaultyFunction<INTERPOSER(GetFinalPathNameByHandleW)> get_final_path_name_;
  FaultyFunction<INTERPOSER(GetFileSizeEx)> get_file_size_;
  FaultyFunction<INTERPOSER(ReadFile)> read_file_;
  FaultyFunction<INTERPOSER(GetPrivateProfileStringW)> get_private_profile_string_;
  FaultyFunction<INTERPOSER(GetLongPathNameW)> get_long_path_name_;
  FaultyFunction<INTERPOSER(GetCurrentDirectoryW)> get_current_directory_;
  FaultyFunction<INTERPOSER(SetCurrentDirectoryW)> set_current_directory_;
  FaultyFunction<INTERPOSER(GetSystemDirectoryW)> get_system_directory_;

  // Registry.
  FaultyFunction<INTERPOSER(RegOpenKeyExW)> open_key_;
  FaultyFunction<INTERPOSER(RegQueryValueExW)> query_value_;
  FaultyFunction<INTERPOSER(RegCreateKeyExW)> create_key_;
  FaultyFunction<INTERPOSER(RegSetValueExW)> set_value_;

  // Processes and their token.
  FaultyFunction<INTERPOSER(K32EnumProcesses)> enumerate_processes_;
  FaultyFunction<INTERPOSER(OpenProcess)> open_process_;
  FaultyFunction<INTERPOSER(QueryFullProcessImageNameW)> query_image_name_;
  FaultyFunction<INTERPOSER(TerminateProcess)> terminate_process_;
  FaultyFunction<INTERPOSER(WaitForSingleObject)> wait_for_single_object_;
  FaultyFunction<INTERPOSER(GetExitCodeProcess)> get_exit_code_;
  FaultyFunction<INTERPOSER(OpenProcessToken)> open_process_token_;
  FaultyFunction<INTERPOSER(GetTokenInformation)> get_token_information_;

  // Shell and user interface.
  FaultyFunction<INTERPOSER(ShellExecuteExW)> shell_execute_ex_;
  FaultyFunction<INTERPOSER(ShellExecuteW)> shell_execute_;
  FaultyFunction<INTERPOSER(SHGetKnownFolderPath)> get_known_folder_path_;
  FaultyFunction<INTERPOSER(GetUserPreferredUILanguages)> get_ui_languages_;
  FaultyFunction<INTERPOSER(MultiByteToWideChar)> to_wide_;
  FaultyFunction<INTERPOSER(MessageBoxW)> message_box_;

  // The program's own start.
  FaultyFunction<INTERPOSER(GetModuleHandleW)> get_module_handle_;
  FaultyFunction<INTERPOSER(GetThreadErrorMode)> get_thread_error_mode_;
  FaultyFunction<INTERPOSER(SetThreadErrorMode)> set_thread_error_mode_;
  FaultyFunction<INTERPOSER(SetDefaultDllDirectories)> set_default_dll_directories_;
  FaultyFunction<INTERPOSER(CommandLineToArgvW)> command_line_to_argv_;
  FaultyFunction<INTERPOSER(CoInitialize)> co_initialize_;
  FaultyFunction<INTERPOSER(LoadLibraryW)> load_library_;
  FaultyFunction<INTERPOSER(GetProcAddress)> get_proc_address_;

  CountedClose<INTERPOSER(CloseHandle)> close_handle_;
  CountedClose<INTERPOSER(FindClose)> find_close_;
  CountedClose<INTERPOSER(RegCloseKey)> close_key_;
  CountedClose<INTERPOSER(FreeLibrary)> free_library_;
};

}  // namespace nhupdate_test
