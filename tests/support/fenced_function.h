#pragma once

// A function of Windows behind the fence: its arguments are looked at, then it is called.

#include <algorithm>
#include <cstddef>

#include "base/windows.h"
#include "tests/support/fenced_calls.h"

namespace nhupdate_test {

template <std::size_t kSize>
struct FencedName {
  consteval FencedName(const char (&name)[kSize]) { std::copy_n(name, kSize, text); }
  char text[kSize] = {};
};

// For what opens or starts nothing that is to be remembered.
struct NothingToRemember {
  template <typename... Arguments>
  void operator()(const Arguments&...) const {}
};

// `kCheck` gets the function's name and its arguments, and doesn't return when they reach outside.
// `kRemember` gets the result and the arguments. Neither touches the last error.
template <FencedName kName, typename Signature, auto kCheck, auto kRemember = NothingToRemember()>
struct Fenced;

template <FencedName kName, typename Result, typename... Arguments, auto kCheck, auto kRemember>
struct Fenced<kName, Result(Arguments...), kCheck, kRemember> {
  static inline void* real = nullptr;

  static Result Call(Arguments... arguments) {
    const DWORD error_before = ::GetLastError();
    kCheck(kName.text, arguments...);
    ::SetLastError(error_before);
    const Result result = reinterpret_cast<Result (*)(Arguments...)>(real)(arguments...);
    const DWORD error = ::GetLastError();
    kRemember(result, arguments...);
    ::SetLastError(error);
    return result;
  }

  static FencedFunction Entry() { return {kName.text, reinterpret_cast<void*>(&Call), &real}; }
};

}  // namespace nhupdate_test

// The name once, so that the text and the type can't disagree.
#define NHUPDATE_FENCED(function, ...) \
  (::nhupdate_test::Fenced<#function, decltype(::function), __VA_ARGS__>::Entry())
