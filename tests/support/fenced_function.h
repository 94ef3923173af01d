#pragma once

// A function of Windows behind the fence: its arguments are looked at, then it is called.

#include <cstddef>
#include <tuple>

#include "base/windows.h"
#include "tests/support/fenced_calls.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {

// For what opens or starts nothing that is to be remembered.
struct NothingToRemember {
  template <typename... Arguments>
  void operator()(const Arguments&...) const {}
};

// A check of single arguments: each of those at these places, counted from 0, is given to kCheckOne
// with the function's name.
template <auto kCheckOne, std::size_t... kPlaces>
struct CheckArguments {
  template <typename... Arguments>
  void operator()(const char* function, const Arguments&... arguments) const {
    const std::tuple<const Arguments&...> all(arguments...);
    (kCheckOne(function, std::get<kPlaces>(all)), ...);
  }
};

// For what changes nothing outside of this process.
struct CheckNothing {
  template <typename... Arguments>
  void operator()(const char*, const Arguments&...) const {}
};

// `kCheck` gets the function's name and its arguments, and doesn't return when they reach outside.
// `kRemember` gets the result and the arguments. Neither touches the last error.
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

// The name once, so that the text and the type can't disagree.
#define NHUPDATE_FENCED(function, ...) \
  (::nhupdate_test::Fenced<#function, decltype(::function), __VA_ARGS__>::Entry())
