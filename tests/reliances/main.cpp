// What the program relies on, asked of the Windows that this runs on: reliances [FOLDER]
//
// The first thing to run on a machine of which it isn't known how the program works there. Works in
// a folder of its own below FOLDER, which is the one for temporary files unless given, and in a key
// of its own below HKEY_CURRENT_USER\Software; both are removed. Starts nothing but itself, shows
// no window and needs no rights.
//
// Prints a line for each answer and the number of those that differ from what Windows should give.
// Ends with 0 when none does, or only those that are known of Wine; otherwise with 1, or with 2
// when it can't work.

#include <array>
#include <cstdio>
#include <cwchar>

#include "tests/reliances/child.h"
#include "tests/reliances/reliance.h"
#include "tests/support/wine.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate_test {
namespace {

std::wstring TemporaryFolder() {
  std::array<wchar_t, MAX_PATH + 1> path = {};
  ::GetTempPathW(static_cast<DWORD>(path.size()), path.data());
  return path.data();
}

void RemoveTree(const std::wstring& folder) {
  WIN32_FIND_DATAW entry = {};
  nhupdate::UniqueFindHandle search(::FindFirstFileW((folder + L"\\*").c_str(), &entry));
  bool has_entry = search.IsValid();
  while (has_entry) {
    const std::wstring name = entry.cFileName;
    const std::wstring path = folder + L"\\" + name;
    ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
      ::DeleteFileW(path.c_str());
    } else if (name != L"." && name != L"..") {
      RemoveTree(path);
    }
    has_entry = ::FindNextFileW(search.Get(), &entry) != FALSE;
  }
  search.Reset();
  ::RemoveDirectoryW(folder.c_str());
}

// A child that has just ended may still have its current folder in there.
void Remove(const std::wstring& folder) {
  constexpr int kTries = 50;
  constexpr DWORD kDelayMs = 100;
  for (int tries = 0; tries < kTries; ++tries) {
    RemoveTree(WithPrefix(folder));
    if (::GetFileAttributesW(folder.c_str()) == INVALID_FILE_ATTRIBUTES) {
      return;
    }
    ::Sleep(kDelayMs);
  }
  GiveUp("remove", folder);
}

bool IsOneOf(const std::string& answer, const std::string& answers) {
  return (" or " + answers + " or ").find(" or " + answer + " or ") != std::string::npos;
}

struct Count {
  int answers = 0;
  int differences = 0;
  int unexpected = 0;
};

void Ask(const Reliances& reliances, const std::wstring& folder, bool is_wine, Count& count) {
  for (const Reliance& reliance : reliances) {
    ++count.answers;
    const std::wstring own_folder = folder + L"\\" + std::to_wstring(count.answers);
    MakeFolder(own_folder);
    const std::string answer = reliance.ask(own_folder);
    const bool differs = !IsOneOf(answer, reliance.windows);
    const bool is_known = is_wine && reliance.wine == Wine::kDiffers;
    const char* const remark =
        !differs ? "" : (is_known ? "; differs here, expected under Wine" : "; DIFFERS HERE");
    std::printf("%s: %s (Windows should give: %s)%s\n", reliance.question, answer.c_str(),
                reliance.windows, remark);
    std::fflush(stdout);
    count.differences += differs ? 1 : 0;
    count.unexpected += differs && !is_known ? 1 : 0;
    RemoveTree(WithPrefix(own_folder));
  }
}

int AskAll(const std::wstring& parent) {
  const std::wstring folder =
      parent + L"nhupdate_reliances_" + std::to_wstring(::GetCurrentProcessId());
  MakeFolder(folder);
  const bool is_wine = IsWine();
  Count count;
  for (const auto reliances :
       {&OpeningReliances, &DeletionReliances, &CopyReliances, &FolderReliances, &HandleReliances,
        &SettingsReliances, &TextReliances, &ProcessReliances, &LibraryReliances}) {
    Ask(reliances(), folder, is_wine, count);
  }
  Remove(folder);
  std::printf("%d answers, %d differences, %d of them unexpected\n", count.answers,
              count.differences, count.unexpected);
  return count.unexpected == 0 ? 0 : 1;
}

int Main() {
  int count = 0;
  wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  if (arguments == nullptr) {
    return 2;
  }
  if (const std::optional<int> exit_code = DoTask(count, arguments)) {
    return *exit_code;
  }
  return AskAll(count > 1 ? std::wstring(arguments[1]) + L"\\" : TemporaryFolder());
}

}  // namespace
}  // namespace nhupdate_test

int main() {
  return nhupdate_test::Main();
}
