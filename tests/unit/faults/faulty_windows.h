#pragma once

// The functions of Windows through which the program can meet a failure, counted together. What
// closes something is watched but never fails: nobody could do anything about it.
//
// Left out are GetModuleFileNameW, without whose answer the program works in the root of the real
// drive (its tests are in install/no_base_folder_test.cpp), and K32GetModuleFileNameExW,
// K32GetProcessImageFileNameW and K32GetModuleBaseNameW, which are only called when another call
// has failed already (install/process_image_name_test.cpp).

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
  FaultyFunction<decltype(::CreateDirectoryW)> create_directory_;
  FaultyFunction<decltype(::CopyFileW)> copy_file_;
  FaultyFunction<decltype(::DeleteFileW)> delete_file_;
  FaultyFunction<decltype(::RemoveDirectoryW)> remove_directory_;
  FaultyFunction<decltype(::GetFileAttributesW)> get_file_attributes_;
  FaultyFunction<decltype(::SetFileAttributesW)> set_file_attributes_;
  FaultyFunction<decltype(::FindFirstFileW)> find_first_file_;
  FaultyFunction<decltype(::FindNextFileW)> find_next_file_;
  FaultyFunction<decltype(::CreateFileW)> create_file_;
  FaultyFunction<decltype(::GetFileInformationByHandleEx)> get_file_information_;
  FaultyFunction<decltype(::GetFinalPathNameByHandleW)> get_final_path_name_;
  FaultyFunction<decltype(::GetFileSizeEx)> get_file_size_;
  FaultyFunction<decltype(::ReadFile)> read_file_;
  FaultyFunction<decltype(::GetPrivateProfileStringW)> get_private_profile_string_;

  // Registry.
  FaultyFunction<decltype(::RegOpenKeyExW)> open_key_;
  FaultyFunction<decltype(::RegQueryValueExW)> query_value_;
  FaultyFunction<decltype(::RegCreateKeyExW)> create_key_;
  FaultyFunction<decltype(::RegSetValueExW)> set_value_;

  // Processes and their token.
  FaultyFunction<decltype(::K32EnumProcesses)> enumerate_processes_;
  FaultyFunction<decltype(::OpenProcess)> open_process_;
  FaultyFunction<decltype(::QueryFullProcessImageNameW)> query_image_name_;
  FaultyFunction<decltype(::TerminateProcess)> terminate_process_;
  FaultyFunction<decltype(::WaitForSingleObject)> wait_for_single_object_;
  FaultyFunction<decltype(::GetExitCodeProcess)> get_exit_code_;
  FaultyFunction<decltype(::OpenProcessToken)> open_process_token_;
  FaultyFunction<decltype(::GetTokenInformation)> get_token_information_;

  // Shell and user interface.
  FaultyFunction<decltype(::ShellExecuteExW)> shell_execute_ex_;
  FaultyFunction<decltype(::ShellExecuteW)> shell_execute_;
  FaultyFunction<decltype(::SHGetKnownFolderPath)> get_known_folder_path_;
  FaultyFunction<decltype(::GetUserPreferredUILanguages)> get_ui_languages_;
  FaultyFunction<decltype(::MultiByteToWideChar)> to_wide_;
  FaultyFunction<decltype(::MessageBoxW)> message_box_;

  // The program's own start.
  FaultyFunction<decltype(::GetModuleHandleW)> get_module_handle_;
  FaultyFunction<decltype(::SetDefaultDllDirectories)> set_default_dll_directories_;
  FaultyFunction<decltype(::CommandLineToArgvW)> command_line_to_argv_;
  FaultyFunction<decltype(::CoInitialize)> co_initialize_;
  FaultyFunction<decltype(::LoadLibraryW)> load_library_;
  FaultyFunction<decltype(::GetProcAddress)> get_proc_address_;

  CountedClose<decltype(::CloseHandle)> close_handle_;
  CountedClose<decltype(::FindClose)> find_close_;
  CountedClose<decltype(::RegCloseKey)> close_key_;
  CountedClose<decltype(::FreeLibrary)> free_library_;
};

}  // namespace nhupdate_test
