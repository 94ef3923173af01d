#include <array>

#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/support/fence.h"
#include "tests/support/files.h"
#include "tests/support/folder_link.h"

namespace nhupdate_test {
namespace {

class StartPathEndToEndTest : public EndToEndTest {
 protected:
  ProgramRun RunFromDrive(const std::wstring& executable, const std::wstring& folder) {
    const AllowOutside open("the drive is the test's own and leads into its scratch folder");
    const CFolderAsDrive drive(folder);
    return RunFrom(executable, L"-final_update");
  }
};

// There is no product around such a program: what would be the product's folders are those of
// somebody else.
TEST_F(StartPathEndToEndTest, InADrivesRootNothingIsDeletedOrCopied) {
  const std::wstring root = hub_.Scratch() + L"\\Drive";
  hub_.PutManager(root, "1.0.0");
  WriteFileBytes(root + L"\\Sub\\mine\\important.txt", "important");
  WriteFileBytes(root + L"\\Updater\\App\\Sub\\new.txt", "new");
  WriteFileBytes(root + L"\\Updater\\App\\Version.txt", "new");

  ExpectGoldenRun(0, RunFromDrive(L"E:\\NHUpdateManager.exe", root));
}

TEST_F(StartPathEndToEndTest, ADriveCanHoldAProduct) {
  hub_.StageRelease();

  ExpectGoldenRun(0, RunFromDrive(L"E:\\NHUpdateManager\\NHUpdateManager.exe", hub_.Base()));
}

// The program's own folder has to be recognised by whatever name it was started. (Wine doesn't tell
// a program its short name, so there only the next test shows what this is about.)
TEST_F(StartPathEndToEndTest, AShortNameLeadsToTheSameFolders) {
  hub_.StageRelease();
  std::array<wchar_t, 1024> name = {};
  ASSERT_NE(::GetShortPathNameW(hub_.Manager().c_str(), name.data(), DWORD{name.size()}), 0U);
  ASSERT_NE(name.data(), hub_.Manager());

  ExpectGoldenRun(0, RunFrom(name.data(), L"-final_update"));
}

TEST_F(StartPathEndToEndTest, AnotherLetterCaseLeadsToTheSameFolders) {
  hub_.StageRelease();
  std::wstring name = hub_.Manager();
  ::CharUpperW(name.data());
  ASSERT_NE(name, hub_.Manager());

  ExpectGoldenRun(0, RunFrom(name, L"-final_update"));
}

}  // namespace
}  // namespace nhupdate_test
