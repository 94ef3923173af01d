#include "tests/log_library/test_log.h"

namespace nhupdate_test {

LogPlace::LogPlace(const std::string& settings) {
  CreateFolders(Folder());
  WriteFileBytes(Settings(), "[Log]\r\n" + settings);
}

std::vector<std::string> LogPlace::Texts() const {
  return ReadTexts(CurrentFile());
}

std::vector<std::string> LogPlace::RotatedTexts(int number) const {
  return ReadTexts(RotatedFile(number));
}

std::vector<std::wstring> LogPlace::Files() const {
  return ListTree(Folder());
}

StartedLog::StartedLog(const std::string& settings) : TestLog(settings) {
  EXPECT_EQ(Start(), 0);
}

}  // namespace nhupdate_test
