#include "install/folder_access.h"

#include <gmock/gmock.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/existence.h"
#include "base/strings.h"
#include "tests/support/fake_link.h"
#include "tests/support/fake_listing.h"
#include "tests/support/interposer.h"
#include "tests/unit/install/install_test.h"

// These need <windows.h> first.
#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using nhupdate::GrantFolderAccess;
using testing::ElementsAre;

constexpr wchar_t kSuccess[] = L"2|ShellExecute ICACLS success on ICACLS.exe, Params = ";
constexpr wchar_t kFailure[] = L"4|ShellExecute ICACLS fail on ICACLS.exe, Params = ";

// The three that are granted, in order.
constexpr wchar_t kConfigFolder[] = L"{base}\\Updater\\Config";
constexpr wchar_t kTempFolder[] = L"{base}\\Updater\\Temp";
constexpr wchar_t kDataFolder[] = L"{root}\\ProgramData\\Corvane";

std::wstring ParametersFor(const std::wstring& folder) {
  return L"\"" + folder + L"\" /grant \"*S-1-5-32-545\":(OI)(CI)F /inheritance:e";
}

std::wstring Record(const std::wstring& beginning, const std::wstring& folder,
                    const std::wstring& return_code) {
  return beginning + ParametersFor(folder) + L", Return Code = " + return_code;
}

std::wstring CurrentFolderOfProcess() {
  std::array<wchar_t, MAX_PATH> buffer = {};
  ::GetCurrentDirectoryW(MAX_PATH, buffer.data());
  return buffer.data();
}

std::wstring SystemFolder() {
  std::array<wchar_t, MAX_PATH> buffer = {};
  ::GetSystemDirectoryW(buffer.data(), MAX_PATH);
  return buffer.data();
}

class FolderAccessTest : public InstallTest {
 protected:
  FolderAccessTest() {
    CreateFolders(updater_);
    CreateFolders(program_data_);
    events_.clear();
  }

  void Grant() { GrantFolderAccess(base_, log_.Log()); }

  // Of the real folder.
  [[nodiscard]] std::wstring Path(std::wstring folder) const {
    nhupdate::ReplaceAll(folder, L"{base}", base_);
    nhupdate::ReplaceAll(folder, L"{root}", root_);
    return folder;
  }

  const std::wstring updater_ = base_ + L"\\Updater";
  const std::wstring program_data_ = root_ + L"\\ProgramData";
  const std::wstring former_folder_ = CurrentFolderOfProcess();

  bool has_program_data_ = true;
  std::intptr_t shell_result_ = 42;
  std::vector<std::wstring> events_;
  std::vector<std::wstring> started_;  // parameters
  std::vector<std::wstring> movable_;  // of the three folders, while the tool is being started

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
        EXPECT_EQ(CurrentFolderOfProcess(), former_folder_);
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
    EXPECT_EQ(CurrentFolderOfProcess(), SystemFolder());
    events_.push_back(std::wstring(L"start ") + parameters);
    started_.push_back(parameters);
    for (const wchar_t* name : {kConfigFolder, kTempFolder, kDataFolder}) {
      const std::wstring path = Path(name);
      if (parameters == ParametersFor(path) && Exists(path) &&
          ::MoveFileW(path.c_str(), (path + L" (moved)").c_str())) {
        movable_.push_back(name);
      }
    }
    return reinterpret_cast<HINSTANCE>(shell_result_);
  }};
};

TEST_F(FolderAccessTest, IsGrantedForThreeFoldersInOrderOfWhichTwoAreCreatedFirst) {
  Grant();

  EXPECT_THAT(
      events_,
      ElementsAre(L"start " + ParametersFor(Path(kConfigFolder)), L"create " + Path(kTempFolder),
                  L"start " + ParametersFor(Path(kTempFolder)),  //
                  L"known folder", L"free",                      //
                  L"create " + Path(kDataFolder), L"start " + ParametersFor(Path(kDataFolder))));
  EXPECT_THAT(log_.Records(), ElementsAre(Record(kSuccess, kConfigFolder, L"42"),
                                          Record(kSuccess, kTempFolder, L"42"),
                                          Record(kSuccess, kDataFolder, L"42")));
  EXPECT_FALSE(Exists(Path(kConfigFolder)));
  EXPECT_TRUE(Exists(Path(kTempFolder)));
  EXPECT_TRUE(Exists(Path(kDataFolder)));
}

// The tool is looked for in the current folder first, which may be anybody's.
TEST_F(FolderAccessTest, IsGrantedFromTheSystemFolderAndNothingElseIsDoneFromThere) {
  Grant();

  EXPECT_EQ(shell_execute_.Calls(), 3);  // they look at the current folder
  EXPECT_EQ(CurrentFolderOfProcess(), former_folder_);
}

