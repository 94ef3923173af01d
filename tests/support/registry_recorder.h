#pragma once

// Writes down the values that the program writes below HKEY_LOCAL_MACHINE, and lets it write them:
// into a ScratchRegistry. A key of another hive, or not opened just for writing, fails the test.

#include <iosfwd>

#include "tests/support/windows_basics.h"

namespace nhupdate_test {

struct WrittenValue {
  std::wstring key;
  std::wstring name;
  DWORD type = REG_NONE;
  std::vector<BYTE> bytes;

  bool operator==(const WrittenValue& other) const = default;
};

std::ostream& operator<<(std::ostream& stream, const WrittenValue& value);

// A REG_SZ value without a terminator.
[[nodiscard]] WrittenValue Text(const std::wstring& key, const std::wstring& name,
                                const std::wstring& text);

// The machine's value as it is stored, of type REG_NONE when there is none. A text comes without
// its terminator even if that is stored; a recorder tells how many bytes the program has passed.
[[nodiscard]] WrittenValue StoredValue(const std::wstring& key, const std::wstring& name);

class RegistryRecorder {
 public:
  // `before_value` is called before each value with its number, counted from 1.
  explicit RegistryRecorder(std::function<void(int)> before_value = nullptr);

  // Makes writing the value of this number fail with ERROR_ACCESS_DENIED.
  void FailAtValue(int number) { failing_value_ = number; }

  // Every value that was passed on to Windows, so not the one that was made to fail.
  [[nodiscard]] const std::vector<WrittenValue>& Written() const { return written_; }
  [[nodiscard]] int OpenedKeys() const { return opened_keys_; }
  [[nodiscard]] int OpenKeys() const { return static_cast<int>(open_keys_.size()); }

 private:
  std::function<void(int)> before_value_;
  int failing_value_ = 0;
  int values_ = 0;
  int opened_keys_ = 0;
  std::map<HKEY, std::wstring> open_keys_;
  std::vector<WrittenValue> written_;

  INTERPOSER(RegCreateKeyExW) create_key_;
  INTERPOSER(RegSetValueExW) set_value_;
  INTERPOSER(RegCloseKey) close_key_;
};

}  // namespace nhupdate_test
