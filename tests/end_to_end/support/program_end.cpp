#include "tests/end_to_end/support/program_end.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>
#include <vector>

#include <winternl.h>  // needs <windows.h> first

namespace nhupdate_test {

namespace {

// What is deleted, but for a few files, is deleted by SetFileInformationByHandle.
constexpr std::string_view kChanges[] = {
    "CopyFileW",      "CreateDirectoryW",           "DeleteFileW",     "RegCreateKeyExW",
    "RegSetValueExW", "SetFileInformationByHandle", "ShellExecuteExW", "ShellExecuteW",
};

bool IsChange(std::string_view name) {
  return std::find(std::begin(kChanges), std::end(kChanges), name) != std::end(kChanges);
}

// The memory of the other process.
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

std::uintptr_t ImageOf(HANDLE process, const CMemory& memory) {
  using Query = NTSTATUS(NTAPI*)(HANDLE, PROCESSINFOCLASS, void*, ULONG, ULONG*);
  const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(
      ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "NtQueryInformationProcess")));
  PROCESS_BASIC_INFORMATION information = {};
  query(process, ProcessBasicInformation, &information, sizeof(information), nullptr);
  constexpr std::uintptr_t kImageBaseOffset = 0x10;
  return memory.Read<std::uintptr_t>(reinterpret_cast<std::uintptr_t>(information.PebBaseAddress) +
                                     kImageBaseOffset);
}

// Lets the loader do its work and stops the thread at the first instruction of the program.
bool RunToEntry(HANDLE thread, const CMemory& memory, std::uintptr_t entry) {
  constexpr std::array<unsigned char, 2> kJumpToItself = {0xEB, 0xFE};
  const auto original = memory.Read<std::array<unsigned char, 2>>(entry);
  if (!memory.Write(entry, kJumpToItself)) {
    return false;
  }
  constexpr int kTries = 5000;
  bool is_there = false;
  for (int tries = 0; tries < kTries && !is_there; ++tries) {
    ::ResumeThread(thread);
    ::Sleep(2);
    ::SuspendThread(thread);
    CONTEXT context = {};
    context.ContextFlags = CONTEXT_CONTROL;
    is_there = ::GetThreadContext(thread, &context) && context.Rip == entry;
  }
  return memory.Write(entry, original) && is_there;
}

struct Slot {
  std::uintptr_t address;
  std::uintptr_t function;
};

// What the image holds there.
template <typename Value>
Value At(const std::vector<unsigned char>& image, std::size_t offset) {
  Value value = {};
  std::memcpy(&value, image.data() + offset, sizeof(value));
  return value;
}

// In a copy of the whole image: each reading of the other process's memory takes its time.
std::vector<Slot> FindChanges(const CMemory& memory, std::uintptr_t image_address,
                              const IMAGE_OPTIONAL_HEADER64& header) {
  const std::vector<unsigned char> image = memory.ReadBlock(image_address, header.SizeOfImage);
  std::vector<Slot> slots;
  for (std::size_t next = header.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;;
       next += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
    const auto descriptor = At<IMAGE_IMPORT_DESCRIPTOR>(image, next);
    if (descriptor.Name == 0) {
      return slots;
    }
    for (std::size_t offset = 0;; offset += sizeof(IMAGE_THUNK_DATA64)) {
      const auto name = At<std::uint64_t>(image, descriptor.OriginalFirstThunk + offset);
      if (name == 0) {
        break;
      }
      constexpr std::size_t kHintBytes = 2;
      if (!IMAGE_SNAP_BY_ORDINAL64(name) &&
          IsChange(reinterpret_cast<const char*>(image.data() + name + kHintBytes))) {
        const std::size_t slot = descriptor.FirstThunk + offset;
        slots.push_back({image_address + slot, At<std::uintptr_t>(image, slot)});
      }
    }
  }
}

constexpr std::size_t kStubBytes = 64;

template <typename Value>
void Put(std::array<unsigned char, kStubBytes>& stub, std::size_t position, Value value) {
  std::memcpy(stub.data() + position, &value, sizeof(value));
}

// Counts down, and goes on to the function or ends the process.
std::array<unsigned char, kStubBytes> MakeStub(std::uintptr_t stub_address,
                                               std::uintptr_t counter_address,
                                               std::uintptr_t function) {
  std::array<unsigned char, kStubBytes> stub = {
      0xF0, 0xFF, 0x0D, 0,    0,    0,    0,              // lock dec dword [counter]
      0x74, 14,                                           // jz to the end of the process
      0xFF, 0x25, 0,    0,    0,    0,                    // jmp [next]
      0,    0,    0,    0,    0,    0,    0,    0,        // the function
      0x48, 0xC7, 0xC1, 0xFF, 0xFF, 0xFF, 0xFF,           // mov rcx, -1: this process
      0xBA, 0,    0,    0,    0,                          // mov edx, exit code
      0x48, 0x83, 0xEC, 0x28,                             // sub rsp, 40
      0x48, 0xB8, 0,    0,    0,    0,    0,    0, 0, 0,  // mov rax, TerminateProcess
      0xFF, 0xD0,                                         // call rax
  };
  constexpr std::size_t kAfterCountdown = 7;
  // The counter lies before the stubs, in the same block.
  const auto distance = static_cast<std::int64_t>(stub_address + kAfterCountdown - counter_address);
  Put(stub, 3, static_cast<std::int32_t>(-distance));
  Put(stub, 15, function);
  Put(stub, 31, kEndedBeforeChange);
  // System libraries lie at the same place in every process.
  Put(stub, 41,
      reinterpret_cast<std::uintptr_t>(reinterpret_cast<void*>(
          ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "TerminateProcess"))));
  return stub;
}

}  // namespace

bool EndBeforeChange(HANDLE process, HANDLE thread, int count) {
  const CMemory memory(process);
  const std::uintptr_t image = ImageOf(process, memory);
  const auto dos_header = memory.Read<IMAGE_DOS_HEADER>(image);
  const auto headers =
      memory.Read<IMAGE_NT_HEADERS64>(image + static_cast<std::uintptr_t>(dos_header.e_lfanew));
  if (headers.Signature != IMAGE_NT_SIGNATURE ||
      !RunToEntry(thread, memory, image + headers.OptionalHeader.AddressOfEntryPoint)) {
    return false;
  }

  const std::vector<Slot> slots = FindChanges(memory, image, headers.OptionalHeader);
  const std::uintptr_t block = memory.Allocate((slots.size() + 1) * kStubBytes);
  bool is_done = slots.size() == std::size(kChanges) && block != 0 && memory.Write(block, count);
  std::uintptr_t stub = block;
  for (const Slot& slot : slots) {
    stub += kStubBytes;
    is_done = is_done && memory.Write(stub, MakeStub(stub, block, slot.function)) &&
              memory.Write(slot.address, stub);
  }
  return is_done;
}

}  // namespace nhupdate_test
