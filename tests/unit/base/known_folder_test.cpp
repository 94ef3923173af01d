#include "base/known_folder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cwchar>
#include <optional>
#include <string>
#include <vector>

#include "base/windows.h"
#include "tests/support/interposer.h"

// These need <windows.h> first.
#include <knownfolders.h>
#include <objbase.h>
#include <shlobj.h>

namespace nhupdate_test {
namespace {

using nhupdate::ProgramDataFolder;

PWSTR ShellText(const wchar_t* text) {
  const std::size_t units = std::wcslen(text) + 1;
  auto* copy = static_cast<wchar_t*>(::CoTaskMemAlloc(units * sizeof(wchar_t)));
  std::wmemcpy(copy, text, units);
  return copy;
}

TEST(ProgramDataFolderTest, IsTheOneOfThisMachine) {
  std::wstring expected(MAX_PATH, L'\0');
  expected.resize(
      ::GetEnvironmentVariableW(L"ProgramData", expected.data(), static_cast<DWORD>(MAX_PATH)));
  ASSERT_FALSE(expected.empty());

  EXPECT_EQ(ProgramDataFolder(), expected);
}

TEST(ProgramDataFolderTest, AsksForTheFolderOfAllUsersWithoutFlagsOrToken) {
  INTERPOSER(SHGetKnownFolderPath) known_folder(
      [](REFKNOWNFOLDERID id, DWORD flags, HANDLE token, PWSTR* path) -> HRESULT {
        constexpr GUID kProgramData = {
            0x62AB5D82, 0xFDC1, 0x4DC3, {0xA9, 0xDD, 0x07, 0x0D, 0x1D, 0x49, 0x5D, 0x97}};
        EXPECT_TRUE(IsEqualGUID(id, kProgramData));
        EXPECT_EQ(flags, 0U);
        EXPECT_EQ(token, nullptr);
        *path = ShellText(L"D:\\Daten");
        return S_OK;
      });

  EXPECT_EQ(ProgramDataFolder(), L"D:\\Daten");
  EXPECT_EQ(known_folder.Calls(), 1);
}

struct MemoryCase {
  const char* name;
  HRESULT result;
  const wchar_t* text;
};

TEST(ProgramDataFolderTest, FreesTheShellsTextWhateverTheResult) {
  const MemoryCase cases[] = {
      {"success", S_OK, L"C:\\ProgramData"},
      {"failure with a text", E_FAIL, L"C:\\Half"},
      {"failure without a text", E_OUTOFMEMORY, nullptr},
      {"no such folder", HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), nullptr},
  };

  for (const MemoryCase& c : cases) {
    PWSTR given = c.text != nullptr ? ShellText(c.text) : nullptr;
    std::vector<void*> freed;
    INTERPOSER(SHGetKnownFolderPath) known_folder(
        [&](REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR* path) -> HRESULT {
          *path = given;
          return c.result;
        });
    INTERPOSER(CoTaskMemFree) free_memory([&](void* memory) {
      freed.push_back(memory);
      free_memory.Original()(memory);
    });

    const std::optional<std::wstring> folder = ProgramDataFolder();

    EXPECT_EQ(folder.has_value(), SUCCEEDED(c.result)) << c.name;
    EXPECT_EQ(freed, std::vector<void*>{given}) << c.name;
  }
}

}  // namespace
}  // namespace nhupdate_test
