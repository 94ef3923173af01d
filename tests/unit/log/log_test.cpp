#include "log/log.h"

#include "log/log_center.h"
#include "tests/support/basics.h"
#include "tests/support/fake_log_library.h"

namespace nhupdate_test {
namespace {

TEST(LogTest, PutsItsTagOnRecordsOfEachLevel) {
  std::vector<std::wstring> records;
  FakeLogLibrary library;
  library.on_event = [&](const std::string& event, const std::wstring& details) {
    if (event == "WriteLog") {
      records.push_back(details);
    }
  };
  CNSWLogCenter center;
  ASSERT_EQ(center.StartLog(L"library", L"", L""), 1);
  const CLog log(center);
  const std::wstring path = L"C:\\100%s %d\\" + std::wstring(5000, L'x');

  log.Write(LogLevel::kInformation, L"Copy \"%s\" : %d%%", path, 7);
  log.Write(LogLevel::kWarning, L"");
  log.Write(LogLevel::kError, L"two\nlines");
  log.WriteText(LogLevel::kError, path);

  EXPECT_THAT(records,
              ElementsAre(L"2|NHUpdateManager|Copy \"" + path + L"\" : 7%", L"3|NHUpdateManager|",
                          L"4|NHUpdateManager|two\nlines", L"4|NHUpdateManager|" + path));
}

}  // namespace
}  // namespace nhupdate_test
