#include "base/known_folder.h"

#include "tests/support/shell_text.h"
#include "tests/support/windows_basics.h"

// These need <windows.h> first.
#include <knownfolders.h>
#include <shlobj.h>

namespace nhupdate_test {
namespace {

TEST(ProgramDataFolderTest, IsTheOneOfThisMachine) {
  std::wstring expected(MAX_PATH, L'\0');
  expected.resize(
      ::GetEnvironmentVariableW(L"ProgramData", expected.data(), static_cast<DWORD>(MAX_PATH)));
  ASSERT_FALSE(expected.empty());

  EXPECT_EQ(ProgramDataFolder(), expected);
}

TEST(ProgramDataFolderTest, IsAskedForWithoutFlagsOrTokenAndItsTextFreedWhateverTheResult) {
  const struct {
    HRESULT result;
    const wchar_t* text;
  } cases[] = {
      {S_OK, L"D:\\Daten"},
      {E_FAIL, L"C:\\Half"},
      {HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), nullptr},
  };

  for (const auto& c : cases) {
    const PWSTR given = c.text != nullptr ? CopyForShell(c.text) : nullptr;
    std::vector<void*> freed;
    INTERPOSER(SHGetKnownFolderPath) known_folder(
        [&](REFKNOWNFOLDERID id, DWORD flags, HANDLE token, PWSTR* path) -> HRESULT {
          constexpr GUID kProgramData = {
              0x62AB5D82, 0xFDC1, 0x4DC3, {0xA9, 0xDD, 0x07, 0x0D, 0x1D, 0x49, 0x5D, 0x97}};
          EXPECT_TRUE(IsEqualGUID(id, kProgramData));
          EXPECT_EQ(flags, 0U);
          EXPECT_EQ(token, nullptr);
          *path = given;
          return c.result;
        });
    INTERPOSER(CoTaskMemFree) free_memory([&](void* memory) {
      freed.push_back(memory);
      free_memory.Original()(memory);
    });

    const std::optional<std::wstring> folder = ProgramDataFolder();

    EXPECT_EQ(folder, SUCCEEDED(c.result) ? std::optional<std::wstring>(c.text) : std::nullopt)
        << c.result;
    EXPECT_EQ(freed, std::vector<void*>{given}) << c.result;
    EXPECT_EQ(known_folder.Calls(), 1) << c.result;
  }
}

}  // namespace
}  // namespace nhupdate_test
