#include "install/folder_access.h"

#include "base/strings.h"
#include "tests/support/current_folder.h"
#include "tests/support/fake_link.h"
#include "tests/support/fake_listing.h"
#include "tests/support/shell_text.h"
#include "tests/unit/install/install_test.h"

// These need <windows.h> first.
#include <shellapi.h>
#include <shlobj.h>

namespace nhupdate_test {
namespace {

// The three that are granted, in order.
constexpr wchar_t kConfigFolder[] = L"{base}\\Updater\\Config";
constexpr wchar_t kTempFolder[] = L"{base}\\Updater\\Temp";
constexpr wchar_t kDataFolder[] = L"{root}\\ProgramData\\Corvane";

std::wstring ParametersFor(const std::wstring& folder) {
  return L"\"" + folder + L"\" /grant \"*S-1-5-32-545\":(OI)(CI)F /inheritance:e";
}

std::wstring Granted(const std::wstring& folder, const std::wstring& code = L"42") {
  return L"2|ShellExecute ICACLS success on ICACLS.exe, Params = " + ParametersFor(folder) +
         L", Return Code = " + code;
}

std::wstring Refused(const std::wstring& folder, const std::wstring& code = L"5") {
  return L"4|ShellExecute ICACLS fail on ICACLS.exe, Params = " + ParametersFor(folder) +
         L", Return Code = " + code;
}

class FolderAccessTest : public InstallTest {
 protected:
  FolderAccessTest() {
    CreateFolders(updater_);
    CreateFolders(program_data_);
    events_.clear();
  }

  void Grant() { GrantFolderAccess(folders_, log_.Log()); }

  // The path of the real folder.
  [[nodiscard]] std::wstring Path(std::wstring folder) const {
    ReplaceAll(folder, L"{base}", base_);
    ReplaceAll(folder, L"{root}", root_);
    return folder;
  }

  // The event that tells that the tool was started for one of the three.
  [[nodiscard]] std::wstring StartFor(const wchar_t* folder) const {
    return L"start " + ParametersFor(Path(folder));
  }

  const std::wstring updater_ = base_ + L"\\Updater";
  const std::wstring program_data_ = root_ + L"\\ProgramData";
  const std::wstring former_folder_ = PathOfCurrentFolder();

  bool has_program_data_ = true;
  std::intptr_t shell_result_ = 42;
  Lines events_;
  Lines movable_;  // which of the three could be moved while the tool was being started

