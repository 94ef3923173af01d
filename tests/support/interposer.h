#pragma once

// Replaces one Windows function for the code in this test executable, for as long as the object
// lives. The macro makes the type from the function's name, for variables and members:
//
//   INTERPOSER(CopyFileW) copy([&](const wchar_t* source, ...) {...});
//
// With a library's handle before the fake, the function is replaced for the code in that library
// instead, which must stay loaded. The C++ runtime and GoogleTest in the executable meet the fake
// too, so it answers only the calls that it is meant for (a path, the n-th) and passes on the rest:
//
//   [&](const wchar_t* path, auto... rest) { return copy.Original()(path, rest...); }
//   [&](const wchar_t* path, auto...) -> std::optional<HANDLE> {...}   passes on without a value
//   [&](const wchar_t* path, auto...) { paths.push_back(path); }       always passes on
//
// Without a fake the calls are only counted.
//
// A fake that fails sets the last error as its last act (see answers.h). Objects for the same
// function must be destroyed in reverse order. The compiler may keep a function's address across a
// loop, so vary the answers by state inside one fake, not by another fake in mid-run.

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <type_traits>
#include <utility>

#include "tests/support/import_table.h"

namespace nhupdate_test {

template <typename Signature>
class Interposer;

template <typename Result, typename... Arguments>
class Interposer<Result(Arguments...)> {
 public:
  using Function = Result (*)(Arguments...);

 protected:
  template <typename Fake>
  Interposer(HMODULE module, const char* function_name, Fake fake)
      : slot_(FindImportSlot(function_name, module)),
        index_(FreeIndex()),
        original_(reinterpret_cast<Function>(*slot_)) {
    fakes_[index_] = [this, fake = std::move(fake)](Arguments... arguments) mutable -> Result {
      ++calls_;
      using Answer = std::invoke_result_t<Fake&, Arguments...>;
      if constexpr (std::is_convertible_v<Answer, Result> || std::is_void_v<Result>) {
        return fake(arguments...);
      } else if constexpr (std::is_void_v<Answer>) {
        fake(arguments...);
        return original_(arguments...);
      } else {
        const auto answer = fake(arguments...);
        return answer ? static_cast<Result>(*answer) : original_(arguments...);
      }
    };
    originals_[index_] = original_;
    WriteImportSlot(
        slot_, reinterpret_cast<void*>(ThunkAt(index_, std::make_index_sequence<kThunkCount>())));
  }

 public:
  Interposer(const Interposer&) = delete;
  Interposer& operator=(const Interposer&) = delete;

  ~Interposer() {
    WriteImportSlot(slot_, reinterpret_cast<void*>(original_));
    fakes_[index_] = nullptr;
  }

  // The function that is replaced: Windows' own, the fence or an earlier fake.
  [[nodiscard]] Function Original() const { return original_; }

  [[nodiscard]] int Calls() const { return calls_; }

 private:
  // How many functions of one signature can be replaced at the same time.
  static constexpr std::size_t kThunkCount = 8;

  template <std::size_t kIndex>
  static Result Thunk(Arguments... arguments) {
    // A caller may have kept the thunk's address for longer than the fake lived.
    return fakes_[kIndex] ? fakes_[kIndex](arguments...) : originals_[kIndex](arguments...);
  }

  template <std::size_t... kIndexes>
  static Function ThunkAt(std::size_t index, std::index_sequence<kIndexes...>) {
    constexpr std::array<Function, kThunkCount> kThunks = {&Thunk<kIndexes>...};
    return kThunks[index];
  }

  static std::size_t FreeIndex() {
    for (std::size_t index = 0; index < kThunkCount; ++index) {
      if (!fakes_[index]) {
        return index;
      }
    }
    std::fprintf(stderr, "Too many interposers of one signature.\n");
    std::abort();
  }

  static inline std::array<std::function<Result(Arguments...)>, kThunkCount> fakes_;
  static inline std::array<Function, kThunkCount> originals_ = {};

  void** slot_;
  std::size_t index_;
  Function original_;
  std::atomic<int> calls_ = 0;  // some fakes are called by several threads
};

// A function's name as a template argument.
template <std::size_t kSize>
struct FunctionName {
  consteval FunctionName(const char (&name)[kSize]) { std::copy_n(name, kSize, text.begin()); }

  std::array<char, kSize> text = {};
};

// The type that INTERPOSER stands for.
template <typename Signature, FunctionName kName>
class NamedInterposer : public Interposer<Signature> {
 public:
  // Only counts the calls, which are passed on.
  explicit NamedInterposer(HMODULE module = nullptr)
      : NamedInterposer(module,
                        [this](auto... arguments) { return this->Original()(arguments...); }) {}

  template <typename Fake>
  explicit NamedInterposer(Fake fake) : NamedInterposer(nullptr, std::move(fake)) {}

  template <typename Fake>
  NamedInterposer(HMODULE module, Fake fake)
      : Interposer<Signature>(module, kName.text.data(), std::move(fake)) {}
};

}  // namespace nhupdate_test

// The text and the type come from one name, so they can't be those of different functions.
#define INTERPOSER(function) ::nhupdate_test::NamedInterposer<decltype(::function), #function>
