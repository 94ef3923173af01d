#include "tests/support/scratch_local_machine.h"

#include <gtest/gtest.h>

#include <array>

#include "base/windows.h"
#include "tests/support/unused_name.h"

namespace nhupdate_test {

ScratchLocalMachine::ScratchLocalMachine() : path_(L"Software\\nhupdate test " + UnusedName()) {
  const LSTATUS created =
      ::RegCreateKeyExW(HKEY_CURRENT_USER, path_.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                        KEY_ALL_ACCESS, nullptr, key_.Receive(), nullptr);
  EXPECT_EQ(created, ERROR_SUCCESS);
  EXPECT_EQ(::RegOverridePredefKey(HKEY_LOCAL_MACHINE, key_.Get()), ERROR_SUCCESS);
}

ScratchLocalMachine::~ScratchLocalMachine() {
  ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  key_.Reset();
  ::RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
}

bool ScratchLocalMachine::IsEmpty() const {
  DWORD keys = 0;
  DWORD values = 0;
  const LSTATUS status = ::RegQueryInfoKeyW(key_.Get(), nullptr, nullptr, nullptr, &keys, nullptr,
                                            nullptr, &values, nullptr, nullptr, nullptr, nullptr);
  return status == ERROR_SUCCESS && keys == 0 && values == 0;
}

std::wstring ScratchLocalMachine::Text(const std::wstring& key, const std::wstring& name) const {
  std::array<wchar_t, 1024> text = {};
  DWORD bytes = sizeof(text) - sizeof(wchar_t);
  const LSTATUS status = ::RegGetValueW(key_.Get(), key.c_str(), name.c_str(), RRF_RT_REG_SZ,
                                        nullptr, text.data(), &bytes);
  return status == ERROR_SUCCESS ? text.data() : L"(none)";
}

}  // namespace nhupdate_test
