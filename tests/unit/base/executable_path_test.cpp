#include "base/executable_path.h"

#include "base/paths.h"
#include "base/strings.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

// A program that was started by that path, and what Windows knows of the names in it.
class StartedProgram {
 public:
  explicit StartedProgram(std::wstring typed) : typed_(std::move(typed)) {}

  // The long name, as it stands on the disk, by the short one.
  std::map<std::wstring, std::wstring> long_names = {{L"PROGRA~1", L"Program Files"},
                                                     {L"NIMBAH~1", L"Nimba Hub"},
                                                     {L"NHUPDA~1.EXE", L"NHUpdateManager.exe"}};
  // What a search for a name, in any letter case, finds on the disk.
  std::map<std::wstring, std::wstring> names_on_disk = {
      {L"program files", L"Program Files"},
      {L"nimba hub", L"Nimba Hub"},
      {L"nhupdatemanager.exe", L"NHUpdateManager.exe"}};

 private:
  // The path as it was typed, prefix and all. What doesn't fit is cut off.
  DWORD GiveTyped(wchar_t* buffer, DWORD units) const {
    buffer[typed_.copy(buffer, units - 1)] = L'\0';
    return typed_.size() < units ? static_cast<DWORD>(typed_.size()) : units;
  }

  // Only short names are looked up; all others stay as they were typed.
  DWORD GiveLong(const wchar_t* path, wchar_t* buffer, DWORD units) const {
    std::wstring text = path;
    const bool has_prefix = text.starts_with(L"\\\\?\\");
    if (long_names.empty() || (text.size() >= MAX_PATH && !has_prefix)) {
      return 0;
    }
    for (const auto& [short_name, long_name] : long_names) {
      ReplaceAll(text, short_name, long_name);
    }
    if (text.size() >= units) {
      return static_cast<DWORD>(text.size() + 1);
    }
    buffer[text.copy(buffer, text.size())] = L'\0';
    return static_cast<DWORD>(text.size());
  }

  HANDLE Search(const wchar_t* path, WIN32_FIND_DATAW* entry) const {
    for (const auto& [name, on_disk] : names_on_disk) {
      if (EqualsIgnoringCase(FileName(path), name)) {
        entry->cFileName[on_disk.copy(entry->cFileName, on_disk.size())] = L'\0';
        return reinterpret_cast<HANDLE>(std::uintptr_t{0x5EA4C4});
      }
    }
    return INVALID_HANDLE_VALUE;
  }

  std::wstring typed_;
  INTERPOSER(GetModuleFileNameW) module_{[this](HMODULE module, wchar_t* buffer, DWORD units) {
    EXPECT_EQ(module, nullptr);
    return GiveTyped(buffer, units);
  }};
  INTERPOSER(GetLongPathNameW) long_path_{
      [this](const wchar_t* path, wchar_t* buffer, DWORD units) {
        return GiveLong(path, buffer, units);
      }};
  INTERPOSER(FindFirstFileW) find_first_{
      [this](const wchar_t* path, WIN32_FIND_DATAW* entry) { return Search(path, entry); }};
  INTERPOSER(FindClose) find_close_{Answers(TRUE)};
};

constexpr wchar_t kInstalled[] = L"C:\\Program Files\\Nimba Hub\\NHUpdateManager.exe";

