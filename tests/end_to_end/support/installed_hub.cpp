#include "tests/end_to_end/support/installed_hub.h"

#include <gtest/gtest.h>

#include "base/existence.h"
#include "base/known_folder.h"
#include "base/paths.h"
#include "base/strings.h"
#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/end_to_end/support/child_journal.h"
#include "tests/end_to_end/support/product_registry.h"
#include "tests/end_to_end/support/utf8_text.h"
#include "tests/support/files.h"
#include "tests/support/log_journal.h"

namespace nhupdate_test {

namespace {

constexpr char kTexts[] =
    "{\"KEY_UPDATE_TITLE\": \"Nimba Hub \u2013 Aktualisierung\",\n"
    " \"KEY_FAIL_COMMON_ERROR\": \"Das hat nicht geklappt \U0001F61E\",\n"
    " \"KEY_FAIL_NEED_STOP_NHUPDATEMANAGER\": \"Bitte NHUpdateManager schlie\u00DFen\"}\n";

void CopyOver(const std::wstring& source, const std::wstring& target) {
  CreateFolders(target.substr(0, target.rfind(L'\\')));
  EXPECT_TRUE(::CopyFileW(source.c_str(), target.c_str(), FALSE))
      << ToUtf8(source) << " => " << ToUtf8(target) << ": " << ::GetLastError();
}

void Append(const std::wstring& path, const std::string& bytes) {
  const nhupdate::UniqueFile file(::CreateFileW(path.c_str(), FILE_APPEND_DATA, 0, nullptr,
                                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  EXPECT_TRUE(
      ::WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
}

// What tools/package makes of the build that the tests belong to.
std::wstring PackagedFolder() {
  const std::wstring build = nhupdate::ParentFolder(nhupdate::ParentFolder(TestProgramFolder()));
  return build + L"\\package\\NHUpdateManager";
}

LONGLONG SizeOf(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA attributes = {};
  EXPECT_TRUE(::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &attributes));
  return (static_cast<LONGLONG>(attributes.nFileSizeHigh) << 32) | attributes.nFileSizeLow;
}

// What PutManager has put behind the program.
std::string VersionBehind(const std::wstring& program) {
  const nhupdate::UniqueFile file(::CreateFileW(
      program.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  std::string version(5, '?');
  DWORD read = 0;
  ::SetFilePointer(file.Get(), -5, nullptr, FILE_END);
  ::ReadFile(file.Get(), version.data(), static_cast<DWORD>(version.size()), &read, nullptr);
  return version;
}

void CopyTree(const std::wstring& source, const std::wstring& target) {
  CreateFolders(target);
  for (const std::wstring& entry : ListTree(source)) {
    if (entry.back() == L'\\') {
      CreateFolders(target + L"\\" + entry.substr(0, entry.size() - 1));
    } else {
      CopyOver(source + L"\\" + entry, target + L"\\" + entry);
    }
  }
}

// The stand-in takes the place of the system's tool, where every search finds it. The tool is
// deleted first: in a prefix it may be shared with other prefixes.
void ReplaceIcacls() {
  static const bool is_replaced = [] {
    const std::wstring tool = L"C:\\windows\\system32\\icacls.exe";
    ::SetFileAttributesW(tool.c_str(), FILE_ATTRIBUTE_NORMAL);
    ::DeleteFileW(tool.c_str());
    CopyOver(TestProgramFolder() + L"\\recording_icacls.exe", tool);
    // Wine takes a tool of its own unless it is told not to.
    constexpr wchar_t kNative[] = L"native";
    ::RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\Wine\\DllOverrides", L"icacls.exe", REG_SZ,
                      kNative, sizeof(kNative));
    return true;
  }();
  EXPECT_TRUE(is_replaced);
}

}  // namespace

CInstalledHub::CInstalledHub() {
  ReplaceIcacls();
  RemoveTree(DataFolder() + L"\\Corvane");
  DeleteProductKeys();
  ::SetEnvironmentVariableW(kLogJournalVariable, LogJournal().c_str());
  ::SetEnvironmentVariableW(kChildJournalVariable, ChildJournal().c_str());
  PutProduct();
  PutRelease();
}

CInstalledHub::~CInstalledHub() {
  RemoveTree(DataFolder() + L"\\Corvane");
  DeleteProductKeys();
}

std::wstring CInstalledHub::DataFolder() const {
  return nhupdate::ProgramDataFolder().value_or(L"");
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
  Append(folder + L"\\NHUpdateManager.exe", version);
  WriteFileBytes(folder + L"\\Config\\NHUpdateManager.Default.json", kTexts);
}

void CInstalledHub::PutProduct() const {
  WriteFileBytes(Base() + L"\\Version.txt", "[ProductVersion]\r\nVersion=1.0.0\r\n");
  WriteFileBytes(Base() + L"\\NHHub.exe", "hub 1.0.0");
  WriteFileBytes(Base() + L"\\Plugins\\Cameras\\cam.dll", "cameras 1.0.0");
  PutManager(Module(), "1.0.0");
  PutStandIn(L"updater", Updater() + L"\\Updater.exe");
  WriteFileBytes(Updater() + L"\\Script.ini", "\xFF\xFE");
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
  CopyTree(Release(), App());
}

void CInstalledHub::Script(const std::wstring& task, const UpdaterTask& what) const {
  ScriptIn(Updater(), task, what);
}

void CInstalledHub::ScriptIn(const std::wstring& folder, const std::wstring& task,
                             const UpdaterTask& what) {
  const std::wstring file = folder + L"\\Script.ini";
  const auto write = [&](const wchar_t* key, const std::wstring& value) {
    EXPECT_TRUE(::WritePrivateProfileStringW(task.c_str(), key, value.c_str(), file.c_str()));
  };
  write(L"ExitCode", std::to_wstring(what.exit_code));
  write(L"DelayMs", std::to_wstring(what.delay_ms));
  write(L"Stage", what.stage);
  write(L"NewUpdater", what.new_updater);
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

std::string CInstalledHub::DescribeTree(const std::wstring& folder) const {
  constexpr LONGLONG kShort = 100;
  std::string description;
  for (const std::wstring& entry : ListTree(folder)) {
    description += ToUtf8(entry);
    if (entry.back() != L'\\') {
      const std::wstring path = folder + L"\\" + entry;
      const bool is_short = SizeOf(path) <= kShort;
      if (!is_short &&
          nhupdate::EqualsIgnoringCase(nhupdate::FileName(entry), L"NHUpdateManager.exe")) {
        description += " = program " + VersionBehind(path);
      } else if (is_short && entry.find(L".ini") == std::wstring::npos &&
                 entry.find(L".txt") == std::wstring::npos) {
        description += " = " + ReadFileBytes(path);
      }
    }
    description += "\n";
  }
  return description;
}

}  // namespace nhupdate_test
