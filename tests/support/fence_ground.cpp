#include "tests/support/fence_ground.h"

#include <algorithm>
#include <array>
#include <cwctype>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

namespace nhupdate_test {

namespace {

// Every scratch folder and key begins with it.
constexpr wchar_t kOwnName[] = L"nhupdate";

// Nearly every path fits, and every call is asked about: room for the longest one costs a hundred
// times what the rest of the question does.
constexpr DWORD kUsualPath = MAX_PATH;
constexpr DWORD kLongestPath = 32768;

using QueryKey = LONG(WINAPI*)(HANDLE key, int kind, void* buffer, ULONG size, ULONG* needed);

// Windows' own functions, taken before there are any fakes.
struct Windows {
  decltype(&::GetFullPathNameW) get_full_path_name = &::GetFullPathNameW;
  decltype(&::GetModuleFileNameW) get_module_file_name = &::GetModuleFileNameW;
  decltype(&::GetProcessId) get_process_id = &::GetProcessId;
  QueryKey query_key = reinterpret_cast<QueryKey>(
      reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "NtQueryKey")));
};

struct Ground {
  FenceReach reach = FenceReach::kScratch;
  // What the path of every scratch folder begins with. These four are in small letters, and the
  // others end in a backslash.
  std::vector<std::wstring> scratch_beginnings;
  std::vector<std::wstring> temporary_folders;
  std::wstring program_folder;
  std::wstring system_drive;
  std::optional<Windows> windows;
};

Ground g_ground;

// Guards what changes during the run: where predefined keys lead to, and which processes are the
// test's own and those that it has started.
std::mutex g_mutex;
std::map<HKEY, std::wstring> g_redirections;
std::set<DWORD> g_processes;

std::wstring ToLower(std::wstring text) {
  for (wchar_t& unit : text) {
    unit = unit == L'/' ? L'\\' : static_cast<wchar_t>(std::towlower(unit));
  }
  return text;
}

// What `fill` writes into a buffer of as many units as it is given; it returns the text's length,
// or no less than the units when that is too long.
template <typename Fill>
std::wstring TextFrom(const Fill& fill) {
  std::array<wchar_t, kUsualPath> usual;
  const DWORD length = fill(usual.data(), kUsualPath);
  if (length < kUsualPath) {
    return {usual.data(), length};
  }
  std::wstring text(kLongestPath, L'\0');
  text.resize(std::min(fill(text.data(), kLongestPath), kLongestPath));
  return text;
}

// The full path, without "..", in small letters; empty when Windows can't make one of it.
std::wstring Normalised(const std::wstring& path) {
  constexpr wchar_t kLiteralPrefix[] = L"\\\\?\\";
  std::wstring plain = path;
  if (plain.starts_with(kLiteralPrefix)) {
    plain.erase(0, std::size(kLiteralPrefix) - 1);
  }
  return ToLower(TextFrom([&plain](wchar_t* buffer, DWORD units) {
    return g_ground.windows->get_full_path_name(plain.c_str(), units, buffer, nullptr);
  }));
}

std::wstring FolderOf(HMODULE module) {
  const std::wstring path = TextFrom([module](wchar_t* buffer, DWORD units) {
    return g_ground.windows->get_module_file_name(module, buffer, units);
  });
  return ToLower(path.substr(0, path.rfind(L'\\') + 1));
}

bool StartsWithOneOf(const std::vector<std::wstring>& beginnings, const std::wstring& normalised) {
  return std::any_of(beginnings.begin(), beginnings.end(), [&](const std::wstring& beginning) {
    return normalised.starts_with(beginning);
  });
}

bool IsInScratch(const std::wstring& normalised) {
  return StartsWithOneOf(g_ground.scratch_beginnings, normalised);
}

// The prefix may have its temporary folder on a drive of its own.
bool IsInPrefix(const std::wstring& normalised) {
  return normalised.starts_with(g_ground.system_drive) ||
         StartsWithOneOf(g_ground.temporary_folders, normalised);
}

bool IsOnGround(const std::wstring& normalised) {
  return IsInScratch(normalised) ||
         (g_ground.reach == FenceReach::kPrefix && IsInPrefix(normalised));
}

// The path of an open key as the system knows it; nothing when the handle isn't one of a key.
std::optional<std::wstring> NameOfOpenKey(HKEY key) {
  constexpr int kKeyName = 3;
  constexpr LONG kInvalidHandle = static_cast<LONG>(0xC0000008);
  constexpr LONG kOtherKindOfHandle = static_cast<LONG>(0xC0000024);
  struct NameInformation {
    ULONG byte_count;
    std::array<wchar_t, 2048> name;
  };
  NameInformation information = {};
  ULONG needed = 0;
  const LONG status =
      g_ground.windows->query_key(key, kKeyName, &information, sizeof(information), &needed);
  if (status == kInvalidHandle || status == kOtherKindOfHandle) {
    return std::nullopt;
  }
  // A key whose name can't be had counts as somebody else's.
  return status != 0
             ? std::wstring(L"(unknown key)")
             : std::wstring(information.name.data(), information.byte_count / sizeof(wchar_t));
}

