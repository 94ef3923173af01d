#include "tests/unit/faults/faulty_windows.h"

namespace nhupdate_test {

namespace {

// How the functions report a failure.

constexpr auto kFalse = [](DWORD error, const auto&...) -> BOOL {
  ::SetLastError(error);
  return FALSE;
};
constexpr auto kZero = [](DWORD error, const auto&...) {
  ::SetLastError(error);
  return 0;
};
constexpr auto kNull = [](DWORD error, const auto&...) {
  ::SetLastError(error);
  return nullptr;
};
constexpr auto kInvalidHandle = [](DWORD error, const auto&...) -> HANDLE {
  ::SetLastError(error);
  return INVALID_HANDLE_VALUE;
};
constexpr auto kAllOnes = [](DWORD error, const auto&...) -> DWORD {
  ::SetLastError(error);
  return 0xFFFFFFFF;
};
constexpr auto kErrorItself = [](DWORD error, const auto&...) {
  return static_cast<LSTATUS>(error);
};

// Answers above 32 mean success.
HINSTANCE FailShellExecute(DWORD error, HWND, const wchar_t*, const wchar_t*, const wchar_t*,
                           const wchar_t*, int) {
  return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(error <= 32 ? error : 0));
}

HRESULT FailKnownFolder(DWORD error, REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR* path) {
  *path = nullptr;
  return HRESULT_FROM_WIN32(error);
}

// Gives the text for a missing entry.
DWORD FailProfileString(DWORD error, const wchar_t*, const wchar_t*, const wchar_t*, wchar_t* value,
                        DWORD, const wchar_t*) {
  value[0] = L'\0';
  ::SetLastError(error);
  return 0;
}

// What successful calls opened.

constexpr auto kOpensHandle = [](CallLedger& ledger, const std::wstring& detail, HANDLE handle,
                                 const auto&...) {
  if (handle != INVALID_HANDLE_VALUE) {
    ledger.Opened(ResourceKind::kHandle, handle, detail);
  }
};

void NoteSearch(CallLedger& ledger, const std::wstring& detail, HANDLE search, const wchar_t*,
                WIN32_FIND_DATAW*) {
  if (search != INVALID_HANDLE_VALUE) {
    ledger.Opened(ResourceKind::kSearch, search, detail);
  }
}

void NoteToken(CallLedger& ledger, const std::wstring&, BOOL is_open, HANDLE, DWORD,
               HANDLE* token) {
  if (is_open) {
    ledger.Opened(ResourceKind::kHandle, *token, L"token");
  }
}

void NoteChild(CallLedger& ledger, const std::wstring& detail, BOOL is_started,
               SHELLEXECUTEINFOW* execution) {
  if (is_started) {
    ledger.Opened(ResourceKind::kHandle, execution->hProcess, detail);
  }
}

void NoteOpenedKey(CallLedger& ledger, const std::wstring& detail, LSTATUS status, HKEY,
                   const wchar_t*, DWORD, REGSAM, HKEY* key) {
  if (status == ERROR_SUCCESS) {
    ledger.Opened(ResourceKind::kKey, *key, detail);
  }
}

void NoteCreatedKey(CallLedger& ledger, const std::wstring& detail, LSTATUS status, HKEY,
                    const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM, const SECURITY_ATTRIBUTES*,
                    HKEY* key, DWORD*) {
  if (status == ERROR_SUCCESS) {
    ledger.Opened(ResourceKind::kKey, *key, detail);
  }
}

void NoteLibrary(CallLedger& ledger, const std::wstring& detail, HMODULE library, const wchar_t*) {
  ledger.Opened(ResourceKind::kLibrary, library, detail);
}

}  // namespace

FaultyWindows::FaultyWindows(CallLedger& ledger)
    : create_directory_(ledger, kFalse),
      copy_file_(ledger, kFalse),
      delete_file_(ledger, kFalse),
      get_file_attributes_(ledger, kAllOnes),
      find_first_file_(ledger, kInvalidHandle, NoteSearch),
      find_next_file_(ledger, kFalse),
      create_file_(ledger, kInvalidHandle, kOpensHandle),
      get_file_information_(ledger, kFalse),
      set_file_information_(ledger, kFalse),
      get_final_path_name_(ledger, kZero),
      get_file_size_(ledger, kFalse),
      read_file_(ledger, kFalse),
      get_private_profile_string_(ledger, FailProfileString),
      get_long_path_name_(ledger, kZero),
      get_current_directory_(ledger, kZero),
      set_current_directory_(ledger, kFalse),
      get_system_directory_(ledger, kZero),
      open_key_(ledger, kErrorItself, NoteOpenedKey),
      query_value_(ledger, kErrorItself),
      create_key_(ledger, kErrorItself, NoteCreatedKey),
      set_value_(ledger, kErrorItself),
      enumerate_processes_(ledger, kFalse),
      open_process_(ledger, kNull, kOpensHandle),
      query_image_name_(ledger, kFalse),
      terminate_process_(ledger, kFalse),
      wait_for_single_object_(ledger, kAllOnes),
      get_exit_code_(ledger, kFalse),
      open_process_token_(ledger, kFalse, NoteToken),
      get_token_information_(ledger, kFalse),
      shell_execute_ex_(ledger, kFalse, NoteChild),
      shell_execute_(ledger, FailShellExecute),
      get_known_folder_path_(ledger, FailKnownFolder),
      get_ui_languages_(ledger, kFalse),
      to_wide_(ledger, kZero),
      message_box_(ledger, kZero),
      get_module_handle_(ledger, kNull),
      get_thread_error_mode_(ledger, kZero),
      set_thread_error_mode_(ledger, kFalse),
      set_default_dll_directories_(ledger, kFalse),
      command_line_to_argv_(ledger, kNull),
      co_initialize_(ledger, [](DWORD error, void*) { return HRESULT_FROM_WIN32(error); }),
      load_library_(ledger, kNull, NoteLibrary),
      get_proc_address_(ledger, kNull),
      close_handle_(ledger, ResourceKind::kHandle),
      find_close_(ledger, ResourceKind::kSearch),
      close_key_(ledger, ResourceKind::kKey),
      free_library_(ledger, ResourceKind::kLibrary) {}

}  // namespace nhupdate_test
