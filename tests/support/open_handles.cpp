#include "tests/support/open_handles.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "base/windows.h"

namespace nhupdate_test {

namespace {

// ntdll fills the buffer with the number of handles, a reserved word, and one of these for each.
struct HandleEntry {
  void* object;
  ULONG_PTR process_id;
  ULONG_PTR handle;
  ULONG access;
  USHORT back_trace;
  USHORT type;
  ULONG attributes;
  ULONG reserved;
};

constexpr int kExtendedHandleInformation = 64;
constexpr std::size_t kHeaderSize = 2 * sizeof(ULONG_PTR);
constexpr std::size_t kRoom = 64 * 1024 * 1024;  // for a million and a half of them

using QueryEntry = LONG(WINAPI*)(int kind, void* buffer, ULONG size, ULONG* needed);

}  // namespace

int CountOpenHandles() {
  static std::vector<std::byte> buffer(kRoom);
  const auto query = reinterpret_cast<QueryEntry>(reinterpret_cast<void (*)()>(
      ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
  if (query == nullptr || query(kExtendedHandleInformation, buffer.data(),
                                static_cast<ULONG>(buffer.size()), nullptr) != 0) {
    std::fprintf(stderr, "The handles of the system can't be listed.\n");
    std::abort();
  }
  ULONG_PTR count = 0;
  std::memcpy(&count, buffer.data(), sizeof(count));
  int own = 0;
  for (ULONG_PTR index = 0; index < count; ++index) {
    HandleEntry entry = {};
    std::memcpy(&entry, buffer.data() + kHeaderSize + index * sizeof(entry), sizeof(entry));
    own += entry.process_id == ::GetCurrentProcessId() ? 1 : 0;
  }
  return own;
}

}  // namespace nhupdate_test