// A predefined key, such as HKEY_CURRENT_USER, has no path of its own and may be redirected.
std::optional<std::wstring> NameOfKey(HKEY key) {
  constexpr ULONG_PTR kPredefined = 0x80000000;
  if ((reinterpret_cast<ULONG_PTR>(key) & kPredefined) == 0) {
    return NameOfOpenKey(key);
  }
  const std::lock_guard lock(g_mutex);
  const auto redirection = g_redirections.find(key);
  if (redirection != g_redirections.end()) {
    return redirection->second;
  }
  return key == HKEY_CURRENT_USER ? L"\\Registry\\User\\(current)" : L"\\Registry\\Machine";
}

bool IsScratchKey(const std::wstring& name) {
  constexpr wchar_t kUsers[] = L"\\registry\\user\\";
  const std::wstring lower = ToLower(name);
  if (!lower.starts_with(kUsers)) {
    return false;
  }
  const std::size_t user_end = lower.find(L'\\', std::size(kUsers) - 1);
  return user_end != std::wstring::npos &&
         lower.substr(user_end).starts_with(std::wstring(L"\\software\\") + kOwnName);
}

}  // namespace

void SurveyGround(FenceReach reach) {
  g_ground.windows.emplace();
  g_ground.reach = reach;
  g_ground.program_folder = FolderOf(nullptr);
  AdmitProcess(::GetCurrentProcessId());

  std::array<wchar_t, MAX_PATH + 1> temporary = {};
  ::GetTempPathW(MAX_PATH, temporary.data());
  std::array<wchar_t, kLongestPath> long_name = {};
  ::GetLongPathNameW(temporary.data(), long_name.data(), kLongestPath);
  for (const std::wstring folder : {temporary.data(), long_name.data()}) {
    if (!folder.empty()) {
      g_ground.temporary_folders.push_back(Normalised(folder));
      g_ground.scratch_beginnings.push_back(g_ground.temporary_folders.back() + kOwnName);
    }
  }

  std::array<wchar_t, MAX_PATH + 1> system = {};
  ::GetWindowsDirectoryW(system.data(), MAX_PATH);
  g_ground.system_drive = Normalised(system.data()).substr(0, std::size(L"c:\\") - 1);
}

bool IsPathInside(const wchar_t* path) {
  return path == nullptr || *path == L'\0' || IsOnGround(Normalised(path));
}

bool IsProgramInside(const std::wstring& path) {
  constexpr std::size_t kAfterDrive = 1;
  if (path.find(L":\\") != kAfterDrive) {
    return path.empty();
  }
  const std::wstring normalised = Normalised(path);
  return IsOnGround(normalised) || normalised.starts_with(g_ground.program_folder);
}

bool IsKeyInside(HKEY key, const wchar_t* sub_key) {
  if (g_ground.reach == FenceReach::kPrefix) {
    return true;
  }
  const std::optional<std::wstring> name = NameOfKey(key);
  return !name || IsScratchKey(*name + L"\\" + (sub_key != nullptr ? sub_key : L""));
}

void RedirectKey(HKEY key, HKEY target) {
  const std::lock_guard lock(g_mutex);
  if (target == nullptr) {
    g_redirections.erase(key);
  } else {
    g_redirections[key] = NameOfOpenKey(target).value_or(L"(no key)");
  }
}

std::wstring DescribeKey(HKEY key, const wchar_t* sub_key) {
  const std::wstring name = NameOfKey(key).value_or(L"");
  return sub_key == nullptr || *sub_key == L'\0' ? name : name + L"\\" + sub_key;
}

DWORD ProcessIdOf(HANDLE process) {
  return g_ground.windows->get_process_id(process);
}

bool IsProcessInside(DWORD process_id) {
  const std::lock_guard lock(g_mutex);
  return g_ground.reach == FenceReach::kPrefix || g_processes.contains(process_id);
}

void AdmitProcess(DWORD process_id) {
  const std::lock_guard lock(g_mutex);
  g_processes.insert(process_id);
}

bool IsEverythingInside() {
  return g_ground.reach == FenceReach::kPrefix;
}

bool IsLibraryInside(HMODULE library) {
  if (library == nullptr) {
    return false;
  }
  const std::wstring folder = FolderOf(library);
  return folder.starts_with(g_ground.program_folder) || IsInScratch(folder);
}

}  // namespace nhupdate_test