TEST(ExecutablePathTest, HasTheNamesOnTheDiskHoweverItWasTyped) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      {kInstalled, kInstalled},
      {L"\\\\?\\C:\\Program Files\\Nimba Hub\\NHUpdateManager.exe", kInstalled},
      {L"C:\\PROGRA~1\\NIMBAH~1\\NHUPDA~1.EXE", kInstalled},
      {L"\\\\?\\C:\\PROGRA~1\\Nimba Hub\\NHUPDA~1.EXE", kInstalled},
      {L"C:\\PROGRAM FILES\\nimba hub\\nhupdatemanager.EXE", kInstalled},
      {L"C:\\PROGRA~1\\NIMBA HUB\\nhupdatemanager.exe", kInstalled},
      // The drive's letter is no name on a disk, so it stays as it was typed.
      {L"c:\\program files\\x.exe", L"c:\\Program Files\\x.exe"},
      // What a search doesn't find keeps the name that was typed, unlike what is below it.
      {L"C:\\NOBODY\\nimba hub\\x.EXE", L"C:\\NOBODY\\Nimba Hub\\x.EXE"},
      {L"C:\\NHUpdateManager.exe", L"C:\\NHUpdateManager.exe"},
      {L"C:\\", L"C:\\"},
      {L"x", L"x"},
      {L"", L""},
      // Servers and shares can't be searched for.
      {L"\\\\?\\UNC\\server\\nimba hub\\NHUPDA~1.EXE",
       L"\\\\server\\nimba hub\\NHUpdateManager.exe"},
      {L"\\\\SERVER\\NIMBA HUB\\x.exe", L"\\\\SERVER\\NIMBA HUB\\x.exe"},
      {L"\\\\SERVER\\NIMBA HUB", L"\\\\SERVER\\NIMBA HUB"},
      {L"\\\\NIMBA HUB", L"\\\\NIMBA HUB"},
  };

  for (const auto& [typed, path] : cases) {
    const StartedProgram program(typed);

    const ExecutablePath executable = FindExecutable();

    EXPECT_EQ(executable.path, path);
    EXPECT_FALSE(executable.is_cut_off) << PrintToString(typed);
  }
}

// A search finds a file by its short name too.
TEST(ExecutablePathTest, TakesTheNameOnTheDiskWhateverItsLength) {
  StartedProgram program(L"C:\\PROGRA~1\\NIMBAH~1\\NIMBA HUB\\UNKNOW~1\\x.exe");
  program.long_names.clear();  // Windows doesn't tell them
  program.names_on_disk[L"progra~1"] = L"Program Files";
  program.names_on_disk[L"nimbah~1"] = L"N";

  EXPECT_EQ(FindExecutable().path, L"C:\\Program Files\\N\\Nimba Hub\\UNKNOW~1\\x.exe");
}

// A folder can be renamed between the question for the length and the one for the name.
TEST(ExecutablePathTest, KeepsTheNamesThatWereTypedWhenTheLongOnesGrowMeanwhile) {
  const std::wstring typed = L"C:\\PROGRA~1\\x.exe";
  const StartedProgram program(typed);
  INTERPOSER(GetLongPathNameW) long_path([&](const wchar_t*, wchar_t* buffer, DWORD units) {
    buffer[0] = L'?';
    return units + 1;
  });

  EXPECT_EQ(FindExecutable().path, typed);

  EXPECT_EQ(long_path.Calls(), 2);
}

TEST(ExecutablePathTest, IsCutOffBehind259Units) {
  const struct {
    const char* name;
    std::wstring beginning;  // as it was typed
    std::wstring plain;      // without a prefix and with long names
    std::size_t units;       // of the whole plain path
    bool is_cut_off;
  } cases[] = {
      {"the longest", L"C:\\", L"C:\\", 259, false},
      {"the longest, with a prefix", L"\\\\?\\C:\\", L"C:\\", 259, false},
      {"the longest of a server", L"\\\\?\\UNC\\s\\", L"\\\\s\\", 259, false},
      {"too long", L"C:\\", L"C:\\", 260, true},
      {"too long, with a prefix", L"\\\\?\\C:\\", L"C:\\", 260, true},
      {"longer than any buffer", L"C:\\", L"C:\\", 268, true},
      {"much longer", L"\\\\?\\C:\\", L"C:\\", 32'000, true},
      {"the longest by its long name", L"C:\\PROGRA~1\\", L"C:\\Program Files\\", 259, false},
      {"too long by its long name", L"C:\\PROGRA~1\\", L"C:\\Program Files\\", 260, true},
  };

  for (const auto& c : cases) {
    const std::wstring name(c.units - c.plain.size(), L'n');
    const StartedProgram program(c.beginning + name);

    const ExecutablePath executable = FindExecutable();

    EXPECT_EQ(executable.path, (c.plain + name).substr(0, 259)) << c.name;
    EXPECT_EQ(executable.is_cut_off, c.is_cut_off) << c.name;
  }
}

TEST(ExecutablePathTest, IsThatOfThisProgramWithoutFakes) {
  const ExecutablePath executable = FindExecutable();

  EXPECT_EQ(FileName(executable.path), L"base_tests.exe");
  EXPECT_FALSE(executable.is_cut_off);
}

}  // namespace
}  // namespace nhupdate_test
