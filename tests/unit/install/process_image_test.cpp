#include "install/process_image.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "tests/support/fake_process_table.h"

namespace nhupdate_test {
namespace {

using nhupdate::GetProcessImageName;
using testing::ElementsAre;

TEST(ProcessImageTest, LeavesBothTextsAloneWhenTheProcessCannotBeOpened) {
  const FakeProcessTable table({{.id = 7, .image_path = L"C:\\a.exe", .can_be_read = false}});
  std::wstring name = L"old name";
  std::wstring path = L"old path";

  EXPECT_FALSE(GetProcessImageName(7, name, path));

  EXPECT_EQ(name, L"old name");
  EXPECT_EQ(path, L"old path");
  EXPECT_THAT(table.Calls(), ElementsAre(L"Open 0x410 0 7"));
}

struct ImageNameCase {
  const char* situation;
  FakeProcess process;
  std::wstring name;
  std::wstring path;
};

// Each only when those before it had no answer; the base name goes with the second and third.
std::vector<std::wstring> QuestionsAbout(const FakeProcess& process) {
  std::vector<std::wstring> questions = {L"Open 0x410 0 7", L"QueryImageName 0 260"};
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

std::ostream& operator<<(std::ostream& stream, const ImageNameCase& example) {
  return stream << example.situation;
}

TEST(ProcessImageTest, TakesNameAndPathFromTheFirstAnswer) {
  const std::wstring longest_path = L"C:\\" + std::wstring(251, L'd') + L"\\a.exe";  // 260 units
  const std::wstring longest_name(260, L'n');
  const ImageNameCase kCases[] = {
      {"image path", {.id = 7, .image_path = L"C:\\Tools\\a.exe"}, L"a.exe", L"C:\\Tools\\a.exe"},
      {"image path without a backslash", {.id = 7, .image_path = L"a.exe"}, L"a.exe", L"a.exe"},
      {"a forward slash separates nothing",
       {.id = 7, .image_path = L"C:\\Tools/a.exe"},
       L"Tools/a.exe",
       L"C:\\Tools/a.exe"},
      {"the image path goes before the base name",
       {.id = 7, .image_path = L"C:\\a.exe", .base_name = L"b.exe"},
       L"a.exe",
       L"C:\\a.exe"},
      {"module path and base name",
       {.id = 7, .image_path = L"", .module_path = L"C:\\a.exe", .base_name = L"b.exe"},
       L"b.exe",
       L"C:\\a.exe"},
      {"module path alone",
       {.id = 7, .image_path = L"", .module_path = L"C:\\Tools\\a.exe"},
       L"a.exe",
       L"C:\\Tools\\a.exe"},
      {"device path and base name",
       {.id = 7, .image_path = L"", .device_path = L"\\Device\\a.exe", .base_name = L"b.exe"},
       L"b.exe",
       L"\\Device\\a.exe"},
      {"device path alone",
       {.id = 7, .image_path = L"", .device_path = L"\\Device\\Volume1\\a.exe"},
       L"a.exe",
       L"\\Device\\Volume1\\a.exe"},
      {"base name alone", {.id = 7, .image_path = L"", .base_name = L"b.exe"}, L"b.exe", L""},
      {"nothing at all", {.id = 7, .image_path = L""}, L"", L""},
      {"longest image path", {.id = 7, .image_path = longest_path}, L"a.exe", longest_path},
      {"longest module path and base name",
       {.id = 7, .image_path = L"", .module_path = longest_path, .base_name = longest_name},
       longest_name,
       longest_path},
      {"longest device path",
       {.id = 7, .image_path = L"", .device_path = longest_path},
       L"a.exe",
       longest_path},
  };

  for (const ImageNameCase& example : kCases) {
    const FakeProcessTable table({example.process});
    std::wstring name = L"old name";
    std::wstring path = L"old path";

    EXPECT_TRUE(GetProcessImageName(7, name, path)) << example;

    EXPECT_EQ(name, example.name) << example;
    EXPECT_EQ(path, example.path) << example;
    EXPECT_EQ(table.Calls(), QuestionsAbout(example.process)) << example;
    EXPECT_EQ(table.OpenHandles(), 0) << example;
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
