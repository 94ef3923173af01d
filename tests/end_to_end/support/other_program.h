#pragma once

// A program that somebody else runs: its memory, and the Windows functions that it imports. With
// that something can be made to happen to it from outside and without its knowledge.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/windows.h"

namespace nhupdate_test {

// The memory of another process.
class CMemory {
 public:
  explicit CMemory(HANDLE process) : process_(process) {}

  template <typename Value>
  [[nodiscard]] Value Read(std::uintptr_t address) const {
    Value value = {};
    ::ReadProcessMemory(process_, reinterpret_cast<const void*>(address), &value, sizeof(value),
                        nullptr);
    return value;
  }

  [[nodiscard]] std::vector<unsigned char> ReadBlock(std::uintptr_t address,
                                                     std::size_t size) const {
    std::vector<unsigned char> block(size);
    ::ReadProcessMemory(process_, reinterpret_cast<const void*>(address), block.data(), size,
                        nullptr);
    return block;
  }

  template <typename Value>
  bool Write(std::uintptr_t address, const Value& value) const {
    void* const place = reinterpret_cast<void*>(address);
    DWORD protection = 0;
    const bool is_written =
        ::VirtualProtectEx(process_, place, sizeof(value), PAGE_EXECUTE_READWRITE, &protection) &&
        ::WriteProcessMemory(process_, place, &value, sizeof(value), nullptr);
    ::VirtualProtectEx(process_, place, sizeof(value), protection, &protection);
    ::FlushInstructionCache(process_, place, sizeof(value));
    return is_written;
  }

  [[nodiscard]] std::uintptr_t Allocate(std::size_t size) const {
    return reinterpret_cast<std::uintptr_t>(::VirtualAllocEx(
        process_, nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
  }

 private:
  HANDLE process_;
};

// An imported function's place in the program's table, and what stands there.
struct ImportSlot {
  std::string name;
  std::uintptr_t address;
  std::uintptr_t function;
};

// Takes a process whose only thread was created suspended, lets the loader do its work and stops
// the thread at the first instruction of the program. Returns what it imports; nothing when that
// can't be done.
[[nodiscard]] std::vector<ImportSlot> LoadToEntry(HANDLE process, HANDLE thread);

}  // namespace nhupdate_test
