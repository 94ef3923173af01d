#include "base/product_folders.h"

#include "tests/support/basics.h"

namespace nhupdate_test {
namespace {

TEST(FoldersOfExecutableTest, FollowFromTheExecutablesPath) {
  const struct {
    const wchar_t* executable;
    std::wstring module_file_name;
    std::wstring module_folder;
    std::wstring base_folder;
    std::wstring root_folder;
  } cases[] = {
      // An installed product, and the copy that the updater staged.
      {L"C:\\A\\B\\M\\x.exe", L"x.exe", L"C:\\A\\B\\M", L"C:\\A\\B", L"C:\\A"},
      {L"C:\\A\\B\\Updater\\App\\M\\x.exe", L"x.exe", L"C:\\A\\B\\Updater\\App\\M",
       L"C:\\A\\B\\Updater\\App", L"C:\\A\\B\\Updater"},
      // Fewer and fewer folders, down to the drive's root, and no folder at all.
      {L"C:\\B\\M\\x.exe", L"x.exe", L"C:\\B\\M", L"C:\\B", L"C:"},
      {L"C:\\M\\x.exe", L"x.exe", L"C:\\M", L"C:", L""},
      {L"C:\\x.exe", L"x.exe", L"C:", L"", L""},
      {L"x.exe", L"x.exe", L"", L"", L""},
      {L"", L"", L"", L"", L""},
      // On a server, and with a prefix for long paths.
      {L"\\\\server\\share\\B\\M\\x.exe", L"x.exe", L"\\\\server\\share\\B\\M",
       L"\\\\server\\share\\B", L"\\\\server\\share"},
      {L"\\\\server\\x.exe", L"x.exe", L"\\\\server", L"\\", L""},
      {L"\\\\?\\C:\\A\\B\\M\\x.exe", L"x.exe", L"\\\\?\\C:\\A\\B\\M", L"\\\\?\\C:\\A\\B",
       L"\\\\?\\C:\\A"},
      // Nothing but a backslash separates, and nothing is resolved.
      {L"C:\\A/B\\M\\x.exe", L"x.exe", L"C:\\A/B\\M", L"C:\\A/B", L"C:"},
      {L"C:\\A\\..\\B\\M\\x.exe", L"x.exe", L"C:\\A\\..\\B\\M", L"C:\\A\\..\\B", L"C:\\A\\.."},
      {L"D:\\100% \u00FC\\B\\M\\\u7E41.exe", L"\u7E41.exe", L"D:\\100% \u00FC\\B\\M",
       L"D:\\100% \u00FC\\B", L"D:\\100% \u00FC"},
  };

  for (const auto& c : cases) {
    SCOPED_TRACE(PrintToString(c.executable));

    const ProductFolders folders = FoldersOfExecutable(c.executable);

    EXPECT_EQ(folders.module_file_name, c.module_file_name);
    EXPECT_EQ(folders.module_folder, c.module_folder);
    EXPECT_EQ(folders.configuration_folder, c.module_folder + L"\\Config");
    EXPECT_EQ(folders.base_folder, c.base_folder);
    EXPECT_EQ(folders.UpdaterFolder(), c.base_folder + L"\\Updater");
    EXPECT_EQ(folders.app_folder, c.base_folder + L"\\Updater\\App");
    EXPECT_EQ(folders.root_folder, c.root_folder);
    EXPECT_EQ(folders.nimba_cast_folder, c.root_folder + L"\\NimbaCast");
    EXPECT_EQ(folders.nimba_desk_folder, c.root_folder + L"\\NimbaDesk");
  }
}

TEST(FoldersOfExecutableTest, AreThoseOfTheInstalledProductAsAStagedCopySeesThem) {
  const ProductFolders folders =
      FoldersOfExecutable(L"C:\\A\\B\\Updater\\App\\NHUpdateManager\\NHUpdateManager.exe");

  EXPECT_EQ(folders.UpdaterFolderSeenFromStagedCopy(), L"C:\\A\\B\\Updater");
  EXPECT_EQ(folders.InstalledProgramFolderSeenFromStagedCopy(), L"C:\\A\\B\\NHUpdateManager");
}

TEST(FoldersOfExecutableTest, LeaveOutWhatDoesNotFollowFromIt) {
  const ProductFolders folders = FoldersOfExecutable(L"C:\\A\\B\\M\\x.exe");

  EXPECT_EQ(folders.string_file_path, L"");
  EXPECT_EQ(folders.product_data_folder, L"");
  EXPECT_EQ(folders.log_folder, L"");
}

TEST(BaseFolderTest, IsThereUnlessTheExecutableIsInADrivesRootOrItsPathIsUnknownOrCutOff) {
  EXPECT_TRUE(FoldersOfExecutable(L"C:\\A\\B\\M\\x.exe").HasBaseFolder());
  EXPECT_TRUE(FoldersOfExecutable(L"C:\\M\\x.exe").HasBaseFolder());
  EXPECT_FALSE(FoldersOfExecutable(L"C:\\x.exe").HasBaseFolder());
  EXPECT_FALSE(FoldersOfExecutable(L"").HasBaseFolder());

  ProductFolders cut_off = FoldersOfExecutable(L"C:\\A\\B\\M\\x.exe");
  cut_off.is_executable_path_cut_off = true;
  EXPECT_FALSE(cut_off.HasBaseFolder());
}

}  // namespace
}  // namespace nhupdate_test
