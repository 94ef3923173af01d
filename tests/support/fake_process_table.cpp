#include "tests/support/fake_process_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
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
    : enumerate_(std::bind_front(&FakeProcessTable::Enumerate, this)),
      open_(std::bind_front(&FakeProcessTable::Open, this)),
      image_name_(ForOwn([this](Entry& entry, DWORD flags, wchar_t* buffer, DWORD* units) -> BOOL {
        calls_.push_back(nhupdate::Format(L"QueryImageName %d %d", flags, *units));
        *units = Answer(entry.process.image_path, buffer, *units);
        return *units != 0;
      })),
      module_file_name_(ForOwn([this](Entry& entry, HMODULE module, wchar_t* buffer, DWORD units) {
        calls_.push_back(
            nhupdate::Format(L"ModuleFileName %d %d", module != nullptr ? 1 : 0, units));
        return Answer(entry.process.module_path, buffer, units);
      })),
      device_file_name_(ForOwn([this](Entry& entry, wchar_t* buffer, DWORD units) {
        calls_.push_back(nhupdate::Format(L"DeviceFileName %d", units));
        return Answer(entry.process.device_path, buffer, units);
      })),
      base_name_(ForOwn([this](Entry& entry, HMODULE module, wchar_t* buffer, DWORD units) {
        calls_.push_back(nhupdate::Format(L"BaseName %d %d", module != nullptr ? 1 : 0, units));
        return Answer(entry.process.base_name, buffer, units);
      })),
      terminate_(ForOwn([this](Entry& entry, UINT exit_code) -> BOOL {
        calls_.push_back(nhupdate::Format(L"Terminate %d %d", entry.process.id, exit_code));
        if (entry.process.refuses_to_end) {
          ::SetLastError(ERROR_ACCESS_DENIED);
          return FALSE;
        }
        entry.is_running = !entry.process.ends_when_terminated;
        return TRUE;
      })),
      wait_(ForOwn([this](Entry& entry, DWORD milliseconds) {
        calls_.push_back(nhupdate::Format(L"Wait %d %d", entry.process.id, milliseconds));
        return DWORD{entry.is_running ? WAIT_TIMEOUT : WAIT_OBJECT_0};
      })),
      close_([this](HANDLE handle) -> std::optional<BOOL> {
        const auto opened = opened_.find(handle);
        if (opened == opened_.end()) {
          return std::nullopt;
        }
        calls_.push_back(nhupdate::Format(L"Close %d", entries_[opened->second].process.id));
        opened_.erase(opened);
        return TRUE;
      }) {
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
  const auto entry = std::find_if(entries_.begin(), entries_.end(), [id](const Entry& candidate) {
    return candidate.process.id == id && candidate.is_running;
  });
  if (entry == entries_.end()) {
    ::SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  const bool is_for_termination = (access & PROCESS_TERMINATE) != 0;
  if (!(is_for_termination ? entry->process.can_be_terminated : entry->process.can_be_read)) {
    ::SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
  }
  const HANDLE handle = NewHandle();
  opened_[handle] = static_cast<std::size_t>(entry - entries_.begin());
  return handle;
}

}  // namespace nhupdate_test
