// A link in the source that leads back to the source. The copy walks into it like into any folder;
// it is Windows that refuses a path through too many links, which ends the copy as a failure.

#include <gtest/gtest.h>

#include <string>

#include "base/existence.h"
#include "base/strings.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

constexpr int kMostLinksOfAPath = 63;

// Makes every folder "loop" a link to the folder that it lies in.
class LoopLink {
 private:
  // The path behind all links, or nothing when there are too many of them.
  static std::wstring Resolved(const wchar_t* path) {
    std::wstring resolved = path;
    const int links = nhupdate::ReplaceAll(resolved, L"\\loop", L"");
    return links <= kMostLinksOfAPath ? resolved : std::wstring();
  }

  INTERPOSER(FindFirstFileW) find_first_{
      [this](const wchar_t* pattern, WIN32_FIND_DATAW* entry) -> HANDLE {
        const std::wstring resolved = Resolved(pattern);
        if (resolved.empty()) {
          ::SetLastError(ERROR_CANT_RESOLVE_FILENAME);
          return INVALID_HANDLE_VALUE;
        }
        return find_first_.Original()(resolved.c_str(), entry);
      }};
  INTERPOSER(CopyFileW) copy_{
      [this](const wchar_t* source, const wchar_t* target, BOOL fail_if_there) {
        return copy_.Original()(Resolved(source).c_str(), target, fail_if_there);
      }};
};

TEST(FolderLoopTest, IsCopiedAgainAndAgainUntilWindowsRefusesThePath) {
  InstalledProduct product({.log_library = L""});
  const std::wstring source = product.Root() + L"\\from";
  const std::wstring target = product.Root() + L"\\to";
  product.Start();
  CreateFolders(source + L"\\loop");
  WriteFileBytes(source + L"\\file", "x");
  std::wstring innermost = target;
  for (int link = 0; link < kMostLinksOfAPath; ++link) {
    innermost += L"\\loop";
  }
  {
    const LoopLink link;

    EXPECT_EQ(product.Manager().CopyFolder(target, source, 1, 0, 0), 0);
  }

  EXPECT_TRUE(nhupdate::Exists(innermost + L"\\file"));
  EXPECT_TRUE(nhupdate::Exists(innermost + L"\\loop"));
  EXPECT_FALSE(nhupdate::Exists(innermost + L"\\loop\\file"));
}

}  // namespace
}  // namespace nhupdate_test
