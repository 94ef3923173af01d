#pragma once

// Copies of files that fail with an error, for as long as the object lives: all of them, or those
// that are chosen.

#include "tests/support/windows_basics.h"

namespace nhupdate_test {

class FailingCopy {
 public:
  using Choice = std::function<bool(const std::wstring& target)>;

  // Asks `fails` before each copy; Calls() then counts that copy already.
  explicit FailingCopy(
      DWORD error, Choice fails = [](const std::wstring&) { return true; })
      : copy_(AnswersIf(
            [fails = std::move(fails)](auto, const wchar_t* target, auto) { return fails(target); },
            FALSE, error)) {}

  // The number of copies that were tried, those that succeeded too.
  [[nodiscard]] int Calls() const { return copy_.Calls(); }

 private:
  INTERPOSER(CopyFileW) copy_;
};

}  // namespace nhupdate_test
