#pragma once

// Copies of files that fail with an error, for as long as the object lives: all of them, or those
// that are chosen.

#include <functional>
#include <string>
#include <utility>

#include "base/windows.h"
#include "tests/support/answers.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {

class FailingCopy {
 public:
  using Choice = std::function<bool(const std::wstring& target)>;

  // Asks `fails` at each copy; Calls() counts the one it is asked about.
  explicit FailingCopy(
      DWORD error, Choice fails = [](const std::wstring&) { return true; })
      : copy_(AnswersIf(
            [fails = std::move(fails)](auto, const wchar_t* target, auto) { return fails(target); },
            FALSE, error)) {}

  // The copies that were tried, those that succeeded too.
  [[nodiscard]] int Calls() const { return copy_.Calls(); }

 private:
  INTERPOSER(CopyFileW) copy_;
};

}  // namespace nhupdate_test
