#include "base/registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/interposer.h"
#include "tests/support/scratch_registry.h"

namespace nhupdate_test {
namespace {

using nhupdate::GetRegString;
using nhupdate::SetRegDword;
using nhupdate::SetRegString;
using testing::ElementsAre;

using Bytes = std::vector<std::uint8_t>;

constexpr wchar_t kKey[] = L"SOFTWARE\\WOW6432Node\\Corvane Tests\\deep below";
constexpr wchar_t kName[] = L"Name";
constexpr std::size_t kLimitBytes = 2048;
const std::wstring kLongest(kLimitBytes / sizeof(wchar_t), L'x');

class RegistryTest : public testing::Test {
 protected:
  ScratchRegistry registry_;
  std::wstring data_ = L"before";
};

TEST_F(RegistryTest, GivesATextOfTheUser) {
  struct Case {
    const char* name;
    DWORD type;
    Bytes bytes;
    const wchar_t* text;  // null when it is refused
  };
  Bytes too_long = BytesOf(kLongest);
  too_long.push_back('x');
  const Case cases[] = {
      {"with a terminator", REG_SZ, BytesOf(std::wstring(L"tchinese\0", 9)), L"tchinese"},
      {"without one", REG_SZ, BytesOf(L"tchinese"), L"tchinese"},
      {"empty", REG_SZ, {}, L""},
      {"with a NUL in it", REG_SZ, BytesOf(std::wstring(L"ab\0cd\0", 6)), L"ab"},
      {"of an odd number of bytes", REG_SZ, {0x61, 0x00, 0x62}, L"ab"},
      {"that fills the buffer", REG_SZ, BytesOf(kLongest), kLongest.c_str()},
      {"of a byte more", REG_SZ, too_long, nullptr},
      {"no type", REG_NONE, BytesOf(L"text"), nullptr},
      {"to be expanded", REG_EXPAND_SZ, BytesOf(L"text"), nullptr},
      {"bytes", REG_BINARY, BytesOf(L"text"), nullptr},
      {"a number", REG_DWORD, BytesOf(L"te"), nullptr},
      {"a link", REG_LINK, BytesOf(L"text"), nullptr},
      {"a list", REG_MULTI_SZ, BytesOf(L"text"), nullptr},
      {"a long number", REG_QWORD, BytesOf(L"text"), nullptr},
  };

  for (const Case& c : cases) {
    SetRegistryValue(HKEY_CURRENT_USER, kKey, kName, {c.type, c.bytes});
    std::wstring data = L"before";

    EXPECT_EQ(GetRegString(kKey, kName, data), c.text != nullptr ? 1 : 0) << c.name;
    EXPECT_EQ(data, c.text != nullptr ? c.text : L"before") << c.name;
  }
}

TEST_F(RegistryTest, GivesNothingThatIsNotThere) {
  EXPECT_EQ(GetRegString(kKey, kName, data_), 0);  // no key

  SetRegistryValue(HKEY_CURRENT_USER, kKey, L"Names", {REG_SZ, BytesOf(L"x")});
  SetRegistryValue(HKEY_LOCAL_MACHINE, kKey, kName, {REG_SZ, BytesOf(L"x")});
  EXPECT_EQ(GetRegString(kKey, kName, data_), 0);  // no such value of the user

  EXPECT_EQ(data_, L"before");
}

TEST_F(RegistryTest, TakesATextForTheMachineOnlyAndCreatesItsKey) {
  EXPECT_EQ(SetRegString(kKey, kName, L"C:\\Corvane \u00FC 100%"), 1);

  const auto value = GetRegistryValue(HKEY_LOCAL_MACHINE, kKey, kName);
  ASSERT_TRUE(value);
  EXPECT_FALSE(GetRegistryValue(HKEY_CURRENT_USER, kKey, kName));
  // As the reader of the user's values sees it: a terminator may be stored with it.
  SetRegistryValue(HKEY_CURRENT_USER, kKey, kName, value.value());
  EXPECT_EQ(GetRegString(kKey, kName, data_), 1);
  EXPECT_EQ(data_, L"C:\\Corvane \u00FC 100%");
}

TEST_F(RegistryTest, TakesANumberInPlaceOfAnythingAndLeavesOtherValuesAlone) {
  ASSERT_EQ(SetRegDword(kKey, L"Other", 1), 1);
  ASSERT_EQ(SetRegString(kKey, kName, L"a long text that was there"), 1);

  EXPECT_EQ(SetRegDword(kKey, kName, 0x80000002), 1);

  const RegistryValue number = {REG_DWORD, {0x02, 0x00, 0x00, 0x80}};
  EXPECT_TRUE(GetRegistryValue(HKEY_LOCAL_MACHINE, kKey, kName) == number);
  EXPECT_TRUE(GetRegistryValue(HKEY_LOCAL_MACHINE, kKey, L"Other"));
}

// What Windows is asked for, and what it answers.
class RegistryCallsTest : public testing::Test {
 protected:
  static inline const HKEY kOpened = reinterpret_cast<HKEY>(std::uintptr_t{0x1234});

