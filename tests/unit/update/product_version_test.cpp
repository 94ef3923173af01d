#include "update/product_version.h"

#include "tests/support/version_file.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(ProductVersionTest, IsReadFromTheProductSectionUpTo255Characters) {
  const struct {
    std::string content;
    std::wstring version;
  } cases[] = {
      {"[ProductVersion]\r\nVersion=1.2.3\r\n", L"1.2.3"},
      {"[ProductVersion]\nVersion=1.2.3", L"1.2.3"},
      {"[productversion]\r\nVERSION=1.2.3\r\n", L"1.2.3"},
      {"[Other]\r\nVersion=9\r\n[ProductVersion]\r\nBuild=7\r\nVersion=1.2.3\r\n", L"1.2.3"},
      {"[Other]\r\nVersion=9\r\n", L""},
      {"[ProductVersion]\r\nVersion=\r\n", L""},
      {"[ProductVersion]\r\n", L""},
      {"Version=1.2.3\r\n", L""},
      {"", L""},
      {VersionFile(std::string(254, '7')), std::wstring(254, L'7')},
      {VersionFile(std::string(255, '7')), std::wstring(255, L'7')},
      {VersionFile(std::string(256, '7')), std::wstring(255, L'7')},
      {VersionFile(std::string(1000, '7')), std::wstring(255, L'7')},
  };
  for (const auto& [content, version] : cases) {
    const ScratchFolder folder;
    WriteFileBytes(folder.Path() + L"\\Version.txt", content);

    EXPECT_EQ(ReadProductVersion(folder.Path()), version) << content;
  }
}

TEST(ProductVersionTest, IsEmptyWithoutAFile) {
  const ScratchFolder folder;

  EXPECT_EQ(ReadProductVersion(folder.Path()), L"");
}

}  // namespace
}  // namespace nhupdate_test
