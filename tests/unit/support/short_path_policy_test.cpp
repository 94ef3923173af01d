#include "tests/support/short_path_policy.h"

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

bool CanBeOpened(const wchar_t* path) {
  return UniqueFile(::CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr))
      .IsValid();
}

bool CanBeFound(const wchar_t* path) {
  WIN32_FIND_DATAW entry = {};
  return UniqueFindHandle(::FindFirstFileW(path, &entry)).IsValid();
}

class ShortPathPolicyTest : public testing::Test {
 protected:
  // The path of a file in the scratch folder, which is that many units long.
  [[nodiscard]] std::wstring Path(std::size_t units) const {
    const std::wstring folder = scratch_.Path() + L"\\" + std::wstring(120, L'a') + L"\\";
    return folder + std::wstring(units - folder.size(), L'b');
  }

  ScratchFolder scratch_;
};

TEST_F(ShortPathPolicyTest, RefusesFilesFrom260UnitsOnUnlessTheyHaveThePrefix) {
  const std::wstring other = scratch_.Path() + L"\\other";
  const std::function<bool(const wchar_t*)> calls[] = {
      CanBeOpened,
      CanBeFound,
      [](const wchar_t* path) { return ::GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES; },
      [&](const wchar_t* path) { return ::CopyFileW(path, other.c_str(), FALSE) != FALSE; },
      [&](const wchar_t* path) { return ::CopyFileW(other.c_str(), path, FALSE) != FALSE; },
      [](const wchar_t* path) { return ::DeleteFileW(path) != FALSE; },
  };
  const struct {
    std::wstring path;
    bool is_refused;
  } cases[] = {{Path(259), false}, {Path(260), true}, {L"\\\\?\\" + Path(260), false}};
  for (const auto& [path, is_refused] : cases) {
    for (std::size_t call = 0; call < std::size(calls); ++call) {
      WriteFileBytes(other, "x");
      WriteFileBytes(Path(path.size() == 259 ? 259 : 260), "x");
      const ShortPathPolicy policy;

      EXPECT_EQ(calls[call](path.c_str()), !is_refused) << call << " " << path.size();

      EXPECT_TRUE(!is_refused || ::GetLastError() == ERROR_PATH_NOT_FOUND) << call;
      EXPECT_EQ(policy.ExtendedPaths() > 0, path.starts_with(L"\\\\?\\"));
    }
  }
}

TEST_F(ShortPathPolicyTest, RefusesFoldersFrom248UnitsOn) {
  WriteFileBytes(Path(200), "x");
  const ShortPathPolicy policy;

  EXPECT_TRUE(::CreateDirectoryW(Path(247).c_str(), nullptr));
  EXPECT_FALSE(::CreateDirectoryW(Path(248).c_str(), nullptr));
  EXPECT_EQ(::GetLastError(), DWORD{ERROR_PATH_NOT_FOUND});
}

}  // namespace
}  // namespace nhupdate_test
