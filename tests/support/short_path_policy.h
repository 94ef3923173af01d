#pragma once

// Windows as it is unless an administrator has allowed long paths: for as long as the object lives
// a path of MAX_PATH units or more without the prefix of the extended-length form is taken for one
// that isn't there.

#include "tests/support/windows_basics.h"

namespace nhupdate_test {

class ShortPathPolicy {
 public:
  ShortPathPolicy() {
    // An executable that copies nothing doesn't import the function.
    if (FindImportSlotIfAny("CopyFileW") != nullptr) {
      copy_.emplace([this](const wchar_t* source, const wchar_t* target, auto rest) {
        return Refuses(source) || Refuses(target) ? FALSE : copy_->Original()(source, target, rest);
      });
    }
  }

  // How many paths had the prefix.
  [[nodiscard]] int ExtendedPaths() const { return extended_paths_; }

 private:
  // The path of a new folder must leave room for a file name of 8.3 units in it.
  static constexpr std::size_t kFolderLimit = MAX_PATH - 12;

  bool Refuses(std::wstring_view path, std::size_t limit = MAX_PATH) {
    const bool is_extended = path.starts_with(L"\\\\?\\");
    extended_paths_ += is_extended ? 1 : 0;
    const bool is_refused = path.size() >= limit && !is_extended;
    if (is_refused) {
      ::SetLastError(ERROR_PATH_NOT_FOUND);
    }
    return is_refused;
  }

  // A fake that returns the result for a path that is refused, and passes other calls on.
  template <typename Result>
  struct Refusing {
    ShortPathPolicy* policy;
    Result result;
    std::size_t limit = MAX_PATH;

    std::optional<Result> operator()(const wchar_t* path, const auto&...) const {
      return policy->Refuses(path, limit) ? std::optional(result) : std::nullopt;
    }
  };

  int extended_paths_ = 0;
  INTERPOSER(CreateFileW) create_file_{Refusing<HANDLE>{this, INVALID_HANDLE_VALUE}};
  INTERPOSER(FindFirstFileW) find_first_{Refusing<HANDLE>{this, INVALID_HANDLE_VALUE}};
  INTERPOSER(GetFileAttributesW) attributes_{Refusing<DWORD>{this, INVALID_FILE_ATTRIBUTES}};
  INTERPOSER(DeleteFileW) delete_file_{Refusing<BOOL>{this, FALSE}};
  INTERPOSER(CreateDirectoryW) create_folder_{Refusing<BOOL>{this, FALSE, kFolderLimit}};
  std::optional<INTERPOSER(CopyFileW)> copy_;
};

}  // namespace nhupdate_test