  INTERPOSER(SHGetKnownFolderPath) known_folder_{
      [this](REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR* path) {
        events_.push_back(L"known folder");
        *path = has_program_data_ ? CopyForShell(program_data_) : nullptr;
        return has_program_data_ ? S_OK : E_FAIL;
      }};
  INTERPOSER(CreateDirectoryW) create_{[this](const wchar_t* folder, auto... rest) {
    EXPECT_EQ(PathOfCurrentFolder(), former_folder_);
    events_.push_back(std::wstring(L"create ") + folder);
    return create_.Original()(folder, rest...);
  }};
  INTERPOSER(ShellExecuteW) shell_execute_{[this](HWND owner, const wchar_t* verb,
                                                  const wchar_t* file, const wchar_t* parameters,
                                                  const wchar_t* folder, int show_state) {
    EXPECT_EQ(owner, nullptr);
    EXPECT_EQ(verb, nullptr);
    EXPECT_STREQ(file, L"ICACLS.exe");
    EXPECT_EQ(folder, nullptr);
    EXPECT_EQ(show_state, 0);
    EXPECT_EQ(PathOfCurrentFolder(), PathOfSystemFolder());
    events_.push_back(std::wstring(L"start ") + parameters);
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

  EXPECT_THAT(events_, ElementsAre(StartFor(kConfigFolder),                                //
                                   L"create " + Path(kTempFolder), StartFor(kTempFolder),  //
                                   L"known folder",                                        //
                                   L"create " + Path(kDataFolder), StartFor(kDataFolder)));
  EXPECT_THAT(log_.Records(),
              ElementsAre(Granted(kConfigFolder), Granted(kTempFolder), Granted(kDataFolder)));
  EXPECT_FALSE(Exists(Path(kConfigFolder)));
  EXPECT_TRUE(Exists(Path(kTempFolder)));
  EXPECT_TRUE(Exists(Path(kDataFolder)));
}

// Windows looks for the tool in the current folder first, which anybody might have filled.
TEST_F(FolderAccessTest, IsGrantedFromTheSystemFolderAndNothingElseIsDoneFromThere) {
  Grant();

  EXPECT_EQ(shell_execute_.Calls(), 3);  // each looks at the current folder
  EXPECT_EQ(PathOfCurrentFolder(), former_folder_);
}

TEST_F(FolderAccessTest, IsGrantedForFoldersThatCannotBeExchangedMeanwhile) {
  CreateFolders(Path(kConfigFolder));

  Grant();

  EXPECT_EQ(shell_execute_.Calls(), 3);
  EXPECT_THAT(movable_, IsEmpty());
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

  EXPECT_THAT(events_, ElementsAre(StartFor(kConfigFolder), L"create " + Path(kTempFolder),
                                   StartFor(kTempFolder), L"known folder", StartFor(L"")));
  EXPECT_EQ(log_.Records().back(), Granted(L""));
}

TEST_F(FolderAccessTest, IsJudgedByTheLowHalfOfTheReturnCode) {
  const struct {
    std::intptr_t shell_result;
    std::wstring (*line)(const std::wstring& folder, const std::wstring& code);
    const wchar_t* code;
  } cases[] = {
      {0, Refused, L"0"},
      {2, Refused, L"2"},
      {32, Refused, L"32"},
      {33, Granted, L"33"},
      {0x7FFFFFFF, Granted, L"2147483647"},
      {0x80000000, Refused, L"-2147483648"},
      {-1, Refused, L"-1"},
      {0x100000020, Refused, L"32"},
      {0x100000021, Granted, L"33"},
      {-0x7FFFFFFFFFFFFFDF, Granted, L"33"},
  };

  for (const auto& c : cases) {
    shell_result_ = c.shell_result;
    log_.ForgetRecords();

    Grant();

    EXPECT_THAT(log_.Records(),
                ElementsAre(c.line(kConfigFolder, c.code), c.line(kTempFolder, c.code),
                            c.line(kDataFolder, c.code)));
  }
}

TEST_F(FolderAccessTest, IsNotAskedForBelowTheCurrentDriveWithoutABaseFolder) {
  for (const ProductFolders& folders : FoldersWithoutBase()) {
    GrantFolderAccess(folders, log_.Log());
  }

  EXPECT_THAT(
      log_.Records(),
      ElementsAre(Refused(L"\\Updater\\Config"), Refused(L"\\Updater\\Temp"), Granted(kDataFolder),
                  Refused(kConfigFolder), Refused(kTempFolder), Granted(kDataFolder)));
  EXPECT_FALSE(Exists(Path(kTempFolder)));
  EXPECT_EQ(shell_execute_.Calls(), 2);
}

TEST_F(FolderAccessTest, IsNotAskedForFromAnybodysFolder) {
  INTERPOSER(SetCurrentDirectoryW) refuse(Answers(FALSE, ERROR_ACCESS_DENIED));

  Grant();

  EXPECT_EQ(shell_execute_.Calls(), 0);
  EXPECT_EQ(log_.Records().back(), Refused(kDataFolder));
}

// What was there a moment ago could come back as a link.
TEST_F(FolderAccessTest, IsNotAskedForAFolderThatGoesAwayAfterItWasMade) {
  const INTERPOSER(CreateFileW) open([&](const wchar_t* path, auto...) {
    if (path == Path(kTempFolder)) {
      EXPECT_TRUE(::RemoveDirectoryW(path));
    }
  });

  Grant();

  EXPECT_THAT(log_.Records(),
              ElementsAre(Granted(kConfigFolder), Refused(kTempFolder), Granted(kDataFolder)));
}

// Users may write to these folders: nobody is given access to what a link leads to.
class DeniedFolderAccessTest : public FolderAccessTest,
                               public testing::WithParamInterface<const wchar_t*> {
 protected:
  // Expects that access to all folders is granted but to that of the parameter.
  void ExpectDenied() {
    events_.clear();
    log_.ForgetRecords();

    Grant();

    Lines records;
    for (const wchar_t* folder : {kConfigFolder, kTempFolder, kDataFolder}) {
      const bool is_denied = std::wstring(folder) == GetParam();
      records.push_back(is_denied ? Refused(folder) : Granted(folder));
      EXPECT_EQ(testing::Value(events_, Contains(StartFor(folder))), !is_denied);
    }
    EXPECT_EQ(log_.Records(), records);
  }
};

TEST_P(DeniedFolderAccessTest, IsThatToALink) {
  CreateFolders(root_ + L"\\elsewhere");
  const FakeLink link(Path(GetParam()), root_ + L"\\elsewhere");

  ExpectDenied();
}

TEST_P(DeniedFolderAccessTest, IsThatToAFolderThatCannotBeLookedAt) {
  CreateFolders(Path(GetParam()));
  const INTERPOSER(CreateFileW) open(
      AnswersFor(Path(GetParam()), INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));

  ExpectDenied();
}

// Its place is unknown, or another one: a folder further up is a link.
TEST_P(DeniedFolderAccessTest, IsThatToAFolderThatMayLieElsewhere) {
  CreateFolders(Path(GetParam()));
  for (const wchar_t* place : {L"", L"\\Device\\V1\\elsewhere"}) {
    FakeListing listing;
    listing.LeadElsewhere(Path(GetParam()), place);

    ExpectDenied();
  }
}

// A hard link is no link and really lies there, but what it stands for may be anybody's file.
TEST_P(DeniedFolderAccessTest, IsThatToAFile) {
  WriteFileBytes(Path(GetParam()), "x");

  ExpectDenied();
}

INSTANTIATE_TEST_SUITE_P(OfEach, DeniedFolderAccessTest,
                         testing::Values(kConfigFolder, kTempFolder, kDataFolder));

}  // namespace
}  // namespace nhupdate_test
