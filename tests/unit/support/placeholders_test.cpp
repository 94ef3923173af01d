#include "tests/support/placeholders.h"

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(PlaceholdersTest, StandForTheFoldersAndThisProcess) {
  const INTERPOSER(GetCurrentProcessId) process_id([] { return DWORD{42}; });
  const struct {
    const wchar_t* text;
    const wchar_t* expected;
  } cases[] = {
      {L"", L""},
      {L"C:\\Root\\a => C:\\Root\\b", L"{root}\\a => {root}\\b"},
      {L"C:\\Root\\Nimba Hub\\a", L"{base}\\a"},
      {L"C:\\Data\\Log", L"{data}\\Log"},
      {L"-x -ExitWhenParentDie:42", L"-x -ExitWhenParentDie:{pid}"},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(WithPlaceholders(text, L"C:\\Root", L"C:\\Data"), expected);
  }
}

TEST(PlaceholdersTest, StandForAProcessIdWhereTheProgramPutsOne) {
  const struct {
    DWORD id;
    const wchar_t* text;
    const wchar_t* expected;
  } cases[] = {
      {32, L"2|Launch param : NIMBAHUB -ExitWhenParentDie:32",
       L"2|Launch param : NIMBAHUB -ExitWhenParentDie:{name}"},
      {0x80000005, L"-ExitWhenParentDie:-2147483643", L"-ExitWhenParentDie:{name}"},
      {32, L"2|Skip terminate current process a.exe(32).",
       L"2|Skip terminate current process a.exe({name})."},
      {32, L"Skip terminate current process a.exe(32).",
       L"Skip terminate current process a.exe({name})."},
      {32, L"2|Target process a(32).EXE(32) found, terminate it.",
       L"2|Target process a(32).EXE({name}) found, terminate it."},
      {32, L"4|Process a.exe(32) still found.", L"4|Process a.exe({name}) still found."},
      {2, L"2|Target process 2(2) found, terminate it.",
       L"2|Target process 2({name}) found, terminate it."},
  };
  for (const auto& [id, text, expected] : cases) {
    EXPECT_EQ(WithProcessNamed(text, id, L"{name}"), expected);
  }
}

TEST(PlaceholdersTest, StandForNoOtherNumber) {
  const struct {
    DWORD id;
    const wchar_t* text;
  } cases[] = {
      {32, L"4|Fail to delete (32) : C:\\a.exe"},
      {32, L"4|Fail to copy (32) : C:\\a.exe => C:\\b.exe"},
      {32, L"4|Fail to delete (5) : C:\\a.exe(32)."},
      {32, L"4|Fail to copy file = 32"},
      {32, L"4|Fail to copy (5) : C:\\Process a => C:\\a.exe(32) still found."},
      {32,
       L"2|ShellExecute ICACLS success on ICACLS.exe, Params = \"C:\\a\" /grant "
       L"\"*S-1-5-32-545\":(OI)(CI)F /inheritance:e, Return Code = 33"},
      {33, L"2|ShellExecute ICACLS success on ICACLS.exe, Params = a, Return Code = 33"},
      {2, L"2|Return 2"},
      {2, L"2|Target process a.exe(22) found, terminate it."},
      {2, L"2|Target process a(2) not found."},
      {32, L"2|Launch param : -ExitWhenParentDie:132"},
      {32, L"2|Launch param : -ExitWhenParentDie:321"},
      {32, L"2|Launch param : -ExitWhenParentDie:32 NIMBAHUB"},
      {32, L"32"},
      {8, L"2|Total 8 strings loaded."},
  };
  for (const auto& [id, text] : cases) {
    EXPECT_EQ(WithProcessNamed(text, id, L"{name}"), text);
  }
}

}  // namespace
}  // namespace nhupdate_test
