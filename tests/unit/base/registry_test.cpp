#include "base/registry.h"

#include "tests/support/registry_recorder.h"
#include "tests/support/scratch_registry.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr wchar_t kKey[] = L"SOFTWARE\\WOW6432Node\\Corvane Tests\\deep below";
constexpr wchar_t kName[] = L"Name";
const std::wstring kLongest(1024, L'x');

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
    data_ = L"before";

    EXPECT_EQ(GetRegString(kKey, kName, data_), c.text != nullptr ? 1 : 0) << c.name;
    EXPECT_EQ(data_, c.text != nullptr ? c.text : L"before") << c.name;
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
  // Read back by GetRegString, since a terminator may or may not be stored with the text.
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

TEST_F(RegistryTest, IsReadThroughOneKeyOfTheUserThatIsClosedWhateverCameOfIt) {
  SetRegistryValue(HKEY_CURRENT_USER, kKey, kName, {REG_SZ, BytesOf(L"text")});
  const INTERPOSER(RegOpenKeyExW) open(
      [&](HKEY hive, const wchar_t*, DWORD options, REGSAM access, auto...) {
        EXPECT_EQ(hive, HKEY_CURRENT_USER);
        EXPECT_EQ(options, 0U);
        EXPECT_EQ(access, 0x20019U);
      });
  const INTERPOSER(RegCloseKey) close;

  EXPECT_EQ(GetRegString(kKey, kName, data_), 1);
  EXPECT_EQ(data_, L"text");
  EXPECT_EQ(GetRegString(kKey, L"Missing", data_), 0);

  EXPECT_EQ(open.Calls(), 2);
  EXPECT_EQ(close.Calls(), 2);
}

TEST_F(RegistryTest, GivesNothingWhenReadingFails) {
  SetRegistryValue(HKEY_CURRENT_USER, kKey, kName, {REG_SZ, BytesOf(L"text")});
  for (const LSTATUS status : {ERROR_FILE_NOT_FOUND, ERROR_MORE_DATA, ERROR_ACCESS_DENIED}) {
    INTERPOSER(RegQueryValueExW) query([&](auto... arguments) {
      query.Original()(arguments...);
      return status;
    });

    EXPECT_EQ(GetRegString(kKey, kName, data_), 0) << status;
  }
  EXPECT_EQ(data_, L"before");
}

// The recorder also looks at how the key is opened.
class RegistryWritersTest : public RegistryTest {
 protected:
  RegistryRecorder recorder_;
};

TEST_F(RegistryWritersTest, CountATextsCharactersAndNoTerminator) {
  for (const std::wstring& text :
       {std::wstring(L"20270301"), std::wstring(L"\u00FC"), std::wstring(),
        std::wstring(L"a\0b", 3), std::wstring(5000, L'x')}) {
    EXPECT_EQ(SetRegString(kKey, kName, text), 1);

    EXPECT_TRUE(recorder_.Written().back() == Text(kKey, kName, text)) << text.size();
  }
}

TEST_F(RegistryWritersTest, OpenOneKeyForOneValueAndCloseIt) {
  EXPECT_EQ(SetRegString(kKey, kName, L"text"), 1);
  EXPECT_EQ(SetRegDword(kKey, kName, 2), 1);

  EXPECT_EQ(recorder_.OpenedKeys(), 2);
  EXPECT_EQ(recorder_.OpenKeys(), 0);
}

TEST_F(RegistryWritersTest, CloseTheKeyWhenTheValueFails) {
  INTERPOSER(RegSetValueExW) set(Answers(LSTATUS{ERROR_ACCESS_DENIED}));

  EXPECT_EQ(SetRegString(kKey, kName, L"text"), 0);
  EXPECT_EQ(SetRegDword(kKey, kName, 2), 0);

  EXPECT_EQ(recorder_.OpenedKeys(), 2);
  EXPECT_EQ(recorder_.OpenKeys(), 0);
}

TEST_F(RegistryTest, IsNeitherReadNorWrittenNorClosedWhenTheKeyCannotBeHad) {
  INTERPOSER(RegOpenKeyExW) open(Answers(LSTATUS{ERROR_ACCESS_DENIED}));
  INTERPOSER(RegCreateKeyExW) create(Answers(LSTATUS{ERROR_ACCESS_DENIED}));
  INTERPOSER(RegQueryValueExW) query(Answers(LSTATUS{ERROR_SUCCESS}));
  INTERPOSER(RegSetValueExW) set(Answers(LSTATUS{ERROR_SUCCESS}));
  INTERPOSER(RegCloseKey) close(Answers(LSTATUS{ERROR_SUCCESS}));

  EXPECT_EQ(GetRegString(kKey, kName, data_), 0);
  EXPECT_EQ(SetRegString(kKey, kName, L"text"), 0);
  EXPECT_EQ(SetRegDword(kKey, kName, 2), 0);

  EXPECT_EQ(data_, L"before");
  EXPECT_EQ(query.Calls() + set.Calls() + close.Calls(), 0);
}

}  // namespace
}  // namespace nhupdate_test
