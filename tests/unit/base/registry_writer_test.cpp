#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "base/registry.h"
#include "tests/support/interposer.h"
#include "tests/support/scratch_registry.h"

namespace nhupdate_test {
namespace {

using nhupdate::GetRegString;
using nhupdate::SetRegDword;
using nhupdate::SetRegString;
using testing::ElementsAre;

constexpr wchar_t kKey[] = L"SOFTWARE\\WOW6432Node\\Corvane Tests\\deep below";

class SetRegTest : public testing::Test {
 protected:
  ScratchRegistry registry_;
};

TEST_F(SetRegTest, WritesATextAndCreatesTheKeysAboveIt) {
  EXPECT_EQ(SetRegString(kKey, L"AppPath", L"C:\\Corvane \u00FC 100%"), 1);

  const auto value = GetRegistryValue(HKEY_LOCAL_MACHINE, kKey, L"AppPath");
  ASSERT_TRUE(value);
  EXPECT_EQ(value->type, static_cast<DWORD>(REG_SZ));
  // Wine may add a terminator of its own; the counts are checked below.
  const std::wstring stored(reinterpret_cast<const wchar_t*>(value->bytes.data()),
                            value->bytes.size() / sizeof(wchar_t));
  EXPECT_STREQ(stored.c_str(), L"C:\\Corvane \u00FC 100%");
}

TEST_F(SetRegTest, WritesANumberOfFourBytes) {
  EXPECT_EQ(SetRegDword(kKey, L"DumpType", 0x80000002), 1);

  const auto value = GetRegistryValue(HKEY_LOCAL_MACHINE, kKey, L"DumpType");
  ASSERT_TRUE(value);
  EXPECT_EQ(value->type, static_cast<DWORD>(REG_DWORD));
  EXPECT_THAT(value->bytes, ElementsAre(0x02, 0x00, 0x00, 0x80));
}

TEST_F(SetRegTest, OverwritesAValueOfAnyType) {
  ASSERT_EQ(SetRegString(kKey, L"Value", L"a long text that was there"), 1);

  EXPECT_EQ(SetRegDword(kKey, L"Value", 2), 1);

  const auto value = GetRegistryValue(HKEY_LOCAL_MACHINE, kKey, L"Value");
  ASSERT_TRUE(value);
  EXPECT_EQ(value->type, static_cast<DWORD>(REG_DWORD));
  EXPECT_THAT(value->bytes, ElementsAre(2, 0, 0, 0));
}

TEST_F(SetRegTest, LeavesTheOtherValuesOfTheKeyAlone) {
  ASSERT_EQ(SetRegDword(kKey, L"First", 1), 1);

  ASSERT_EQ(SetRegDword(kKey, L"Second", 2), 1);

  EXPECT_TRUE(GetRegistryValue(HKEY_LOCAL_MACHINE, kKey, L"First"));
}

TEST_F(SetRegTest, WritesNothingForTheUser) {
  ASSERT_EQ(SetRegString(kKey, L"AppPath", L"x"), 1);

  EXPECT_FALSE(GetRegistryValue(HKEY_CURRENT_USER, kKey, L"AppPath"));
}

TEST_F(SetRegTest, WritesATextThatTheReaderUnderstands) {
  ASSERT_EQ(SetRegString(kKey, L"AppPath", L"C:\\Corvane"), 1);
  const auto stored = GetRegistryValue(HKEY_LOCAL_MACHINE, kKey, L"AppPath");
  SetRegistryValue(HKEY_CURRENT_USER, kKey, L"AppPath", stored.value());
  std::wstring data;

  EXPECT_EQ(GetRegString(kKey, L"AppPath", data), 1);

  EXPECT_EQ(data, L"C:\\Corvane");
}

// What they ask Windows for, and what Windows answers.
class SetRegCallsTest : public testing::Test {
 protected:
  static inline const HKEY kOpened = reinterpret_cast<HKEY>(std::uintptr_t{0x1234});

  LSTATUS create_status_ = ERROR_SUCCESS;
  LSTATUS set_status_ = ERROR_SUCCESS;
  RegistryValue written_;
  std::wstring written_name_;

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
        *key = create_status_ == ERROR_SUCCESS ? kOpened : nullptr;
        return create_status_;
      }};
  INTERPOSER(RegSetValueExW) set_{[this](HKEY key, const wchar_t* name, DWORD reserved, DWORD type,
                                         const BYTE* bytes, DWORD size) -> LSTATUS {
    EXPECT_EQ(key, kOpened);
    EXPECT_EQ(reserved, 0U);
    written_name_ = name;
    written_ = {type, std::vector<std::uint8_t>(bytes, bytes + size)};
    return set_status_;
  }};
  INTERPOSER(RegCloseKey) close_{[](HKEY key) -> LSTATUS {
    EXPECT_EQ(key, kOpened);
    return ERROR_SUCCESS;
  }};
};

TEST_F(SetRegCallsTest, CountATextsCharactersAndNoTerminator) {
  for (const std::wstring& text :
       {std::wstring(L"20270301"), std::wstring(L"\u00FC"), std::wstring(),
        std::wstring(L"a\0b", 3), std::wstring(5000, L'x')}) {
    EXPECT_EQ(SetRegString(kKey, L"AppPath", text), 1);

    EXPECT_EQ(written_name_, L"AppPath");
    EXPECT_EQ(written_.type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(written_.bytes.size(), 2 * text.size());
    EXPECT_TRUE(written_.bytes == BytesOf(text));
  }
}

TEST_F(SetRegCallsTest, CountFourBytesForANumber) {
  EXPECT_EQ(SetRegDword(kKey, L"DumpCount", 2), 1);

  EXPECT_EQ(written_name_, L"DumpCount");
  EXPECT_EQ(written_.type, static_cast<DWORD>(REG_DWORD));
  EXPECT_THAT(written_.bytes, ElementsAre(2, 0, 0, 0));
}

// Both writers, since they have everything but the value in common.
const std::function<int()> kWriters[] = {
    [] { return SetRegString(kKey, L"Name", L"text"); },
    [] { return SetRegDword(kKey, L"Name", 2); },
};

TEST_F(SetRegCallsTest, CloseTheKeyAfterEveryValue) {
  for (const auto& write : kWriters) {
    const int closed_before = close_.Calls();

    EXPECT_EQ(write(), 1);

    EXPECT_EQ(close_.Calls() - closed_before, 1);
  }
}

TEST_F(SetRegCallsTest, WriteAndCloseNothingWhenTheKeyCannotBeHad) {
  create_status_ = ERROR_ACCESS_DENIED;

  for (const auto& write : kWriters) {
    EXPECT_EQ(write(), 0);
  }

  EXPECT_EQ(create_.Calls(), 2);
  EXPECT_EQ(set_.Calls(), 0);
  EXPECT_EQ(close_.Calls(), 0);
}

TEST_F(SetRegCallsTest, CloseTheKeyWhenTheValueCannotBeWritten) {
  set_status_ = ERROR_ACCESS_DENIED;

  for (const auto& write : kWriters) {
    const int closed_before = close_.Calls();

    EXPECT_EQ(write(), 0);

    EXPECT_EQ(close_.Calls() - closed_before, 1);
  }
}

}  // namespace
}  // namespace nhupdate_test
