#include "install/process_image.h"

#include "tests/support/fake_process_table.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

using Calls = std::vector<std::wstring>;

TEST(ProcessImageTest, LeavesBothTextsAloneWhenTheProcessCannotBeOpened) {
  const FakeProcessTable table({{.id = 7, .image_path = L"C:\\a.exe", .can_be_read = false}});
  std::wstring name = L"old name";
  std::wstring path = L"old path";

  EXPECT_FALSE(GetProcessImageName(7, name, path));

  EXPECT_EQ(name, L"old name");
  EXPECT_EQ(path, L"old path");
  EXPECT_THAT(table.Calls(), ElementsAre(L"Open 0x410 0 7"));
}

// Each is asked only when those before it had no answer. The base name is asked for whenever there
// is no image path.
Calls QuestionsAbout(const FakeProcess& process) {
  Calls questions = {L"Open 0x410 0 7", L"QueryImageName 0 260"};
  if (process.image_path.empty()) {
    questions.push_back(L"ModuleFileName 0 260");
    if (process.module_path.empty()) {
      questions.push_back(L"DeviceFileName 260");
    }
    questions.push_back(L"BaseName 0 260");
  }
  questions.push_back(L"Close 7");
  return questions;
}

TEST(ProcessImageTest, TakesNameAndPathFromTheFirstAnswer) {
  struct Case {
    const char* situation;
    FakeProcess process;
    std::wstring name;
    std::wstring path;
  };
  const std::wstring longest_path = L"C:\\" + std::wstring(251, L'd') + L"\\a.exe";  // 260 units
  const std::wstring longest_name(260, L'n');
  const Case cases[] = {
      {"image path", {.image_path = L"C:\\T\\a.exe"}, L"a.exe", L"C:\\T\\a.exe"},
      {"image path without a backslash", {.image_path = L"a.exe"}, L"a.exe", L"a.exe"},
      {"image path with a slash", {.image_path = L"C:\\T/a.exe"}, L"T/a.exe", L"C:\\T/a.exe"},
      {"image path and base name",
       {.image_path = L"C:\\a.exe", .base_name = L"b.exe"},
       L"a.exe",
       L"C:\\a.exe"},
      {"module path and base name",
       {.module_path = L"C:\\a.exe", .base_name = L"b.exe"},
       L"b.exe",
       L"C:\\a.exe"},
      {"module path alone", {.module_path = L"C:\\T\\a.exe"}, L"a.exe", L"C:\\T\\a.exe"},
      {"device path and base name",
       {.device_path = L"\\Device\\a.exe", .base_name = L"b.exe"},
       L"b.exe",
       L"\\Device\\a.exe"},
      {"device path alone", {.device_path = L"\\Device\\V1\\a"}, L"a", L"\\Device\\V1\\a"},
      {"base name alone", {.base_name = L"b.exe"}, L"b.exe", L""},
      {"nothing at all", {}, L"", L""},
      {"longest image path", {.image_path = longest_path}, L"a.exe", longest_path},
      {"longest module path and base name",
       {.module_path = longest_path, .base_name = longest_name},
       longest_name,
       longest_path},
      {"longest device path", {.device_path = longest_path}, L"a.exe", longest_path},
  };

  for (const Case& c : cases) {
    SCOPED_TRACE(c.situation);
    FakeProcess process = c.process;
    process.id = 7;
    const FakeProcessTable table({process});
    std::wstring name = L"old name";
    std::wstring path = L"old path";

    EXPECT_TRUE(GetProcessImageName(7, name, path));

    EXPECT_EQ(name, c.name);
    EXPECT_EQ(path, c.path);
    EXPECT_EQ(table.Calls(), QuestionsAbout(process));
  }
}

TEST(ProcessImageTest, FindsThisProgramsOwnName) {
  std::wstring name;
  std::wstring path;

  EXPECT_TRUE(GetProcessImageName(::GetCurrentProcessId(), name, path));

  EXPECT_EQ(name, L"install_tests.exe");
}

}  // namespace
}  // namespace nhupdate_test
