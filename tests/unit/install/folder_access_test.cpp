#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "base/existence.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"

// These need <windows.h> first.
#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using testing::ElementsAre;

constexpr wchar_t kSuccess[] = L"2|ShellExecute ICACLS success on ICACLS.exe, Params = ";
constexpr wchar_t kFailure[] = L"4|ShellExecute ICACLS fail on ICACLS.exe, Params = ";

constexpr wchar_t kConfigFolder[] = L"{base}\\Updater\\Config";
constexpr wchar_t kTempFolder[] = L"{base}\\Updater\\Temp";
constexpr wchar_t kDataFolder[] = L"{data}\\Shared\\Corvane";

std::wstring ParametersFor(const std::wstring& folder) {
  return L"\"" + folder + L"\" /grant \"*S-1-5-32-545\":(OI)(CI)F /inheritance:e";
}

std::wstring Record(const std::wstring& beginning, const std::wstring& folder,
                    const std::wstring& return_code) {
  return beginning + ParametersFor(folder) + L", Return Code = " + return_code;
}

class GrantFolderAccessTest : public testing::Test {
 protected:
  GrantFolderAccessTest() {
    product_.Start();
    product_.ForgetRecords();
    CreateFolders(product_.Base() + L"\\Updater");
    events_.clear();
  }

  InstalledProduct product_;
  const std::wstring updater_ = product_.Base() + L"\\Updater";
  const std::wstring program_data_ = product_.ProgramData() + L"\\Shared";
  const std::wstring corvane_data_ = program_data_ + L"\\Corvane";

  bool has_program_data_ = true;
  std::intptr_t shell_result_ = 42;
  std::vector<std::wstring> events_;

  INTERPOSER(SHGetKnownFolderPath) known_folder_{[this](REFKNOWNFOLDERID id, DWORD flags,
                                                        HANDLE token, PWSTR* path) -> HRESULT {
    events_.push_back(L"known folder");
    EXPECT_TRUE(::IsEqualGUID(
        id, GUID{0x62AB5D82, 0xFDC1, 0x4DC3, {0xA9, 0xDD, 0x07, 0x0D, 0x1D, 0x49, 0x5D, 0x97}}));
    EXPECT_EQ(flags, 0u);
    EXPECT_EQ(token, nullptr);
    *path = nullptr;
    if (!has_program_data_) {
      return E_FAIL;
    }
    const std::size_t byte_count = (program_data_.size() + 1) * sizeof(wchar_t);
    *path = static_cast<wchar_t*>(::CoTaskMemAlloc(byte_count));
    program_data_.copy(*path, program_data_.size());
    (*path)[program_data_.size()] = L'\0';
    return S_OK;
  }};
  INTERPOSER(CoTaskMemFree) free_{[this](void* memory) {
    events_.push_back(L"free");
    free_.Original()(memory);
  }};
  INTERPOSER(CreateDirectoryW) create_{
      [this](const wchar_t* folder, SECURITY_ATTRIBUTES* security) {
        EXPECT_EQ(security, nullptr);
        events_.push_back(std::wstring(L"create ") + folder);
        return create_.Original()(folder, security);
      }};
  INTERPOSER(ShellExecuteW) shell_execute_{[this](HWND owner, const wchar_t* verb,
                                                  const wchar_t* file, const wchar_t* parameters,
                                                  const wchar_t* folder, int show_state) {
    EXPECT_EQ(owner, nullptr);
    EXPECT_EQ(verb, nullptr);
    EXPECT_STREQ(file, L"ICACLS.exe");
    EXPECT_EQ(folder, nullptr);
    EXPECT_EQ(show_state, 0);
    events_.push_back(std::wstring(L"start ") + parameters);
    return reinterpret_cast<HINSTANCE>(shell_result_);
  }};
};

