#include "tests/end_to_end/support/program_end.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tests/end_to_end/support/other_program.h"

namespace nhupdate_test {

namespace {

// What is deleted, but for a few files, is deleted by SetFileInformationByHandle.
constexpr const char* kChanges[] = {
    "CopyFileW",      "CreateDirectoryW",           "DeleteFileW",     "RegCreateKeyExW",
    "RegSetValueExW", "SetFileInformationByHandle", "ShellExecuteExW", "ShellExecuteW",
};

// What is called once, when the process is being set up, and by nobody else.
constexpr char kSetUp[] = "SetThreadErrorMode";
constexpr char kAllocation[] = "malloc";

constexpr std::size_t kStubBytes = 64;
using Stub = std::array<unsigned char, kStubBytes>;

template <typename Value>
void Put(Stub& stub, std::size_t position, Value value) {
  std::memcpy(stub.data() + position, &value, sizeof(value));
}

// How far the counter is from the end of an instruction that uses it.
std::int32_t ToCounter(std::uintptr_t counter, std::uintptr_t stub, std::size_t end) {
  return static_cast<std::int32_t>(-static_cast<std::int64_t>(stub + end - counter));
}

// System libraries lie at the same place in every process.
std::uintptr_t OurTerminateProcess() {
  return reinterpret_cast<std::uintptr_t>(reinterpret_cast<void*>(
      ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "TerminateProcess")));
}

// Counts down, and goes on to the function or to what stands behind.
Stub CountingStub(std::uintptr_t address, std::uintptr_t counter, std::uintptr_t function) {
  Stub stub = {
      0xF0, 0xFF, 0x0D, 0, 0, 0, 0,     // lock dec dword [counter]
      0x74, 14,                         // jz behind
      0xFF, 0x25, 0,    0, 0, 0,        // jmp [next]
      0,    0,    0,    0, 0, 0, 0, 0,  // the function
  };
  Put(stub, 3, ToCounter(counter, address, 7));
  Put(stub, 15, function);
  return stub;
}

constexpr std::size_t kBehindCounting = 23;

Stub EndingStub(std::uintptr_t address, std::uintptr_t counter, std::uintptr_t function) {
  constexpr std::array<unsigned char, 28> kEnd = {
      0x48, 0xC7, 0xC1, 0xFF, 0xFF, 0xFF, 0xFF,           // mov rcx, -1: this process
      0xBA, 0,    0,    0,    0,                          // mov edx, exit code
      0x48, 0x83, 0xEC, 0x28,                             // sub rsp, 40
      0x48, 0xB8, 0,    0,    0,    0,    0,    0, 0, 0,  // mov rax, TerminateProcess
      0xFF, 0xD0,                                         // call rax
  };
  Stub stub = CountingStub(address, counter, function);
  Put(stub, kBehindCounting, kEnd);
  Put(stub, kBehindCounting + 8, kEndedByTest);
  Put(stub, kBehindCounting + 18, OurTerminateProcess());
  return stub;
}

Stub FailingStub(std::uintptr_t address, std::uintptr_t counter, std::uintptr_t function) {
  constexpr std::array<unsigned char, 3> kNothing = {0x31, 0xC0, 0xC3};  // xor eax, eax; ret
  Stub stub = CountingStub(address, counter, function);
  Put(stub, kBehindCounting, kNothing);
  return stub;
}

// Sets the counter and goes on to the function.
Stub StartingStub(std::uintptr_t address, std::uintptr_t counter, std::uintptr_t function,
                  std::int32_t count) {
  Stub stub = {
      0xC7, 0x05, 0, 0, 0, 0, 0, 0, 0, 0,  // mov dword [counter], count
      0xFF, 0x25, 0, 0, 0, 0,              // jmp [next]
  };
  Put(stub, 2, ToCounter(counter, address, 10));
  Put(stub, 6, count);
  Put(stub, 16, function);
  return stub;
}

// The counter and the stubs behind it, in the program's memory.
class CStubs {
 public:
  CStubs(HANDLE process, std::size_t stub_count, std::int32_t count)
      : memory_(process),
        counter_(memory_.Allocate((stub_count + 1) * kStubBytes)),
        next_(counter_ + kStubBytes),
        is_written_(counter_ != 0 && memory_.Write(counter_, count)) {}

  template <typename MakeStub>
  void Add(const ImportSlot& slot, MakeStub make) {
    is_written_ = is_written_ && memory_.Write(next_, make(next_, counter_, slot.function)) &&
                  memory_.Write(slot.address, next_);
    next_ += kStubBytes;
  }

  [[nodiscard]] bool AreWritten() const { return is_written_; }

 private:
  CMemory memory_;
  std::uintptr_t counter_;
  std::uintptr_t next_;
  bool is_written_;
};

// Empty unless each of them is imported once.
template <std::size_t kCount>
std::vector<ImportSlot> LoadAndFind(HANDLE process, HANDLE thread,
                                    const char* const (&names)[kCount]) {
  std::vector<ImportSlot> slots = LoadToEntry(process, thread);
  std::erase_if(slots, [&](const ImportSlot& slot) {
    return std::find(std::begin(names), std::end(names), slot.name) == std::end(names);
  });
  return slots.size() == kCount ? slots : std::vector<ImportSlot>();
}

}  // namespace

bool EndBeforeChange(HANDLE process, HANDLE thread, int count) {
  const std::vector<ImportSlot> slots = LoadAndFind(process, thread, kChanges);
  CStubs stubs(process, slots.size(), count);
  for (const ImportSlot& slot : slots) {
    stubs.Add(slot, EndingStub);
  }
  return !slots.empty() && stubs.AreWritten();
}

bool FailAllocation(HANDLE process, HANDLE thread, int count) {
  const std::vector<ImportSlot> slots = LoadAndFind(process, thread, {kSetUp, kAllocation});
  constexpr std::int32_t kNeverReached = 0;  // it counts down from there
  CStubs stubs(process, slots.size(), kNeverReached);
  for (const ImportSlot& slot : slots) {
    if (slot.name == kAllocation) {
      stubs.Add(slot, FailingStub);
    } else {
      stubs.Add(slot,
                [count](std::uintptr_t address, std::uintptr_t counter, std::uintptr_t function) {
                  return StartingStub(address, counter, function, count);
                });
    }
  }
  return !slots.empty() && stubs.AreWritten();
}

}  // namespace nhupdate_test
