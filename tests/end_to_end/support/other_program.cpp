#include "tests/end_to_end/support/other_program.h"

#include <array>

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

std::vector<ImportSlot> FindImports(const CMemory& memory, std::uintptr_t image,
                                    const IMAGE_NT_HEADERS64& headers) {
  std::vector<ImportSlot> slots;
  std::uintptr_t descriptor_address =
      image + headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (;; descriptor_address += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
    const auto descriptor = memory.Read<IMAGE_IMPORT_DESCRIPTOR>(descriptor_address);
    if (descriptor.Name == 0) {
      return slots;
    }
    for (std::uintptr_t index = 0;; ++index) {
      const std::uintptr_t offset = index * sizeof(IMAGE_THUNK_DATA64);
      const auto name = memory.Read<std::uint64_t>(image + descriptor.OriginalFirstThunk + offset);
      if (name == 0) {
        break;
      }
      constexpr std::uintptr_t kHintBytes = 2;
      if (!IMAGE_SNAP_BY_ORDINAL64(name)) {
        const std::uintptr_t slot = image + descriptor.FirstThunk + offset;
        slots.push_back(
            {memory.ReadText(image + name + kHintBytes), slot, memory.Read<std::uintptr_t>(slot)});
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
  return FindImports(memory, image, headers);
}

}  // namespace nhupdate_test