TEST_F(GrantFolderAccessTest, GrantsThreeFoldersInOrderAndCreatesTwoOfThemFirst) {
  CreateFolders(program_data_);
  events_.clear();

  product_.Manager().GrantFolderAccess();

  EXPECT_THAT(events_,
              ElementsAre(L"start " + ParametersFor(updater_ + L"\\Config"),
                          L"create " + updater_ + L"\\Temp",
                          L"start " + ParametersFor(updater_ + L"\\Temp"),  //
                          L"known folder", L"free",                         //
                          L"create " + corvane_data_, L"start " + ParametersFor(corvane_data_)));
  EXPECT_FALSE(Exists(updater_ + L"\\Config"));
  EXPECT_TRUE(Exists(updater_ + L"\\Temp"));
  EXPECT_TRUE(Exists(corvane_data_));
}

TEST_F(GrantFolderAccessTest, LogsTheToolTheParametersAndTheReturnCode) {
  product_.Manager().GrantFolderAccess();

  EXPECT_THAT(
      product_.Transcript(),
      ElementsAre(L"2|ShellExecute ICACLS success on ICACLS.exe, Params = \"{base}"
                  L"\\Updater\\Config\" /grant \"*S-1-5-32-545\":(OI)(CI)F /inheritance:e, "
                  L"Return Code = 42",
                  Record(kSuccess, kTempFolder, L"42"), Record(kSuccess, kDataFolder, L"42")));
}

TEST_F(GrantFolderAccessTest, GrantsAlsoFoldersThatCannotBeCreated) {
  ::RemoveDirectoryW(updater_.c_str());  // and there is no ProgramData\Shared either

  product_.Manager().GrantFolderAccess();

  EXPECT_EQ(shell_execute_.Calls(), 3);
  EXPECT_FALSE(Exists(updater_ + L"\\Temp"));
  EXPECT_FALSE(Exists(corvane_data_));
}

TEST_F(GrantFolderAccessTest, StartsTheThirdGrantWithAnEmptyPathWithoutProgramData) {
  has_program_data_ = false;

  product_.Manager().GrantFolderAccess();

  EXPECT_THAT(events_, ElementsAre(L"start " + ParametersFor(updater_ + L"\\Config"),
                                   L"create " + updater_ + L"\\Temp",
                                   L"start " + ParametersFor(updater_ + L"\\Temp"),  //
                                   L"known folder", L"free",                         //
                                   L"start " + ParametersFor(L"")));
  EXPECT_THAT(product_.Transcript(),
              ElementsAre(Record(kSuccess, kConfigFolder, L"42"),
                          Record(kSuccess, kTempFolder, L"42"), Record(kSuccess, L"", L"42")));
}

struct ReturnCodeCase {
  std::intptr_t shell_result;
  const wchar_t* beginning;
  const wchar_t* number;
};

TEST_F(GrantFolderAccessTest, JudgesTheLowHalfOfTheReturnCode) {
  const ReturnCodeCase kCases[] = {
      {0, kFailure, L"0"},
      {2, kFailure, L"2"},
      {32, kFailure, L"32"},
      {33, kSuccess, L"33"},
      {0x7FFFFFFF, kSuccess, L"2147483647"},
      {0x80000000, kFailure, L"-2147483648"},
      {0xFFFFFFFF, kFailure, L"-1"},
      {-1, kFailure, L"-1"},
      {0x100000000, kFailure, L"0"},
      {0x100000020, kFailure, L"32"},
      {0x100000021, kSuccess, L"33"},
      {-0x7FFFFFFFFFFFFFDF, kSuccess, L"33"},
  };

  for (const ReturnCodeCase& example : kCases) {
    shell_result_ = example.shell_result;
    product_.ForgetRecords();

    product_.Manager().GrantFolderAccess();

    EXPECT_THAT(product_.Transcript(),
                ElementsAre(Record(example.beginning, kConfigFolder, example.number),
                            Record(example.beginning, kTempFolder, example.number),
                            Record(example.beginning, kDataFolder, example.number)))
        << example.shell_result;
  }
}

}  // namespace
}  // namespace nhupdate_test