  LSTATUS Open(HKEY* key) const {
    *key = open_status_ == ERROR_SUCCESS ? kOpened : nullptr;
    return open_status_;
  }

  LSTATUS open_status_ = ERROR_SUCCESS;
  LSTATUS value_status_ = ERROR_SUCCESS;
  std::wstring data_ = L"before";
  RegistryValue written_;

  INTERPOSER(RegOpenKeyExW) open_{
      [this](HKEY hive, const wchar_t* path, DWORD options, REGSAM access, HKEY* key) -> LSTATUS {
        EXPECT_EQ(hive, HKEY_CURRENT_USER);
        EXPECT_STREQ(path, kKey);
        EXPECT_EQ(options, 0U);
        EXPECT_EQ(access, 0x20019U);
        return Open(key);
      }};
  INTERPOSER(RegCreateKeyExW) create_{
      [this](HKEY hive, const wchar_t* path, DWORD reserved, wchar_t* key_class, DWORD options,
             REGSAM access, const SECURITY_ATTRIBUTES* security, HKEY* key, DWORD*) -> LSTATUS {
        EXPECT_EQ(hive, HKEY_LOCAL_MACHINE);
        EXPECT_STREQ(path, kKey);
        EXPECT_EQ(reserved, 0U);
        EXPECT_EQ(key_class, nullptr);
        EXPECT_EQ(options, 0U);
        EXPECT_EQ(access, 0x20006U);
        EXPECT_EQ(security, nullptr);
        return Open(key);
      }};
  INTERPOSER(RegQueryValueExW) query_{[this](HKEY key, const wchar_t* name, DWORD* reserved,
                                             DWORD* type, BYTE* bytes, DWORD* size) -> LSTATUS {
    EXPECT_EQ(key, kOpened);
    EXPECT_STREQ(name, kName);
    EXPECT_EQ(reserved, nullptr);
    EXPECT_EQ(*size, kLimitBytes);
    *type = REG_SZ;
    *size = 8;
    std::memcpy(bytes, L"text", *size);
    return value_status_;
  }};
  INTERPOSER(RegSetValueExW) set_{[this](HKEY key, const wchar_t* name, DWORD reserved, DWORD type,
                                         const BYTE* bytes, DWORD size) -> LSTATUS {
    EXPECT_EQ(key, kOpened);
    EXPECT_STREQ(name, kName);
    EXPECT_EQ(reserved, 0U);
    written_ = {type, Bytes(bytes, bytes + size)};
    return value_status_;
  }};
  INTERPOSER(RegCloseKey) close_{[](HKEY key) -> LSTATUS {
    EXPECT_EQ(key, kOpened);
    return ERROR_SUCCESS;
  }};

  // All three, since they have everything but the value in common.
  const std::function<int()> operations_[3] = {
      [this] { return GetRegString(kKey, kName, data_); },
      [] { return SetRegString(kKey, kName, L"text"); },
      [] { return SetRegDword(kKey, kName, 2); },
  };
};

TEST_F(RegistryCallsTest, CountATextsCharactersAndNoTerminator) {
  for (const std::wstring& text :
       {std::wstring(L"20270301"), std::wstring(L"\u00FC"), std::wstring(),
        std::wstring(L"a\0b", 3), std::wstring(5000, L'x')}) {
    EXPECT_EQ(SetRegString(kKey, kName, text), 1);

    EXPECT_TRUE(written_ == (RegistryValue{REG_SZ, BytesOf(text)})) << written_.bytes.size();
  }
}

TEST_F(RegistryCallsTest, OpenOneKeyForOneValueAndCloseIt) {
  for (const auto& operate : operations_) {
    const int closed_before = close_.Calls();
    EXPECT_EQ(operate(), 1);
    EXPECT_EQ(close_.Calls() - closed_before, 1);
  }

  EXPECT_EQ(data_, L"text");
  EXPECT_THAT((std::vector{open_.Calls(), query_.Calls(), create_.Calls(), set_.Calls()}),
              ElementsAre(1, 1, 2, 2));
}

TEST_F(RegistryCallsTest, TouchAndCloseNothingWhenTheKeyCannotBeHad) {
  open_status_ = ERROR_ACCESS_DENIED;

  for (const auto& operate : operations_) {
    EXPECT_EQ(operate(), 0);
  }

  EXPECT_EQ(data_, L"before");
  EXPECT_THAT((std::vector{open_.Calls(), create_.Calls()}), ElementsAre(1, 2));
  EXPECT_THAT((std::vector{query_.Calls(), set_.Calls(), close_.Calls()}), ElementsAre(0, 0, 0));
}

TEST_F(RegistryCallsTest, CloseTheKeyWhenTheValueFails) {
  for (const LSTATUS status : {ERROR_FILE_NOT_FOUND, ERROR_MORE_DATA, ERROR_ACCESS_DENIED}) {
    value_status_ = status;
    for (const auto& operate : operations_) {
      const int closed_before = close_.Calls();

      EXPECT_EQ(operate(), 0) << status;

      EXPECT_EQ(close_.Calls() - closed_before, 1) << status;
    }
  }
  EXPECT_EQ(data_, L"before");
}

}  // namespace
}  // namespace nhupdate_test
