#include "tests/support/scratch_registry.h"

#include "base/registry.h"
#include "tests/support/registry_recorder.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(ScratchRegistryTest, TakesWhatIsWrittenAndForgetsItAfterwards) {
  {
    const ScratchRegistry registry;
    EXPECT_TRUE(registry.IsEmpty());

    EXPECT_EQ(SetRegString(L"SOFTWARE\\nhupdate", L"name", L"text"), 1);

    EXPECT_FALSE(registry.IsEmpty());
    EXPECT_EQ(registry.Text(L"SOFTWARE\\nhupdate", L"name"), L"text");
    EXPECT_EQ(registry.Text(L"SOFTWARE\\nhupdate", L"other"), L"(none)");
  }

  const ScratchRegistry next;
  EXPECT_TRUE(next.IsEmpty());
}

TEST(ScratchRegistryTest, KeepsTheUserApartFromTheMachineAndBothFromTheRealRegistry) {
  const RegistryValue value = {REG_BINARY, {1, 0, 2}};
  const auto value_of = [](HKEY hive) {
    return GetRegistryValue(hive, L"SOFTWARE\\nhupdate", L"name");
  };
  {
    const ScratchRegistry registry;
    SetRegistryValue(HKEY_CURRENT_USER, L"SOFTWARE\\nhupdate", L"name", value);
    EXPECT_TRUE(value_of(HKEY_CURRENT_USER) == value);
    EXPECT_FALSE(value_of(HKEY_LOCAL_MACHINE));
    EXPECT_TRUE(registry.IsEmpty());

    SetRegistryValue(HKEY_LOCAL_MACHINE, L"SOFTWARE\\nhupdate", L"name", value);
  }

  EXPECT_FALSE(value_of(HKEY_CURRENT_USER));
  EXPECT_FALSE(value_of(HKEY_LOCAL_MACHINE));
}

TEST(RegistryRecorderTest, WritesDownWhatIsWrittenAndStored) {
  const ScratchRegistry registry;
  RegistryRecorder recorder;
  recorder.FailAtValue(2);

  EXPECT_EQ(SetRegString(L"SOFTWARE\\nhupdate", L"first", L"a"), 1);
  EXPECT_EQ(SetRegString(L"SOFTWARE\\nhupdate", L"second", L"b"), 0);

  const WrittenValue first = Text(L"SOFTWARE\\nhupdate", L"first", L"a");
  EXPECT_EQ(recorder.Written(), std::vector<WrittenValue>({first}));
  EXPECT_EQ(recorder.OpenedKeys(), 2);
  EXPECT_EQ(recorder.OpenKeys(), 0);
  EXPECT_EQ(StoredValue(L"SOFTWARE\\nhupdate", L"first"), first);
  EXPECT_EQ(StoredValue(L"SOFTWARE\\nhupdate", L"second").type, DWORD{REG_NONE});
}

}  // namespace
}  // namespace nhupdate_test
