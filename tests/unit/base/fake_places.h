#pragma once

// Where two folders are said to be: one that is open already, and the ones that are opened while
// the object lives. An empty path can't be had.

#include <set>
#include <string>
#include <utility>

#include "base/windows.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {

class FakePlaces {
 public:
  FakePlaces(std::wstring of_the_first, std::wstring of_the_others)
      : of_the_first_(std::move(of_the_first)), of_the_others_(std::move(of_the_others)) {}
  FakePlaces(const FakePlaces&) = delete;
  FakePlaces& operator=(const FakePlaces&) = delete;

 private:
  std::wstring of_the_first_;
  std::wstring of_the_others_;
  std::set<HANDLE> others_;
  INTERPOSER(CreateFileW) create_file_{[this](const wchar_t* path, DWORD access, DWORD sharing,
                                              SECURITY_ATTRIBUTES* security, DWORD creation,
                                              DWORD flags, HANDLE model) {
    return *others_
                .insert(create_file_.Original()(path, access, sharing, security, creation, flags,
                                                model))
                .first;
  }};
  INTERPOSER(GetFinalPathNameByHandleW) final_path_{
      [this](HANDLE handle, wchar_t* buffer, DWORD units, DWORD) -> DWORD {
        const std::wstring& path = others_.contains(handle) ? of_the_others_ : of_the_first_;
        const DWORD length = static_cast<DWORD>(path.size());
        if (units <= length) {
          return path.empty() ? 0 : length + 1;
        }
        path.copy(buffer, length);
        buffer[length] = L'\0';
        return length;
      }};
};

}  // namespace nhupdate_test
