#include "tests/support/fake_process_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <utility>

#include "base/format.h"

namespace nhupdate_test {

namespace {

// Far above all real handles, and never the same twice: tables may stand in front of one another.
HANDLE NewHandle() {
  static std::uintptr_t last = 0x7A000000;
  last += 4;
  return reinterpret_cast<HANDLE>(last);
}

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
    : own_id_([] { return kOwnId; }),
      enumerate_([this](DWORD* ids, DWORD byte_count, DWORD* bytes_needed) {
        return Enumerate(ids, byte_count, bytes_needed);
      }),
      open_([this](DWORD access, BOOL inherit, DWORD id) { return Open(access, inherit, id); }),
      image_name_([this](HANDLE handle, DWORD flags, wchar_t* buffer, DWORD* units) {
        return QueryImageName(handle, flags, buffer, units);
      }),
      module_file_name_([this](HANDLE handle, HMODULE module, wchar_t* buffer, DWORD units) {
        const Entry* entry = ByHandle(handle);
        if (entry == nullptr) {
          return module_file_name_.Original()(handle, module, buffer, units);
        }
        calls_.push_back(
            nhupdate::Format(L"ModuleFileName %d %d", module != nullptr ? 1 : 0, units));
        return Answer(entry->process.module_path, buffer, units);
      }),
      device_file_name_([this](HANDLE handle, wchar_t* buffer, DWORD units) {
        const Entry* entry = ByHandle(handle);
        if (entry == nullptr) {
          return device_file_name_.Original()(handle, buffer, units);
        }
        calls_.push_back(nhupdate::Format(L"DeviceFileName %d", units));
        return Answer(entry->process.device_path, buffer, units);
      }),
      base_name_([this](HANDLE handle, HMODULE module, wchar_t* buffer, DWORD units) {
        const Entry* entry = ByHandle(handle);
        if (entry == nullptr) {
          return base_name_.Original()(handle, module, buffer, units);
        }
        calls_.push_back(nhupdate::Format(L"BaseName %d %d", module != nullptr ? 1 : 0, units));
        return Answer(entry->process.base_name, buffer, units);
      }),
      terminate_([this](HANDLE handle, UINT exit_code) { return Terminate(handle, exit_code); }),
      wait_([this](HANDLE handle, DWORD milliseconds) { return Wait(handle, milliseconds); }),
      close_([this](HANDLE handle) { return Close(handle); }) {
  for (FakeProcess& process : processes) {
    entries_.push_back({std::move(process)});
  }
}

FakeProcessTable::~FakeProcessTable() {
  for (const auto& [handle, place] : opened_) {
    ADD_FAILURE() << "Process " << entries_[place].process.id << " was not closed.";
  }
}

std::vector<DWORD> FakeProcessTable::Running() const {
  std::vector<DWORD> ids;
  for (const Entry& entry : entries_) {
    if (entry.is_running) {
      ids.push_back(entry.process.id);
    }
  }
  return ids;
}

std::optional<std::size_t> FakeProcessTable::PlaceOf(DWORD id) const {
  for (std::size_t place = 0; place < entries_.size(); ++place) {
    if (entries_[place].process.id == id && entries_[place].is_running) {
      return place;
    }
  }
  return std::nullopt;
}

FakeProcessTable::Entry* FakeProcessTable::ByHandle(HANDLE handle) {
  const auto opened = opened_.find(handle);
  return opened != opened_.end() ? &entries_[opened->second] : nullptr;
}

BOOL FakeProcessTable::Enumerate(DWORD* ids, DWORD byte_count, DWORD* bytes_needed) {
  calls_.push_back(nhupdate::Format(L"Enumerate %d", byte_count));
  if (!can_be_enumerated_) {
    ::SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
  }
  DWORD count = 0;
  for (const DWORD id : Running()) {
    if (count < byte_count / sizeof(DWORD)) {
      ids[count++] = id;
    }
  }
  *bytes_needed = count * static_cast<DWORD>(sizeof(DWORD));
  return TRUE;
}

HANDLE FakeProcessTable::Open(DWORD access, BOOL inherit, DWORD id) {
  calls_.push_back(L"Open " + Hexadecimal(access) + nhupdate::Format(L" %d %d", inherit, id));
  const std::optional<std::size_t> place = PlaceOf(id);
  if (!place) {
    ::SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  const FakeProcess& process = entries_[*place].process;
  const bool is_for_termination = (access & PROCESS_TERMINATE) != 0;
  if (!(is_for_termination ? process.can_be_terminated : process.can_be_read)) {
    ::SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
  }
  const HANDLE handle = NewHandle();
  opened_[handle] = *place;
  return handle;
}

BOOL FakeProcessTable::QueryImageName(HANDLE handle, DWORD flags, wchar_t* buffer, DWORD* units) {
  const Entry* entry = ByHandle(handle);
  if (entry == nullptr) {
    return image_name_.Original()(handle, flags, buffer, units);
  }
  calls_.push_back(nhupdate::Format(L"QueryImageName %d %d", flags, *units));
  *units = Answer(entry->process.image_path, buffer, *units);
  return *units != 0;
}

BOOL FakeProcessTable::Terminate(HANDLE handle, UINT exit_code) {
  Entry* entry = ByHandle(handle);
  if (entry == nullptr) {
    return terminate_.Original()(handle, exit_code);
  }
  calls_.push_back(nhupdate::Format(L"Terminate %d %d", entry->process.id, exit_code));
  if (entry->process.refuses_to_end) {
    ::SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
  }
  entry->is_running = !entry->process.ends_when_terminated;
  return TRUE;
}

DWORD FakeProcessTable::Wait(HANDLE handle, DWORD milliseconds) {
  const Entry* entry = ByHandle(handle);
  if (entry == nullptr) {
    return wait_.Original()(handle, milliseconds);
  }
  calls_.push_back(nhupdate::Format(L"Wait %d %d", entry->process.id, milliseconds));
  return entry->is_running ? WAIT_TIMEOUT : WAIT_OBJECT_0;
}

BOOL FakeProcessTable::Close(HANDLE handle) {
  const Entry* entry = ByHandle(handle);
  if (entry == nullptr) {
    return close_.Original()(handle);
  }
  calls_.push_back(nhupdate::Format(L"Close %d", entry->process.id));
  opened_.erase(handle);
  return TRUE;
}

}  // namespace nhupdate_test