TEST_F(FolderAccessTest, IsGrantedForFoldersThatCannotBeExchangedMeanwhile) {
  CreateFolders(Path(kConfigFolder));

  Grant();

  EXPECT_EQ(shell_execute_.Calls(), 3);
  EXPECT_THAT(movable_, testing::IsEmpty());
  EXPECT_TRUE(::MoveFileW(Path(kConfigFolder).c_str(), (updater_ + L"\\free again").c_str()));
}

TEST_F(FolderAccessTest, IsGrantedAlsoForFoldersThatCannotBeCreated) {
  RemoveTree(updater_);
  RemoveTree(program_data_);

  Grant();

  EXPECT_EQ(shell_execute_.Calls(), 3);
  EXPECT_FALSE(Exists(Path(kTempFolder)));
  EXPECT_FALSE(Exists(Path(kDataFolder)));
}

TEST_F(FolderAccessTest, IsAskedForAnEmptyPathWithoutProgramData) {
  has_program_data_ = false;

  Grant();

  EXPECT_THAT(events_, ElementsAre(L"start " + ParametersFor(Path(kConfigFolder)),
                                   L"create " + Path(kTempFolder),
                                   L"start " + ParametersFor(Path(kTempFolder)),  //
                                   L"known folder", L"free",                      //
                                   L"start " + ParametersFor(L"")));
  EXPECT_EQ(log_.Records().back(), Record(kSuccess, L"", L"42"));
}

TEST_F(FolderAccessTest, IsJudgedByTheLowHalfOfTheReturnCode) {
  struct Case {
    std::intptr_t shell_result;
    const wchar_t* beginning;
    const wchar_t* number;
  };
  const Case kCases[] = {
      {0, kFailure, L"0"},
      {2, kFailure, L"2"},
      {32, kFailure, L"32"},
      {33, kSuccess, L"33"},
      {0x7FFFFFFF, kSuccess, L"2147483647"},
      {0x80000000, kFailure, L"-2147483648"},
      {-1, kFailure, L"-1"},
      {0x100000020, kFailure, L"32"},
      {0x100000021, kSuccess, L"33"},
      {-0x7FFFFFFFFFFFFFDF, kSuccess, L"33"},
  };

  for (const Case& example : kCases) {
    shell_result_ = example.shell_result;
    log_.ForgetRecords();

    Grant();

    EXPECT_THAT(log_.Records(),
                ElementsAre(Record(example.beginning, kConfigFolder, example.number),
                            Record(example.beginning, kTempFolder, example.number),
                            Record(example.beginning, kDataFolder, example.number)));
  }
}

// Users may write to these folders: nobody is given access to what a link leads to.
class DeniedFolderAccessTest : public FolderAccessTest,
                               public testing::WithParamInterface<const wchar_t*> {
 protected:
  // That all were granted but the one of the parameter.
  void ExpectDenied() const {
    Lines records;
    for (const std::wstring folder : {kConfigFolder, kTempFolder, kDataFolder}) {
      const bool is_denied = folder == GetParam();
      records.push_back(is_denied ? Record(kFailure, folder, L"5")
                                  : Record(kSuccess, folder, L"42"));
      EXPECT_EQ(testing::Value(started_, testing::Contains(ParametersFor(Path(folder)))),
                !is_denied);
    }
    EXPECT_EQ(log_.Records(), records);
  }
};

TEST_P(DeniedFolderAccessTest, IsThatToALink) {
  CreateFolders(root_ + L"\\elsewhere");
  const FakeLink link(Path(GetParam()), root_ + L"\\elsewhere");

  Grant();

  ExpectDenied();
}

TEST_P(DeniedFolderAccessTest, IsThatToAFolderThatCannotBeLookedAt) {
  CreateFolders(Path(GetParam()));
  INTERPOSER(CreateFileW) open([&](const wchar_t* path, DWORD access, DWORD sharing,
                                   SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                                   HANDLE model) {
    if (path != Path(GetParam())) {
      return open.Original()(path, access, sharing, security, disposition, flags, model);
    }
    ::SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_HANDLE_VALUE;
  });

  Grant();

  ExpectDenied();
}

// Its place is unknown, or another one: a folder further up is a link.
TEST_P(DeniedFolderAccessTest, IsThatToAFolderThatMayLieElsewhere) {
  CreateFolders(Path(GetParam()));
  for (const wchar_t* place : {L"", L"\\Device\\V1\\elsewhere"}) {
    log_.ForgetRecords();
    started_.clear();
    FakeListing listing;
    listing.LeadElsewhere(Path(GetParam()), place);

    Grant();

    ExpectDenied();
  }
}

INSTANTIATE_TEST_SUITE_P(OfEach, DeniedFolderAccessTest,
                         testing::Values(kConfigFolder, kTempFolder, kDataFolder));

}  // namespace
}  // namespace nhupdate_test
