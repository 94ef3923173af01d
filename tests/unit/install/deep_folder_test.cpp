// Folders are walked recursively, so the stack has to last for the deepest nesting that a path can
// name: 32,767 characters, with two for each level.

#include "base/windows_path.h"
#include "install/empty_folders.h"
#include "install/folder_copy.h"
#include "install/folder_removal.h"
#include "tests/unit/install/install_test.h"

namespace nhupdate_test {
namespace {

constexpr std::size_t kDeepestLevels = 32767 / 2;

std::size_t StackReserve() {
  const auto image = reinterpret_cast<std::uintptr_t>(::GetModuleHandleW(nullptr));
  const auto* dos_header = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(
      image + static_cast<std::uintptr_t>(dos_header->e_lfanew));
  return headers->OptionalHeader.SizeOfStackReserve;
}

// Fake folders, nested as deep as wanted, each of which holds just the next one. Measures how far
// the stack grows on the way to the innermost.
class EndlessFolder {
 public:
  explicit EndlessFolder(std::size_t levels) : levels_(levels) {}

  [[nodiscard]] std::size_t StackBytesPerLevel() const {
    return (first_address_ - lowest_address_) / levels_;
  }
  [[nodiscard]] std::size_t Listings() const { return listings_; }

 private:
  static constexpr std::uintptr_t kSearch = 0x7B000000;
  static constexpr std::uintptr_t kFirstFile = 0x7C000000;

  // The place of the handle among the opened folders; as many as there are when it is not ours.
  [[nodiscard]] std::size_t PlaceOf(HANDLE handle) const {
    const std::uintptr_t value = reinterpret_cast<std::uintptr_t>(handle);
    const bool is_ours = value >= kFirstFile && value < kFirstFile + opened_.size();
    return is_ours ? value - kFirstFile : opened_.size();
  }

  const std::size_t levels_;
  std::size_t listings_ = 0;
  std::uintptr_t first_address_ = 0;
  std::uintptr_t lowest_address_ = 0;
  std::vector<std::wstring> opened_;

  INTERPOSER(FindFirstFileW) find_first_{[this](const wchar_t*, WIN32_FIND_DATAW* entry) -> HANDLE {
    // Volatile, so that the compiler really puts it on the stack.
    volatile char here = 0;
    const auto address = reinterpret_cast<std::uintptr_t>(&here);
    if (listings_ == 0) {
      first_address_ = address;
      lowest_address_ = address;
    }
    lowest_address_ = std::min(lowest_address_, address);
    if (listings_++ == levels_) {
      ::SetLastError(ERROR_NO_MORE_FILES);
      return INVALID_HANDLE_VALUE;
    }
    *entry = {};
    entry->dwFileAttributes = FILE_ATTRIBUTE_DIRECTORY;
    entry->cFileName[0] = L'd';
    return reinterpret_cast<HANDLE>(kSearch);
  }};
  INTERPOSER(FindNextFileW) find_next_{Answers(FALSE, ERROR_NO_MORE_FILES)};
  INTERPOSER(FindClose) find_close_{Answers(TRUE)};
  INTERPOSER(CreateDirectoryW) create_{Answers(TRUE)};
  INTERPOSER(CreateFileW) create_file_{[this](const wchar_t* path, auto...) {
    std::wstring plain = WithoutExtendedPrefix(path);
    opened_.push_back(plain.ends_with(L'\\') ? plain.substr(0, plain.size() - 1) : plain);
    return reinterpret_cast<HANDLE>(kFirstFile + opened_.size() - 1);
  }};
  INTERPOSER(GetFileInformationByHandleEx) information_{
      [](HANDLE, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD) -> BOOL {
        EXPECT_EQ(kind, FileBasicInfo);
        static_cast<FILE_BASIC_INFO*>(information)->FileAttributes = FILE_ATTRIBUTE_DIRECTORY;
        return TRUE;
      }};
  INTERPOSER(SetFileInformationByHandle) set_information_{Answers(TRUE)};
  INTERPOSER(GetFinalPathNameByHandleW) final_path_{
      [this](HANDLE handle, wchar_t* buffer, DWORD units, DWORD) -> DWORD {
        const std::wstring& path = opened_.at(PlaceOf(handle));
        if (path.size() >= units) {
          return static_cast<DWORD>(path.size() + 1);
        }
        path.copy(buffer, path.size());
        buffer[path.size()] = L'\0';
        return static_cast<DWORD>(path.size());
      }};
  INTERPOSER(CloseHandle) close_{[this](HANDLE handle) -> BOOL {
    return PlaceOf(handle) < opened_.size() || close_.Original()(handle);
  }};
};

class DeepFolderTest : public InstallTest {
 protected:
  static void ExpectStackLastsForTheDeepest(const EndlessFolder& folder) {
    EXPECT_EQ(folder.Listings(), kLevels + 1);
    EXPECT_GT(folder.StackBytesPerLevel(), 0u);
    EXPECT_LT(folder.StackBytesPerLevel() * kDeepestLevels, StackReserve() / 2);
  }

  bool Copy(const std::wstring& target, const std::wstring& source) {
    CFolderCopy copy(folders_, log_.Log(), failed_path_);
    return copy.Copy(target, source, {.log_details = false});  // a record each would be long
  }

  // Not the deepest nesting, since the paths on the heap grow with the square of the depth.
  static constexpr std::size_t kLevels = 2000;

  std::wstring failed_path_;
  std::vector<std::wstring> found_;
};

TEST_F(DeepFolderTest, CanBeCopied) {
  const EndlessFolder folder(kLevels);

  EXPECT_TRUE(Copy(L"C:\\to", L"C:\\from"));

  ExpectStackLastsForTheDeepest(folder);
}

TEST_F(DeepFolderTest, CanBeScanned) {
  const EndlessFolder folder(kLevels);

  EXPECT_TRUE(CollectEmptyFolders(L"C:\\top", found_, log_.Log()));

  ExpectStackLastsForTheDeepest(folder);
}

TEST_F(DeepFolderTest, CanBeDeleted) {
  const EndlessFolder folder(kLevels);

  EXPECT_TRUE(DeleteFolderTree(L"C:\\top", L""));

  ExpectStackLastsForTheDeepest(folder);
}

// No deeper than Wine can tell the final path of a folder, which has 260 characters at most there.
TEST_F(DeepFolderTest, IsReallyCopiedScannedAndDeleted) {
  std::wstring depth;
  for (int level = 0; level < 60; ++level) {
    depth += L"\\d";
  }
  CreateFolders(root_ + L"\\from" + depth);

  EXPECT_TRUE(Copy(root_ + L"\\to", root_ + L"\\from"));
  EXPECT_TRUE(Exists(root_ + L"\\to" + depth));
  EXPECT_TRUE(CollectEmptyFolders(root_ + L"\\to", found_, log_.Log()));
  EXPECT_TRUE(DeleteFolderTree(root_ + L"\\to", root_));
  EXPECT_FALSE(Exists(root_ + L"\\to"));
}

}  // namespace
}  // namespace nhupdate_test
