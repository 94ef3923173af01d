#include "base/product_folders.h"

#include <gtest/gtest.h>

namespace nhupdate_test {
namespace {

using nhupdate::FoldersOfExecutable;
using nhupdate::ProductFolders;

struct Case {
  const wchar_t* executable;
  const wchar_t* module_file_name;
  const wchar_t* module_folder;
  const wchar_t* configuration_folder;
  const wchar_t* base_folder;
  const wchar_t* app_folder;
  const wchar_t* root_folder;
  const wchar_t* nimba_cast_folder;
  const wchar_t* nimba_desk_folder;
};

const Case kCases[] = {
    // An installed product.
    {L"C:\\A\\B\\NHUpdateManager\\NHUpdateManager.exe", L"NHUpdateManager.exe",
     L"C:\\A\\B\\NHUpdateManager", L"C:\\A\\B\\NHUpdateManager\\Config", L"C:\\A\\B",
     L"C:\\A\\B\\Updater\\App", L"C:\\A", L"C:\\A\\NimbaCast", L"C:\\A\\NimbaDesk"},
    // The copy that the updater staged.
    {L"C:\\A\\B\\Updater\\App\\NHUpdateManager\\NHUpdateManager.exe", L"NHUpdateManager.exe",
     L"C:\\A\\B\\Updater\\App\\NHUpdateManager", L"C:\\A\\B\\Updater\\App\\NHUpdateManager\\Config",
     L"C:\\A\\B\\Updater\\App", L"C:\\A\\B\\Updater\\App\\Updater\\App", L"C:\\A\\B\\Updater",
     L"C:\\A\\B\\Updater\\NimbaCast", L"C:\\A\\B\\Updater\\NimbaDesk"},
    // Fewer and fewer folders, down to the drive's root.
    {L"C:\\B\\M\\x.exe", L"x.exe", L"C:\\B\\M", L"C:\\B\\M\\Config", L"C:\\B",
     L"C:\\B\\Updater\\App", L"C:", L"C:\\NimbaCast", L"C:\\NimbaDesk"},
    {L"C:\\M\\x.exe", L"x.exe", L"C:\\M", L"C:\\M\\Config", L"C:", L"C:\\Updater\\App", L"",
     L"\\NimbaCast", L"\\NimbaDesk"},
    {L"C:\\NHUpdateManager.exe", L"NHUpdateManager.exe", L"C:", L"C:\\Config", L"",
     L"\\Updater\\App", L"", L"\\NimbaCast", L"\\NimbaDesk"},
    // No folder at all.
    {L"NHUpdateManager.exe", L"NHUpdateManager.exe", L"", L"\\Config", L"", L"\\Updater\\App", L"",
     L"\\NimbaCast", L"\\NimbaDesk"},
    {L"", L"", L"", L"\\Config", L"", L"\\Updater\\App", L"", L"\\NimbaCast", L"\\NimbaDesk"},
    // On a server, and with a prefix for long paths.
    {L"\\\\server\\share\\B\\M\\x.exe", L"x.exe", L"\\\\server\\share\\B\\M",
     L"\\\\server\\share\\B\\M\\Config", L"\\\\server\\share\\B",
     L"\\\\server\\share\\B\\Updater\\App", L"\\\\server\\share", L"\\\\server\\share\\NimbaCast",
     L"\\\\server\\share\\NimbaDesk"},
    {L"\\\\server\\x.exe", L"x.exe", L"\\\\server", L"\\\\server\\Config", L"\\",
     L"\\\\Updater\\App", L"", L"\\NimbaCast", L"\\NimbaDesk"},
    {L"\\\\?\\C:\\A\\B\\M\\x.exe", L"x.exe", L"\\\\?\\C:\\A\\B\\M", L"\\\\?\\C:\\A\\B\\M\\Config",
     L"\\\\?\\C:\\A\\B", L"\\\\?\\C:\\A\\B\\Updater\\App", L"\\\\?\\C:\\A",
     L"\\\\?\\C:\\A\\NimbaCast", L"\\\\?\\C:\\A\\NimbaDesk"},
    // Nothing but a backslash separates, and nothing is resolved.
    {L"C:\\A/B\\M\\x.exe", L"x.exe", L"C:\\A/B\\M", L"C:\\A/B\\M\\Config", L"C:\\A/B",
     L"C:\\A/B\\Updater\\App", L"C:", L"C:\\NimbaCast", L"C:\\NimbaDesk"},
    {L"C:\\A\\..\\B\\M\\x.exe", L"x.exe", L"C:\\A\\..\\B\\M", L"C:\\A\\..\\B\\M\\Config",
     L"C:\\A\\..\\B", L"C:\\A\\..\\B\\Updater\\App", L"C:\\A\\..", L"C:\\A\\..\\NimbaCast",
     L"C:\\A\\..\\NimbaDesk"},
    {L"D:\\100% \u00FC\\B\\M\\\u7E41.exe", L"\u7E41.exe", L"D:\\100% \u00FC\\B\\M",
     L"D:\\100% \u00FC\\B\\M\\Config", L"D:\\100% \u00FC\\B", L"D:\\100% \u00FC\\B\\Updater\\App",
     L"D:\\100% \u00FC", L"D:\\100% \u00FC\\NimbaCast", L"D:\\100% \u00FC\\NimbaDesk"},
};

TEST(FoldersOfExecutableTest, FollowFromTheExecutablesPath) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::PrintToString(c.executable));

    const ProductFolders folders = FoldersOfExecutable(c.executable);

    EXPECT_EQ(folders.module_file_name, c.module_file_name);
    EXPECT_EQ(folders.module_folder, c.module_folder);
    EXPECT_EQ(folders.configuration_folder, c.configuration_folder);
    EXPECT_EQ(folders.base_folder, c.base_folder);
    EXPECT_EQ(folders.app_folder, c.app_folder);
    EXPECT_EQ(folders.root_folder, c.root_folder);
    EXPECT_EQ(folders.nimba_cast_folder, c.nimba_cast_folder);
    EXPECT_EQ(folders.nimba_desk_folder, c.nimba_desk_folder);
  }
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
