#pragma once

// One function of Windows that is counted and that can fail. Its calls are described by their text
// arguments and by what their handles were opened for.

#include <string>
#include <type_traits>
#include <utility>

#include "base/windows.h"
#include "tests/support/interposer.h"
#include "tests/unit/faults/call_ledger.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate_test {

namespace faulty_function_detail {

inline void Append(std::wstring& detail, const std::wstring& part) {
  if (!part.empty()) {
    detail += detail.empty() ? part : L" | " + part;
  }
}

template <typename Argument>
void Describe(std::wstring& detail, const CallLedger& ledger, const Argument& argument) {
  if constexpr (std::is_same_v<Argument, const wchar_t*>) {
    Append(detail, argument == nullptr ? L"" : argument);
  } else if constexpr (std::is_same_v<Argument, const char*>) {
    const std::string text = argument == nullptr ? "" : argument;
    Append(detail, std::wstring(text.begin(), text.end()));
  } else if constexpr (std::is_same_v<Argument, SHELLEXECUTEINFOW*>) {
    Append(detail, argument->lpFile);
    Append(detail, argument->lpParameters);
  } else if constexpr (std::is_same_v<Argument, HANDLE> || std::is_same_v<Argument, HKEY>) {
    Append(detail, ledger.DetailOf(argument));
  }
}

template <typename... Arguments>
std::wstring DetailOfCall(const CallLedger& ledger, const Arguments&... arguments) {
  std::wstring detail;
  (Describe(detail, ledger, arguments), ...);
  return detail;
}

// OpenProcess: the one function whose numbers tell its calls apart.
inline std::wstring DetailOfCall(const CallLedger&, DWORD access, BOOL, DWORD process_id) {
  const bool is_own = process_id == ::GetCurrentProcessId();
  return L"process " + (is_own ? L"{pid}" : std::to_wstring(process_id)) +
         ((access & PROCESS_TERMINATE) != 0 ? L" to end it" : L" to read it");
}

// FindFirstFileW: with a wildcard it lists a folder, without one it asks for a name.
inline std::wstring DetailOfCall(const CallLedger&, const wchar_t* pattern, WIN32_FIND_DATAW*) {
  const std::wstring path = pattern;
  return path.find(L'*') == std::wstring::npos ? path + L" (its name)" : path;
}

// MultiByteToWideChar: its text is bytes without a terminator.
inline std::wstring DetailOfCall(const CallLedger&, UINT, DWORD, const char*, int, wchar_t*,
                                 int units) {
  return units == 0 ? L"to measure it" : L"to convert it";
}

// A call that opens nothing.
struct OpensNothing {
  template <typename... Arguments>
  void operator()(CallLedger&, const std::wstring&, const Arguments&...) const {}
};

}  // namespace faulty_function_detail

// Takes an INTERPOSER.
template <typename Function>
class FaultyFunction;

template <typename Result, typename... Arguments, FunctionName kName>
class FaultyFunction<NamedInterposer<Result(Arguments...), kName>> {
 public:
  // `fail` gets the error and the arguments, sets the last error where that is how the function
  // reports it, and returns the result. `note` gets the result and the arguments of a call that
  // was passed on, and tells the ledger what it opened.
  template <typename Fail, typename Note = faulty_function_detail::OpensNothing>
  FaultyFunction(CallLedger& ledger, Fail fail, Note note = {})
      : function_([this, &ledger, fail, note](Arguments... arguments) -> Result {
          const std::wstring detail = faulty_function_detail::DetailOfCall(ledger, arguments...);
          if (ledger.CountAndDecide(kName.text.data(), detail)) {
            return static_cast<Result>(fail(ledger.Error(), arguments...));
          }
          const Result result = function_.Original()(arguments...);
          const DWORD error = ::GetLastError();
          note(ledger, detail, result, arguments...);
          ::SetLastError(error);
          return result;
        }) {}

 private:
  NamedInterposer<Result(Arguments...), kName> function_;
};

// Tells the ledger of what is closed; it never fails.
template <typename Function>
class CountedClose;

template <typename Result, typename Resource, FunctionName kName>
class CountedClose<NamedInterposer<Result(Resource), kName>> {
 public:
  CountedClose(CallLedger& ledger, ResourceKind kind)
      : function_([this, &ledger, kind](Resource resource) {
          ledger.Closed(kind, resource);
          return function_.Original()(resource);
        }) {}

 private:
  NamedInterposer<Result(Resource), kName> function_;
};

}  // namespace nhupdate_test
