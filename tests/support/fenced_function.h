#pragma once

// A function of Windows behind the fence: its arguments are looked at, then it is called.

#include <cstddef>
#include <tuple>

#include "base/windows.h"
#include "tests/support/fenced_calls.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {

struct NothingToRemember {
  template <typename... Arguments>
  void operator()(const Arguments&...) const {}
};

// Calls kCheckOne with the function's name for each of the arguments at kPlaces, counted from 0.
template <auto kCheckOne, std::size_t... kPlaces>
struct CheckArguments {
  template <typename... Arguments>
  void operator()(const char* function, const Arguments&... arguments) const {
    const std::tuple<const Arguments&...> all(arguments...);
    (kCheckOne(function, std::get<kPlaces>(all)), ...);
  }
};

// For calls that change nothing outside of this process.
struct CheckNothing {
  template <typename... Arguments>
  void operator()(const char*, const Arguments&...) const {}
};

// `kCheck` gets the function's name and its arguments, and doesn't return when they reach outside.
// `kRemember` gets the result and the arguments. Either may change the last error: it is put back.
template <FunctionName kName, typename Signature, auto kCheck, auto kRemember = NothingToRemember()>
struct Fenced;

template <FunctionName kName, typename Result, typename... Arguments, auto kCheck, auto kRemember>
struct Fenced<kName, Result(Arguments...), kCheck, kRemember> {
  static inline void* real = nullptr;

  static Result Call(Arguments... arguments) {
    const DWORD error_before = ::GetLastError();
    kCheck(kName.text.data(), arguments...);
    ::SetLastError(error_before);
    const Result result = reinterpret_cast<Result (*)(Arguments...)>(real)(arguments...);
    const DWORD error = ::GetLastError();
    kRemember(result, arguments...);
    ::SetLastError(error);
    return result;
  }

  static FencedFunction Entry() {
    return {kName.text.data(), reinterpret_cast<void*>(&Call), &real};
  }
};

}  // namespace nhupdate_test

// The text and the type come from one name, so they can't be those of different functions.
#define NHUPDATE_FENCED(function, ...) \
  (::nhupdate_test::Fenced<#function, decltype(::function), __VA_ARGS__>::Entry())
