#pragma once

// Owners for what Windows hands out: each closes its resource exactly once, in the way that
// belongs to its kind. The kinds differ in how they are closed and in the value that means "none".
// That something can't be closed is passed over: there is nothing left to be done about it.

#include <utility>

#include "base/windows.h"

namespace nhupdate {

template <typename Traits>
class UniqueHandle {
 public:
  using Value = typename Traits::Value;

  UniqueHandle() = default;
  explicit UniqueHandle(Value value) : value_(value) {}
  UniqueHandle(UniqueHandle&& other) noexcept : value_(other.Release()) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    Reset(other.Release());
    return *this;
  }
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;
  ~UniqueHandle() { Reset(); }

  [[nodiscard]] bool IsValid() const { return value_ != Traits::None(); }
  [[nodiscard]] Value Get() const { return value_; }

  // Closes what is held and takes `value` instead.
  void Reset(Value value = Traits::None()) {
    const Value old = std::exchange(value_, value);
    if (old != Traits::None()) {
      Traits::Close(old);
    }
  }

  // Gives the value away unclosed.
  Value Release() { return std::exchange(value_, Traits::None()); }

  // For functions that hand out a value through a pointer; closes what was held before.
  [[nodiscard]] Value* Receive() {
    Reset();
    return &value_;
  }

 private:
  Value value_ = Traits::None();
};

struct KernelHandleTraits {
  using Value = HANDLE;
  static Value None() { return nullptr; }
  static void Close(Value handle) { ::CloseHandle(handle); }
};
// A process or a token.
using UniqueKernelHandle = UniqueHandle<KernelHandleTraits>;

struct FileHandleTraits {
  using Value = HANDLE;
  static Value None() { return INVALID_HANDLE_VALUE; }
  static void Close(Value handle) { ::CloseHandle(handle); }
};
using UniqueFile = UniqueHandle<FileHandleTraits>;

struct FindHandleTraits {
  using Value = HANDLE;
  static Value None() { return INVALID_HANDLE_VALUE; }
  static void Close(Value handle) { ::FindClose(handle); }
};
using UniqueFindHandle = UniqueHandle<FindHandleTraits>;

struct RegistryKeyTraits {
  using Value = HKEY;
  static Value None() { return nullptr; }
  static void Close(Value key) { ::RegCloseKey(key); }
};
using UniqueRegistryKey = UniqueHandle<RegistryKeyTraits>;

struct LibraryTraits {
  using Value = HMODULE;
  static Value None() { return nullptr; }
  static void Close(Value library) { ::FreeLibrary(library); }
};
using UniqueLibrary = UniqueHandle<LibraryTraits>;

}  // namespace nhupdate
