#include "tests/unit/install/fake_process_table.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "base/format.h"

namespace nhupdate_test {

namespace {

// Far above all real handles; the process's place in the table is added.
constexpr std::uintptr_t kFirstHandle = 0x7A000000;

std::wstring Hexadecimal(DWORD value) {
  std::wstring digits;
  for (; value != 0; value /= 16) {
    digits.insert(digits.begin(), L"0123456789abcdef"[value % 16]);
  }
  return L"0x" + digits;
}

// Fills the buffer to its last unit and leaves out a terminator for which there is no room.
DWORD Answer(const std::wstring& text, wchar_t* buffer, DWORD units) {
  if (text.empty()) {
    ::SetLastError(ERROR_GEN_FAILURE);
    return 0;
  }
  const std::size_t length = std::min<std::size_t>(text.size(), units);
  text.copy(buffer, length);
  if (length < units) {
    buffer[length] = L'\0';
  }
  return static_cast<DWORD>(length);
}

}  // namespace

FakeProcessTable::FakeProcessTable(std::vector<FakeProcess> processes)
    : enumerate_([this](DWORD* ids, DWORD byte_count, DWORD* bytes_needed) {
        return Enumerate(ids, byte_count, bytes_needed);
      }),
      open_([this](DWORD access, BOOL inherit, DWORD id) { return Open(access, inherit, id); }),
      image_name_([this](HANDLE handle, DWORD flags, wchar_t* buffer, DWORD* units) -> BOOL {
        calls_.push_back(nhupdate::Format(L"QueryImageName %d %d", flags, *units));
        *units = Answer(ByHandle(handle)->process.image_path, buffer, *units);
        return *units != 0;
      }),
      module_file_name_([this](HANDLE handle, HMODULE module, wchar_t* buffer, DWORD units) {
        calls_.push_back(
            nhupdate::Format(L"ModuleFileName %d %d", module != nullptr ? 1 : 0, units));
        return Answer(ByHandle(handle)->process.module_path, buffer, units);
      }),
      device_file_name_([this](HANDLE handle, wchar_t* buffer, DWORD units) {
        calls_.push_back(nhupdate::Format(L"DeviceFileName %d", units));
        return Answer(ByHandle(handle)->process.device_path, buffer, units);
      }),
      base_name_([this](HANDLE handle, HMODULE module, wchar_t* buffer, DWORD units) {
        calls_.push_back(nhupdate::Format(L"BaseName %d %d", module != nullptr ? 1 : 0, units));
        return Answer(ByHandle(handle)->process.base_name, buffer, units);
      }),
      terminate_([this](HANDLE handle, UINT exit_code) -> BOOL {
        Entry* entry = ByHandle(handle);
        calls_.push_back(nhupdate::Format(L"Terminate %d %d", entry->process.id, exit_code));
        entry->is_running = !entry->process.ends_when_terminated;
        return TRUE;
      }),
      wait_([this](HANDLE handle, DWORD milliseconds) -> DWORD {
        const Entry* entry = ByHandle(handle);
        if (entry == nullptr) {
          return wait_.Original()(handle, milliseconds);
        }
        calls_.push_back(nhupdate::Format(L"Wait %d %d", entry->process.id, milliseconds));
        return entry->is_running ? WAIT_TIMEOUT : WAIT_OBJECT_0;
      }),
      close_([this](HANDLE handle) -> BOOL {
        const Entry* entry = ByHandle(handle);
        if (entry == nullptr) {
          return close_.Original()(handle);
        }
        calls_.push_back(nhupdate::Format(L"Close %d", entry->process.id));
        --open_handles_;
        return TRUE;
      }) {
  for (FakeProcess& process : processes) {
    entries_.push_back({std::move(process)});
  }
}

FakeProcessTable::Entry* FakeProcessTable::ById(DWORD id) {
  const auto found = std::find_if(entries_.begin(), entries_.end(), [id](const Entry& entry) {
    return entry.process.id == id && entry.is_running;
  });
  return found != entries_.end() ? &*found : nullptr;
}

FakeProcessTable::Entry* FakeProcessTable::ByHandle(HANDLE handle) {
  const std::uintptr_t value = reinterpret_cast<std::uintptr_t>(handle);
  const bool is_ours = value >= kFirstHandle && value < kFirstHandle + entries_.size();
  return is_ours ? &entries_[value - kFirstHandle] : nullptr;
}

BOOL FakeProcessTable::Enumerate(DWORD* ids, DWORD byte_count, DWORD* bytes_needed) {
  calls_.push_back(nhupdate::Format(L"Enumerate %d", byte_count));
  if (!can_be_enumerated_) {
    ::SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
  }
  DWORD count = 0;
  for (const Entry& entry : entries_) {
    if (entry.is_running && count < byte_count / sizeof(DWORD)) {
      ids[count++] = entry.process.id;
    }
  }
  *bytes_needed = count * static_cast<DWORD>(sizeof(DWORD));
  return TRUE;
}

HANDLE FakeProcessTable::Open(DWORD access, BOOL inherit, DWORD id) {
  calls_.push_back(L"Open " + Hexadecimal(access) + nhupdate::Format(L" %d %d", inherit, id));
  const Entry* entry = ById(id);
  const bool is_for_termination = (access & PROCESS_TERMINATE) != 0;
  if (entry == nullptr ||
      !(is_for_termination ? entry->process.can_be_terminated : entry->process.can_be_read)) {
    ::SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
  }
  ++open_handles_;
  const auto place = static_cast<std::uintptr_t>(entry - entries_.data());
  return reinterpret_cast<HANDLE>(kFirstHandle + place);
}

}  // namespace nhupdate_test
