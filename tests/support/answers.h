#pragma once

// The plainest fakes for INTERPOSER: they answer the same whatever they are asked, always or for
// chosen calls. The types of the parameters needn't be written out for that:
//
//   INTERPOSER(CreateFileW) open(Answers(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));
//   INTERPOSER(DeleteFileW) erase(AnswersIf([&](const wchar_t* path) { return path == file; },
//                                           FALSE, ERROR_SHARING_VIOLATION));
//   INTERPOSER(CreateFileW) open(AnswersFor(file, INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));
//   INTERPOSER(CopyFileW) copy(AnswersCall(2, FALSE, ERROR_DISK_FULL));

#include <optional>
#include <string>
#include <utility>

#include "base/windows.h"

namespace nhupdate_test {

// Sets the last error too.
template <typename Result>
[[nodiscard]] auto Answers(Result result, DWORD error = ERROR_SUCCESS) {
  return [result, error](const auto&...) {
    ::SetLastError(error);
    return result;
  };
}

// The same for the calls whose arguments the condition chooses. The others are passed on.
template <typename Condition, typename Result>
[[nodiscard]] auto AnswersIf(Condition condition, Result result, DWORD error = ERROR_SUCCESS) {
  return [condition = std::move(condition), result,
          error](const auto&... arguments) mutable -> std::optional<Result> {
    if (!condition(arguments...)) {
      return std::nullopt;
    }
    ::SetLastError(error);
    return result;
  };
}

// The same for the calls whose first argument is this path.
template <typename Result>
[[nodiscard]] auto AnswersFor(std::wstring path, Result result, DWORD error = ERROR_SUCCESS) {
  return AnswersIf(
      [path = std::move(path)](const wchar_t* first, const auto&...) { return first == path; },
      result, error);
}

// The same for one call alone, counted from 1.
template <typename Result>
[[nodiscard]] auto AnswersCall(int number, Result result, DWORD error = ERROR_SUCCESS) {
  return AnswersIf([number, calls = 0](const auto&...) mutable { return ++calls == number; },
                   result, error);
}

}  // namespace nhupdate_test
