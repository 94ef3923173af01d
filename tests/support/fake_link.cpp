#include "tests/support/fake_link.h"

#include <functional>
#include <utility>

#include "base/existence.h"
#include "base/paths.h"
#include "base/windows_path.h"
#include "tests/support/files.h"

namespace nhupdate_test {

namespace {

constexpr auto kDispositionInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
constexpr int kMostLinksOfAPath = 63;

bool IsBelow(const std::wstring& path, const std::wstring& folder) {
  return path.starts_with(folder) && path.size() > folder.size() &&
         (path[folder.size()] == L'\\' || path[folder.size()] == L'/');
}

}  // namespace

FakeLink::FakeLink(const std::wstring& link, const std::wstring& target, DWORD tag)
    : FakeLink(link, target, Moment(), true) {
  CreateFolders(link);
  tag_ = tag;
  is_there_ = true;
}

FakeLink::FakeLink(const std::wstring& link, const std::wstring& target, Moment is_moment,
                   bool stays_in_place)
    : link_(link),
      target_(target),
      stays_in_place_(stays_in_place),
      is_moment_(std::move(is_moment)),
      find_first_([this](const wchar_t* pattern, WIN32_FIND_DATAW* entry) {
        const std::wstring path = Followed(pattern, false);
        const HANDLE search = find_first_.Original()(path.c_str(), entry);
        if (search != INVALID_HANDLE_VALUE) {
          listed_[search] = path.substr(0, path.find_last_of(L"\\/"));
          ShowIn(listed_[search], *entry);
        }
        return search;
      }),
      find_next_([this](HANDLE search, WIN32_FIND_DATAW* entry) {
        const BOOL is_found = find_next_.Original()(search, entry);
        if (is_found) {
          ShowIn(listed_[search], *entry);
        }
        return is_found;
      }),
      create_file_([this](const wchar_t* path, DWORD access, DWORD sharing,
                          SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                          HANDLE model) {
        const std::wstring followed = Followed(path, (flags & FILE_FLAG_OPEN_REPARSE_POINT) != 0);
        const HANDLE file = create_file_.Original()(followed.c_str(), access, sharing, security,
                                                    disposition, flags, model);
        opened_itself_.erase(file);
        if (followed == link_) {
          opened_itself_.insert(file);
        }
        return file;
      }),
      information_(std::bind_front(&FakeLink::Inform, this)),
      set_information_(std::bind_front(&FakeLink::Set, this)),
      copy_([this](const wchar_t* source, const wchar_t* target_file, auto rest) {
        return copy_.Original()(Followed(source, false).c_str(),
                                Followed(target_file, false).c_str(), rest);
      }),
      create_folder_([this](const wchar_t* folder, auto rest) {
        return create_folder_.Original()(Followed(folder, true).c_str(), rest);
      }),
      delete_file_([this](const wchar_t* file) {
        return delete_file_.Original()(Followed(file, true).c_str());
      }),
      remove_folder_([this](const wchar_t* folder) {
        const std::wstring path = Followed(folder, true);
        const BOOL is_removed = remove_folder_.Original()(path.c_str());
        is_there_ = is_there_ && !(is_removed && path == link_);
        return is_removed;
      }) {}

void FakeLink::LookAtMoment(const std::wstring& path) {
  if (!is_moment_ || !is_moment_(path)) {
    return;
  }
  is_moment_ = nullptr;
  // Moving it away and making another in its place is what somebody else does: for real.
  const bool is_free = stays_in_place_ || !nhupdate::Exists(link_) ||
                       ::MoveFileW(link_.c_str(), (target_ + L" (moved)").c_str());
  is_there_ = is_free && (stays_in_place_ || create_folder_.Original()(link_.c_str(), nullptr));
}

std::wstring FakeLink::Followed(const wchar_t* path, bool itself) {
  std::wstring plain = nhupdate::WithoutExtendedPrefix(path);
  LookAtMoment(plain);
  for (int link = 0; is_there_ && IsBelow(plain, link_); ++link) {
    if (link == kMostLinksOfAPath) {
      return std::wstring();
    }
    plain = target_ + plain.substr(link_.size());
  }
  if (is_there_ && plain == link_ && !itself) {
    return target_;
  }
  return nhupdate::WithoutExtendedPrefix(path) == plain ? std::wstring(path) : plain;
}

void FakeLink::ShowIn(const std::wstring& folder, WIN32_FIND_DATAW& entry) const {
  if (is_there_ && folder == nhupdate::ParentFolder(link_) &&
      entry.cFileName == nhupdate::FileName(link_)) {
    entry.dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
    entry.dwReserved0 = tag_;
  }
}

BOOL FakeLink::Inform(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size) {
  const BOOL is_known = information_.Original()(file, kind, information, size);
  if (!is_there_ || !opened_itself_.contains(file)) {
    return is_known;
  }
  if (kind == FileBasicInfo) {
    static_cast<FILE_BASIC_INFO*>(information)->FileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
  } else if (kind == FileAttributeTagInfo) {
    *static_cast<FILE_ATTRIBUTE_TAG_INFO*>(information) = {
        FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT, tag_};
  }
  return is_known;
}

BOOL FakeLink::Set(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size) {
  const bool is_deletion = is_there_ && opened_itself_.contains(file) &&
                           (kind == FileDispositionInfo || kind == kDispositionInfoEx);
  if (is_deletion && deletion_error_ != ERROR_SUCCESS) {
    ::SetLastError(deletion_error_);
    return FALSE;
  }
  const BOOL is_set = set_information_.Original()(file, kind, information, size);
  is_there_ = is_there_ && !(is_deletion && is_set);
  return is_set;
}

}  // namespace nhupdate_test
