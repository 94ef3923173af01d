// Folders and files whose paths are longer than Windows takes them unless an administrator has
// allowed that.

#include "install/empty_folders.h"
#include "install/folder_access.h"
#include "install/folder_copy.h"
#include "install/folder_removal.h"
#include "install/install_copy.h"
#include "tests/support/fake_listing.h"
#include "tests/support/recorded_tools.h"
#include "tests/support/short_path_policy.h"
#include "tests/unit/install/install_test.h"

#include <shlobj.h>  // needs <windows.h> first

namespace nhupdate_test {
namespace {

std::wstring PathOfLength(const std::wstring& folder, std::size_t length) {
  std::wstring path = folder;
  while (length - path.size() > 100) {
    path += L"\\" + std::wstring(60, L'd');
  }
  return path + L"\\" + std::wstring(length - path.size() - 1, L'f');
}

class LongPathTest : public InstallTest {
 protected:
  LongPathTest() {
    for (const std::size_t length : {246u, 247u, 248u, 258u, 259u, 260u, 261u, 300u, 1000u}) {
      WriteFileBytes(PathOfLength(source_, length), "L");
    }
  }

  ~LongPathTest() override { EXPECT_THAT(log_.Records(), Each(Not(HasSubstr(L"\\\\?\\")))); }

  const std::wstring source_ = root_ + L"\\from";
  const std::wstring target_ = root_ + L"\\to";
  std::wstring failed_path_;
};

TEST_F(LongPathTest, IsCopiedToAndRecordedAsItIs) {
  CFolderCopy copy(folders_, log_.Log(), failed_path_);
  {
    const ShortPathPolicy policy;

    EXPECT_TRUE(copy.Copy(target_, source_, {}));

    EXPECT_GT(policy.ExtendedPaths(), 0);
  }
  EXPECT_EQ(ListTree(target_), ListTree(source_));
  const std::wstring longest = PathOfLength(source_, 1000).substr(source_.size());
  EXPECT_THAT(log_.Records(),
              Contains(L"2|Copy file from {root}\\from" + longest + L" to {root}\\to" + longest));
}

// Wine tells no final path that is longer than 260 units, so it has to be made up.
TEST_F(LongPathTest, IsDeleted) {
  {
    const ShortPathPolicy policy;
    FakeListing listing;
    listing.LeadElsewhere(root_, L"\\Device\\V1");

    EXPECT_TRUE(DeleteFolderTree(source_, root_));
  }
  EXPECT_FALSE(Exists(source_));
}

TEST_F(LongPathTest, IsScannedAndFoundAsItIs) {
  const std::wstring empty = PathOfLength(target_, 400);
  CreateFolders(empty);
  Lines found;
  {
    const ShortPathPolicy policy;

    EXPECT_FALSE(CollectEmptyFolders(root_, found, log_.Log()));
  }
  EXPECT_THAT(found, Contains(empty));
  EXPECT_THAT(found, Each(Not(testing::StartsWith(L"\\\\?\\"))));
}

TEST_F(LongPathTest, IsThatOfAProductThatIsInstalledAndGrantedToo) {
  folders_ = FoldersOfExecutable(PathOfLength(root_, 300) +
                                 L"\\Nimba Hub\\NHUpdateManager\\NHUpdateManager.exe");
  const std::wstring& base = folders_.base_folder;
  WriteFileBytes(base + L"\\old.txt", "O");
  WriteFileBytes(folders_.app_folder + L"\\new.txt", "N");
  INTERPOSER(SHGetKnownFolderPath) no_program_data(Answers(E_FAIL));
  const RecordedTools tools;
  {
    const ShortPathPolicy policy;
    FakeListing listing;
    listing.LeadElsewhere(root_, L"\\Device\\V1");

    EXPECT_TRUE(InstallCopy(folders_, {}, log_.Log(), failed_path_));
    GrantFolderAccess(folders_, log_.Log());
  }
  EXPECT_THAT(ListTree(base), ElementsAre(L"Updater\\", L"Updater\\App\\", L"Updater\\App\\new.txt",
                                          L"Updater\\Temp\\", L"new.txt"));
  ASSERT_EQ(tools.Started().size(), 3u);
  EXPECT_EQ(tools.Started()[1], L"ICACLS.exe \"" + base +
                                    L"\\Updater\\Temp\" /grant \"*S-1-5-32-545\":(OI)(CI)F "
                                    L"/inheritance:e");
}

}  // namespace
}  // namespace nhupdate_test
