#pragma once

// A log of a test's own: its folder and settings file, and the library that writes it. What nearly
// all tests of the library need besides comes with it.

#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {

// A log folder and a settings file in a scratch folder.
class LogPlace {
 public:
  // `settings` are the lines below [Log].
  explicit LogPlace(const std::string& settings = "Level=1\n") {
    CreateFolders(Folder());
    WriteFileBytes(Settings(), "[Log]\r\n" + settings);
  }

  [[nodiscard]] std::wstring Folder() const { return scratch_.Path() + L"\\Log"; }
  [[nodiscard]] std::wstring Settings() const { return scratch_.Path() + L"\\LogConfig.ini"; }
  [[nodiscard]] std::wstring Outside(const std::wstring& name) const {
    return scratch_.Path() + L"\\" + name;
  }
  [[nodiscard]] std::wstring CurrentFile() const { return Folder() + L"\\NHUpdateManager.log"; }
  [[nodiscard]] std::wstring RotatedFile(int number) const {
    return Folder() + L"\\NHUpdateManager." + std::to_wstring(number) + L".log";
  }

  // The texts of a file's records but for the library's own.
  [[nodiscard]] std::vector<std::string> Texts() const { return ReadTexts(CurrentFile()); }
  [[nodiscard]] std::vector<std::string> RotatedTexts(int number) const {
    return ReadTexts(RotatedFile(number));
  }

  // What is in the log folder.
  [[nodiscard]] std::vector<std::wstring> Files() const { return ListTree(Folder()); }

 private:
  ScratchFolder scratch_;
};

// A place, and the library, which has not been started.
class TestLog : public LogPlace, public LoadedLogLibrary {
 public:
  using LogPlace::LogPlace;

  using LoadedLogLibrary::Start;
  int Start() { return Start(Settings(), Folder()); }
};

// A test failure when it can't be started.
class StartedLog : public TestLog {
 public:
  explicit StartedLog(const std::string& settings = "Level=1\n") : TestLog(settings) {
    EXPECT_EQ(Start(), 0);
  }
};

// The smallest size of a file, and a record that fills it, as it is written and as it is read.
inline constexpr char kSmallFiles[] = "MaxFileSizeKB=16\n";
inline const std::wstring kFullFile(16 * 1024, L'x');
inline const std::string kFullFileText(16 * 1024, 'x');

}  // namespace nhupdate_test
