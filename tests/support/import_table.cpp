#include "tests/support/import_table.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace nhupdate_test {

namespace {

template <typename Type>
Type* At(std::uintptr_t address) {
  return reinterpret_cast<Type*>(address);
}

void** FindInDescriptor(std::uintptr_t image, const IMAGE_IMPORT_DESCRIPTOR& descriptor,
                        const char* function_name) {
  const auto* name = At<IMAGE_THUNK_DATA64>(image + descriptor.OriginalFirstThunk);
  auto* slot = At<IMAGE_THUNK_DATA64>(image + descriptor.FirstThunk);
  for (; name->u1.AddressOfData != 0; ++name, ++slot) {
    if (IMAGE_SNAP_BY_ORDINAL64(name->u1.Ordinal)) {
      continue;
    }
    const auto* by_name = At<IMAGE_IMPORT_BY_NAME>(image + name->u1.AddressOfData);
    if (std::strcmp(reinterpret_cast<const char*>(by_name->Name), function_name) == 0) {
      return reinterpret_cast<void**>(&slot->u1.Function);
    }
  }
  return nullptr;
}

}  // namespace

void** FindImportSlotIfAny(const char* function_name, HMODULE module) {
  const auto image =
      reinterpret_cast<std::uintptr_t>(module != nullptr ? module : ::GetModuleHandleW(nullptr));
  const auto* dos_header = At<IMAGE_DOS_HEADER>(image);
  const auto* headers =
      At<IMAGE_NT_HEADERS64>(image + static_cast<std::uintptr_t>(dos_header->e_lfanew));
  const IMAGE_DATA_DIRECTORY& directory =
      headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  for (const auto* descriptor = At<IMAGE_IMPORT_DESCRIPTOR>(image + directory.VirtualAddress);
       descriptor->Name != 0; ++descriptor) {
    if (void** slot = FindInDescriptor(image, *descriptor, function_name)) {
      return slot;
    }
  }
  return nullptr;
}

void** FindImportSlot(const char* function_name, HMODULE module) {
  if (void** slot = FindImportSlotIfAny(function_name, module)) {
    return slot;
  }
  std::fprintf(stderr, "This %s does not import %s.\n",
               module != nullptr ? "library" : "executable", function_name);
  std::abort();
}

void WriteImportSlot(void** slot, void* function) {
  DWORD protection = 0;
  if (!::VirtualProtect(slot, sizeof(*slot), PAGE_READWRITE, &protection)) {
    std::fprintf(stderr, "The import table can't be written.\n");
    std::abort();
  }
  *slot = function;
  ::VirtualProtect(slot, sizeof(*slot), protection, &protection);
}

}  // namespace nhupdate_test
