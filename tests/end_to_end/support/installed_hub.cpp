#include "tests/end_to_end/support/installed_hub.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <utility>

#include "base/existence.h"
#include "base/known_folder.h"
#include "base/paths.h"
#include "base/strings.h"
#include "base/windows.h"
#include "tests/end_to_end/support/child_journal.h"
#include "tests/end_to_end/support/product_registry.h"
#include "tests/end_to_end/support/texts.h"
#include "tests/stand_ins/support/copy_tree.h"
#include "tests/support/files.h"
#include "tests/support/folder_link.h"
#include "tests/support/log_journal.h"
#include "tests/support/packaged_folder.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {

namespace {

constexpr wchar_t kRootName[] = L"\\Corvane";

// Over what is there, with the folders above it.
void CopyOver(const std::wstring& source, const std::wstring& target) {
  CreateFolders(nhupdate::ParentFolder(target));
  EXPECT_TRUE(::CopyFileW(source.c_str(), target.c_str(), FALSE))
      << ToUtf8(source) << " => " << ToUtf8(target) << ": " << ::GetLastError();
}

// Puts the stand-in in the place of the system's ICACLS.exe, where every search finds it, once for
// this process. The tool is deleted first: in a prefix it may be shared with other prefixes.
void ReplaceIcacls() {
  static bool is_replaced = false;
  if (std::exchange(is_replaced, true)) {
    return;
  }
  const std::wstring tool = L"C:\\windows\\system32\\icacls.exe";
  ::SetFileAttributesW(tool.c_str(), FILE_ATTRIBUTE_NORMAL);
  ::DeleteFileW(tool.c_str());
  CopyOver(TestProgramFolder() + L"\\recording_icacls.exe", tool);
  // Wine takes a tool of its own unless it is told not to.
  constexpr wchar_t kNative[] = L"native";
  ::RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\Wine\\DllOverrides", L"icacls.exe", REG_SZ,
                    kNative, sizeof(kNative));
}

// The root folder within the scratch folder, of the given length where there is one.
std::wstring RootIn(const std::wstring& scratch, std::size_t length) {
  const std::wstring root = scratch + kRootName;
  if (length == 0) {
    return root;
  }
  EXPECT_GT(length, root.size() + 1);
  return scratch + L"\\" + std::wstring(length - root.size() - 1, L'x') + kRootName;
}

}  // namespace

CInstalledHub::CInstalledHub(std::size_t root_length)
    : root_(RootIn(scratch_.Path(), root_length)) {
  ReplaceIcacls();
  RemoveTraces();
  ::SetEnvironmentVariableW(kLogJournalVariable, LogJournal().c_str());
  ::SetEnvironmentVariableW(kChildJournalVariable, ChildJournal().c_str());
  PutProduct();
  PutRelease();
}

CInstalledHub::~CInstalledHub() {
  RemoveTraces();
}

void CInstalledHub::RemoveTraces() const {
  RemoveFolderLink(DataFolder() + L"\\Corvane");
  RemoveTree(DataFolder() + L"\\Corvane");
  DeleteProductKeys();
}

std::wstring CInstalledHub::DataFolder() const {
  const std::optional<std::wstring> folder = nhupdate::ProgramDataFolder();
  if (!folder || folder->empty()) {
    // What is deleted there must never be looked for in the drive's root.
    ADD_FAILURE() << "This system has no folder for the data of programs.";
    std::abort();
  }
  return *folder;
}

std::wstring CInstalledHub::LogFile() const {
  return DataFolder() + L"\\Corvane\\NimbaSoftware\\NimbaHub\\Log\\NHUpdateManager.log";
}

void CInstalledHub::PutManager(const std::wstring& folder, const std::string& version) const {
  ASSERT_TRUE(nhupdate::Exists(PackagedFolder()))
      << "There is no " << ToUtf8(PackagedFolder()) << "; tools/package makes it.";
  for (const wchar_t* file :
       {L"\\NHUpdateManager.exe", L"\\NSWLogDynamic64U.dll", L"\\LogConfig.ini"}) {
    CopyOver(PackagedFolder() + file, folder + file);
  }
  AppendFileBytes(folder + L"\\NHUpdateManager.exe", version);
  WriteFileBytes(folder + L"\\Config\\NHUpdateManager.Default.json", StringFile());
}

void CInstalledHub::PutProduct() const {
  WriteFileBytes(Base() + L"\\Version.txt", "[ProductVersion]\r\nVersion=1.0.0\r\n");
  WriteFileBytes(Base() + L"\\NHHub.exe", "hub 1.0.0");
  WriteFileBytes(Base() + L"\\Plugins\\Cameras\\cam.dll", "cameras 1.0.0");
  PutManager(Module(), "1.0.0");
  PutStandIn(L"updater", Updater() + L"\\Updater.exe");
  PutScript(Updater());
  WriteFileBytes(UpdaterConfig(), "[ut]");
}

void CInstalledHub::PutRelease() const {
  WriteFileBytes(Release() + L"\\Version.txt", "[ProductVersion]\r\nVersion=2.0.0\r\n");
  WriteFileBytes(Release() + L"\\NHHub.exe", "hub 2.0.0");
  WriteFileBytes(Release() + L"\\Plugins\\Cameras\\cam.dll", "cameras 2.0.0");
  WriteFileBytes(Release() + L"\\Plugins\\sound.dll", "sound 2.0.0");
  PutManager(Release() + L"\\NHUpdateManager", "2.0.0");
}

void CInstalledHub::UseLogLibrary(const std::wstring& name) const {
  const std::wstring library = Module() + L"\\NSWLogDynamic64U.dll";
  if (name.empty()) {
    EXPECT_TRUE(::DeleteFileW(library.c_str()));
  } else {
    CopyOver(TestProgramFolder() + L"\\" + name + L".dll", library);
  }
}

void CInstalledHub::StageRelease() const {
  EXPECT_TRUE(nhupdate_stand_in::CopyTree(Release(), App()));
}

void CInstalledHub::Script(const std::wstring& task, const UpdaterTask& what) const {
  WriteTask(Updater(), task, what);
}

void CInstalledHub::PutStandIn(const std::wstring& name, const std::wstring& path) {
  CopyOver(TestProgramFolder() + L"\\" + name + L".exe", path);
}

std::string CInstalledHub::WithPlaceholders(std::wstring text) const {
  nhupdate::ReplaceAll(text, Base(), L"{base}");
  nhupdate::ReplaceAll(text, Root(), L"{root}");
  nhupdate::ReplaceAll(text, Scratch(), L"{scratch}");
  nhupdate::ReplaceAll(text, DataFolder(), L"{data}");
  return ToUtf8(text);
}

}  // namespace nhupdate_test
