#pragma once

// What the program relies on about Windows, as questions that a machine answers. Nothing here is
// GoogleTest's: the program that asks them runs alone, on any Windows.

#include <string>
#include <vector>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_test {

enum class Wine {
  kAsWindows,
  // Answers otherwise; the tests know of it.
  kDiffers,
};

struct Reliance {
  const char* question;
  // Several answers that are right have " or " between them.
  const char* windows;
  Wine wine;
  // Gets an empty folder of its own.
  std::string (*ask)(const std::wstring& folder);
};

using Reliances = std::vector<Reliance>;

// By what they are about.
[[nodiscard]] Reliances OpeningReliances();
[[nodiscard]] Reliances DeletionReliances();
[[nodiscard]] Reliances CopyReliances();
[[nodiscard]] Reliances FolderReliances();
[[nodiscard]] Reliances HandleReliances();
[[nodiscard]] Reliances SettingsReliances();
[[nodiscard]] Reliances TextReliances();
[[nodiscard]] Reliances ProcessReliances();
[[nodiscard]] Reliances LibraryReliances();

// What the answers are made of.

// Of the call that has just returned: "0" when it succeeded, otherwise Windows' error.
[[nodiscard]] std::string ErrorOf(bool has_succeeded);
[[nodiscard]] std::string ErrorOf(const nhupdate::UniqueFile& opened);
[[nodiscard]] std::string YesOrNo(bool is_so);

inline constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// An existing file or folder.
[[nodiscard]] nhupdate::UniqueFile Open(const std::wstring& path, DWORD access, DWORD sharing,
                                        DWORD flags = 0);

// As another program would have it open: a file for itself alone, a folder so that it can't be
// deleted.
[[nodiscard]] nhupdate::UniqueFile HoldFile(const std::wstring& file);
[[nodiscard]] nhupdate::UniqueFile HoldFolder(const std::wstring& folder);

// These end the program with a message when they can't do their work: no answer would be worth
// anything.
std::wstring MakeFile(const std::wstring& path, const std::string& bytes = "content",
                      DWORD attributes = FILE_ATTRIBUTE_NORMAL);
std::wstring MakeFolder(const std::wstring& path);
[[nodiscard]] std::string Content(const std::wstring& file);

// A folder whose path is longer than Windows takes without the prefix for it, and the same with it.
[[nodiscard]] std::wstring MakeLongFolder(const std::wstring& folder);
[[nodiscard]] std::wstring WithPrefix(const std::wstring& path);

[[noreturn]] void GiveUp(const char* what, const std::wstring& path);

}  // namespace nhupdate_test
