#pragma once

// An empty registry key that stands for HKEY_LOCAL_MACHINE in this process as long as the object
// lives.

#include <string>

#include "base/unique_handle.h"

namespace nhupdate_test {

class ScratchLocalMachine {
 public:
  ScratchLocalMachine();
  ~ScratchLocalMachine();
  ScratchLocalMachine(const ScratchLocalMachine&) = delete;
  ScratchLocalMachine& operator=(const ScratchLocalMachine&) = delete;

  // True as long as nothing was written.
  [[nodiscard]] bool IsEmpty() const;

  // The text of the value; "(none)" when there is no such text.
  [[nodiscard]] std::wstring Text(const std::wstring& key, const std::wstring& name) const;

 private:
  std::wstring path_;
  nhupdate::UniqueRegistryKey key_;
};

}  // namespace nhupdate_test
