#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "base/registry.h"
#include "tests/support/interposer.h"
#include "tests/support/scratch_registry.h"

namespace nhupdate_test {
namespace {

using nhupdate::GetRegString;

constexpr wchar_t kKey[] = L"SOFTWARE\\Valve\\Steam";
constexpr wchar_t kName[] = L"Language";
constexpr std::size_t kLimitBytes = 2048;

class GetRegStringTest : public testing::Test {
 protected:
  void Store(DWORD type, const std::vector<std::uint8_t>& bytes) {
    SetRegistryValue(HKEY_CURRENT_USER, kKey, kName, {type, bytes});
  }

  ScratchRegistry registry_;
  std::wstring data_ = L"before";
};

TEST_F(GetRegStringTest, ReadsAValueWithItsTerminator) {
  Store(REG_SZ, BytesOf(std::wstring(L"tchinese\0", 9)));

  EXPECT_EQ(GetRegString(kKey, kName, data_), 1);
  EXPECT_EQ(data_, L"tchinese");
}

TEST_F(GetRegStringTest, ReadsAValueWithoutATerminator) {
  Store(REG_SZ, BytesOf(L"tchinese"));

  EXPECT_EQ(GetRegString(kKey, kName, data_), 1);
  EXPECT_EQ(data_, L"tchinese");
}

TEST_F(GetRegStringTest, ReadsAnEmptyValue) {
  Store(REG_SZ, {});

  EXPECT_EQ(GetRegString(kKey, kName, data_), 1);
  EXPECT_EQ(data_, L"");
}

TEST_F(GetRegStringTest, EndsAtTheFirstNul) {
  Store(REG_SZ, BytesOf(std::wstring(L"ab\0cd\0", 6)));

  EXPECT_EQ(GetRegString(kKey, kName, data_), 1);
  EXPECT_EQ(data_, L"ab");
}

TEST_F(GetRegStringTest, ReadsAnOddNumberOfBytes) {
  Store(REG_SZ, {0x61, 0x00, 0x62});

  EXPECT_EQ(GetRegString(kKey, kName, data_), 1);
  EXPECT_EQ(data_, L"ab");
}

TEST_F(GetRegStringTest, ReadsAsMuchAsItsBufferHolds) {
  const std::wstring full(kLimitBytes / sizeof(wchar_t), L'x');
  Store(REG_SZ, BytesOf(full));

  EXPECT_EQ(GetRegString(kKey, kName, data_), 1);
  EXPECT_EQ(data_, full);
}

TEST_F(GetRegStringTest, RefusesAByteMoreThanItsBufferHolds) {
  std::vector<std::uint8_t> bytes = BytesOf(std::wstring(kLimitBytes / sizeof(wchar_t), L'x'));
  bytes.push_back('x');
  Store(REG_SZ, bytes);

  EXPECT_EQ(GetRegString(kKey, kName, data_), 0);
  EXPECT_EQ(data_, L"before");
}

TEST_F(GetRegStringTest, RefusesEveryOtherType) {
  for (const int type :
       {REG_NONE, REG_EXPAND_SZ, REG_BINARY, REG_DWORD, REG_LINK, REG_MULTI_SZ, REG_QWORD}) {
    Store(static_cast<DWORD>(type), BytesOf(L"text"));

    EXPECT_EQ(GetRegString(kKey, kName, data_), 0) << "type " << type;
    EXPECT_EQ(data_, L"before") << "type " << type;
  }
}

TEST_F(GetRegStringTest, FindsNoValueOfAnotherName) {
  Store(REG_SZ, BytesOf(L"tchinese"));

  EXPECT_EQ(GetRegString(kKey, L"Languages", data_), 0);
  EXPECT_EQ(data_, L"before");
}

TEST_F(GetRegStringTest, FindsNothingWithoutTheKey) {
  EXPECT_EQ(GetRegString(kKey, kName, data_), 0);
  EXPECT_EQ(data_, L"before");
}

TEST_F(GetRegStringTest, DoesNotReadTheMachinesHive) {
  SetRegistryValue(HKEY_LOCAL_MACHINE, kKey, kName, {REG_SZ, BytesOf(L"tchinese")});

  EXPECT_EQ(GetRegString(kKey, kName, data_), 0);
}

// What it asks Windows for, and what Windows answers.
class GetRegStringCallsTest : public testing::Test {
 protected:
  static inline const HKEY kOpened = reinterpret_cast<HKEY>(std::uintptr_t{0x1234});

  LSTATUS open_status_ = ERROR_SUCCESS;
  LSTATUS query_status_ = ERROR_SUCCESS;
  std::wstring data_ = L"before";

  INTERPOSER(RegOpenKeyExW) open_{
      [this](HKEY hive, const wchar_t* path, DWORD options, REGSAM access, HKEY* key) -> LSTATUS {
        EXPECT_EQ(hive, HKEY_CURRENT_USER);
        EXPECT_STREQ(path, kKey);
        EXPECT_EQ(options, 0U);
        EXPECT_EQ(access, 0x20019U);
        *key = open_status_ == ERROR_SUCCESS ? kOpened : nullptr;
        return open_status_;
      }};
  INTERPOSER(RegQueryValueExW) query_{[this](HKEY key, const wchar_t* name, DWORD* reserved,
                                             DWORD* type, BYTE* bytes, DWORD* size) -> LSTATUS {
    EXPECT_EQ(key, kOpened);
    EXPECT_STREQ(name, kName);
    EXPECT_EQ(reserved, nullptr);
    EXPECT_EQ(*size, kLimitBytes);
    *type = REG_SZ;
    std::memcpy(bytes, L"text", 8);
    *size = 8;
    return query_status_;
  }};
  INTERPOSER(RegCloseKey) close_{[](HKEY key) -> LSTATUS {
    EXPECT_EQ(key, kOpened);
    return ERROR_SUCCESS;
  }};
};

TEST_F(GetRegStringCallsTest, OpenOneKeyReadOneValueAndCloseTheKey) {
  EXPECT_EQ(GetRegString(kKey, kName, data_), 1);

  EXPECT_EQ(data_, L"text");
  EXPECT_EQ(open_.Calls(), 1);
  EXPECT_EQ(query_.Calls(), 1);
  EXPECT_EQ(close_.Calls(), 1);
}

TEST_F(GetRegStringCallsTest, ReadAndCloseNothingWhenTheKeyCannotBeOpened) {
  open_status_ = ERROR_ACCESS_DENIED;

  EXPECT_EQ(GetRegString(kKey, kName, data_), 0);

  EXPECT_EQ(data_, L"before");
  EXPECT_EQ(query_.Calls(), 0);
  EXPECT_EQ(close_.Calls(), 0);
}

TEST_F(GetRegStringCallsTest, CloseTheKeyWhenTheValueCannotBeRead) {
  for (const LSTATUS status : {ERROR_FILE_NOT_FOUND, ERROR_MORE_DATA, ERROR_ACCESS_DENIED}) {
    query_status_ = status;
    const int closed_before = close_.Calls();

    EXPECT_EQ(GetRegString(kKey, kName, data_), 0) << status;

    EXPECT_EQ(data_, L"before") << status;
    EXPECT_EQ(close_.Calls() - closed_before, 1) << status;
  }
}

}  // namespace
}  // namespace nhupdate_test
