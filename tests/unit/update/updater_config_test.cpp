#include "update/updater_config.h"

#include "tests/support/folder_link.h"
#include "tests/unit/update/mechanism_test.h"

namespace nhupdate_test {
namespace {

class UpdaterConfigTest : public MechanismTest {
 protected:
  static constexpr wchar_t kConfig[] = L"\\Updater\\Config\\ut.ini";

  int Delete(const ProductFolders& folders, RunningCopy copy = RunningCopy::kInstalled) {
    return DeleteUpdaterConfig(folders, copy, log_.Log()) ? 1 : 0;
  }

  [[nodiscard]] bool ConfigExists() const { return Exists(Base() + kConfig); }

  // Behind the link that takes the place of the folder.
  [[nodiscard]] std::wstring OtherFile() const { return Root() + L"\\Other\\ut.ini"; }

  void LinkConfigToAnotherFolder() const {
    WriteFileBytes(OtherFile(), "another's");
    EXPECT_TRUE(::MoveFileW((Updater() + L"\\Config").c_str(), (Root() + L"\\Moved").c_str()));
    CreateLink(Updater() + L"\\Config", Root() + L"\\Other");
  }
};

TEST_F(UpdaterConfigTest, IsDeletedWhereTheRunningCopySeesIt) {
  const ProductFolders staged =
      FoldersOfExecutable(Updater() + L"\\App\\NHUpdateManager\\NHUpdateManager.exe");
  Add(kConfig);
  Tell("Installed", Delete(folders_));
  EXPECT_FALSE(ConfigExists());

  Add(kConfig);
  Tell("Staged", Delete(staged, RunningCopy::kStaged));
  EXPECT_FALSE(ConfigExists());

  Tell("None", Delete(folders_));

  // The installed copy, taken for the staged one, looks beside the base folder.
  Add(kConfig);
  WriteFileBytes(Root() + L"\\Config\\ut.ini", "");
  Tell("Mistaken", Delete(folders_, RunningCopy::kStaged));
  EXPECT_TRUE(ConfigExists());
  EXPECT_FALSE(Exists(Root() + L"\\Config\\ut.ini"));
}

TEST_F(UpdaterConfigTest, StaysWhenItCannotBeDeleted) {
  Add(kConfig);
  {
    const HeldFile held(Base() + kConfig, FILE_SHARE_READ);
    Tell("Locked", Delete(folders_));
  }
  {
    const INTERPOSER(SetFileInformationByHandle) refuse(Answers(FALSE, ERROR_ACCESS_DENIED));
    Tell("Refused", Delete(folders_));
    EXPECT_EQ(refuse.Calls(), 2);
  }
  EXPECT_TRUE(ConfigExists());

  EXPECT_TRUE(::DeleteFileW((Base() + kConfig).c_str()));
  CreateFolders(Base() + kConfig);
  Tell("Folder", Delete(folders_));
  EXPECT_TRUE(ConfigExists());
}

// FAT and exFAT know neither the question for a link's kind nor the deletion at once.
TEST_F(UpdaterConfigTest, IsDeletedOnAPlainDiskToo) {
  Add(kConfig);
  const auto asks_for_tag = [](HANDLE, auto kind, auto...) { return kind == FileAttributeTagInfo; };
  const auto is_newer = [](HANDLE, auto kind, auto...) { return kind != FileDispositionInfo; };
  const INTERPOSER(GetFileInformationByHandleEx) ask(
      AnswersIf(asks_for_tag, FALSE, ERROR_INVALID_PARAMETER));
  const INTERPOSER(SetFileInformationByHandle) change(
      AnswersIf(is_newer, FALSE, ERROR_INVALID_PARAMETER));

  Tell(Delete(folders_));

  EXPECT_FALSE(ConfigExists());
}

TEST_F(UpdaterConfigTest, IsNotDeletedBehindALinkWheneverThatComes) {
  Add(kConfig);
  // The last moment: the file is about to be opened.
  bool is_exchanged = false;
  const INTERPOSER(CreateFileW) open([&](const wchar_t* path, auto...) {
    if (!is_exchanged && std::wstring(path) == Base() + kConfig) {
      is_exchanged = true;
      LinkConfigToAnotherFolder();
    }
  });

  Tell("After the look", Delete(folders_));
  EXPECT_TRUE(is_exchanged);
  Tell("Before it", Delete(folders_));

  EXPECT_EQ(ReadFileBytes(OtherFile()), "another's");
  RemoveFolderLink(Updater() + L"\\Config");
}

TEST_F(UpdaterConfigTest, IsNotLookedForWithoutABaseFolder) {
  Add(kConfig);
  ProductFolders cut_off = folders_;
  cut_off.is_executable_path_cut_off = true;

  Tell("CutOff", Delete(cut_off));
  Tell("DrivesRoot", Delete(FoldersOfExecutable(L"C:\\NHUpdateManager.exe")));

  EXPECT_TRUE(ConfigExists());
}

}  // namespace
}  // namespace nhupdate_test
