#include "tests/end_to_end/support/other_program.h"

#include <array>
#include <cstring>

#include <winternl.h>  // needs <windows.h> first

namespace nhupdate_test {

namespace {

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

// What the image holds there.
template <typename Value>
Value At(const std::vector<unsigned char>& image, std::size_t offset) {
  Value value = {};
  std::memcpy(&value, image.data() + offset, sizeof(value));
  return value;
}

// In a copy of the whole image: each reading of the other process's memory takes its time.
std::vector<ImportSlot> FindImports(const CMemory& memory, std::uintptr_t image_address,
                                    const IMAGE_OPTIONAL_HEADER64& header) {
  const std::vector<unsigned char> image = memory.ReadBlock(image_address, header.SizeOfImage);
  std::vector<ImportSlot> slots;
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
      if (!IMAGE_SNAP_BY_ORDINAL64(name)) {
        const std::size_t slot = descriptor.FirstThunk + offset;
        slots.push_back({reinterpret_cast<const char*>(image.data() + name + kHintBytes),
                         image_address + slot, At<std::uintptr_t>(image, slot)});
      }
    }
  }
}

}  // namespace

std::vector<ImportSlot> LoadToEntry(HANDLE process, HANDLE thread) {
  const CMemory memory(process);
  const std::uintptr_t image = ImageOf(process, memory);
  const auto dos_header = memory.Read<IMAGE_DOS_HEADER>(image);
  const auto headers =
      memory.Read<IMAGE_NT_HEADERS64>(image + static_cast<std::uintptr_t>(dos_header.e_lfanew));
  if (headers.Signature != IMAGE_NT_SIGNATURE ||
      !RunToEntry(thread, memory, image + headers.OptionalHeader.AddressOfEntryPoint)) {
    return {};
  }
  return FindImports(memory, image, headers.OptionalHeader);
}

}  // namespace nhupdate_test
