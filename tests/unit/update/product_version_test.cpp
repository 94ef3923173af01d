#include "update/product_version.h"

#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/version_file.h"

namespace nhupdate_test {
namespace {

using nhupdate::ReadProductVersion;

class ProductVersionTest : public testing::Test {
 protected:
  void Write(const std::string& content) {
    WriteFileBytes(scratch_.Path() + L"\\Version.txt", content);
  }

  ScratchFolder scratch_;
};

TEST_F(ProductVersionTest, IsReadFromTheProductSection) {
  struct Case {
    const char* content;
    const wchar_t* version;
  };
  const Case cases[] = {
      {"[ProductVersion]\r\nVersion=1.2.3\r\n", L"1.2.3"},
      {"[ProductVersion]\nVersion=1.2.3", L"1.2.3"},
      {"[productversion]\r\nVERSION=1.2.3\r\n", L"1.2.3"},
      {"[Other]\r\nVersion=9\r\n[ProductVersion]\r\nBuild=7\r\nVersion=1.2.3\r\n", L"1.2.3"},
      {"[Other]\r\nVersion=9\r\n", L""},
      {"[ProductVersion]\r\nVersion=\r\n", L""},
      {"[ProductVersion]\r\n", L""},
      {"Version=1.2.3\r\n", L""},
      {"", L""},
  };
  for (const Case& test_case : cases) {
    Write(test_case.content);

    const std::wstring version = ReadProductVersion(scratch_.Path());

    EXPECT_EQ(version, test_case.version) << test_case.content;
  }
}

TEST_F(ProductVersionTest, IsEmptyWithoutAFile) {
  const std::wstring version = ReadProductVersion(scratch_.Path());

  EXPECT_EQ(version, L"");
}

TEST_F(ProductVersionTest, IsCutOffAt255Characters) {
  for (const std::size_t length : {254u, 255u, 256u, 1000u}) {
    // Wine and Windows keep versions apart by file, so every length has its own folder.
    const ScratchFolder folder;
    WriteFileBytes(folder.Path() + L"\\Version.txt", VersionFile(std::string(length, '7')));

    const std::wstring version = ReadProductVersion(folder.Path());

    EXPECT_EQ(version, std::wstring(std::min<std::size_t>(length, 255), L'7'));
  }
}

}  // namespace
}  // namespace nhupdate_test
