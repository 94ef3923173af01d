#include "tests/unit/update/updater_refresh_test.h"

#include <gtest/gtest.h>

namespace nhupdate_test {
namespace {

TEST_F(UpdaterRefreshTest, EndsWithoutAnUpdater) {
  RemoveUpdater();
  ScriptedShell shell({});

  const int result = RefreshUpdater();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(),
            CheckLines({L"4|Update.exe not found : {base}\\Updater\\Updater.exe"}));
}

struct RefreshCase {
  const char* name;
  ShellAnswer answer;
  Lines lines;
};

void PrintTo(const RefreshCase& test_case, std::ostream* stream) {
  *stream << test_case.name;
}

// Checks that lead to no update of the updater.
const RefreshCase kCheckCases[] = {
    {"NoNewUpdater",
     EndsWith(1),
     {L"2|Launch updater success for check.", L"2|Updater exit = 1",
      L"2|No new updater available."}},
    {"Error2",
     EndsWith(2),
     {L"2|Launch updater success for check.", L"2|Updater exit = 2", L"4|Updater error."}},
    {"ErrorMinus1",
     EndsWith(0xFFFFFFFF),
     {L"2|Launch updater success for check.", L"2|Updater exit = -1", L"4|Updater error."}},
    {"Unreadable", EndsUnreadably(), {L"2|Launch updater success for check."}},
    {"NotLaunched", FailsWith(ERROR_FILE_NOT_FOUND), {L"4|Fail to launch updater for check : 2"}},
};

class RefreshAfterCheckTest : public UpdaterRefreshTest,
                              public testing::WithParamInterface<RefreshCase> {};

TEST_P(RefreshAfterCheckTest, CopiesWhatWasFetchedEarlier) {
  ScriptedShell shell({GetParam().answer});

  const int result = RefreshUpdater();

  EXPECT_EQ(result, 1);
  EXPECT_EQ(InstalledUpdater(), "new");
  EXPECT_EQ(product_.Transcript(),
            Join({CheckLines(GetParam().lines), CopyLines(), CopiedLines()}));
}

INSTANTIATE_TEST_SUITE_P(AllChecks, RefreshAfterCheckTest, testing::ValuesIn(kCheckCases),
                         [](const auto& row) { return std::string(row.param.name); });

// Updates of the updater after which the copy is made.
const RefreshCase kUpdateCases[] = {
    {"Success", EndsWith(0), {L"2|Launch updater success for update.", L"2|Updater exit = 0"}},
    {"Unreadable", EndsUnreadably(), {L"2|Launch updater success for update."}},
};

class RefreshAfterUpdateTest : public UpdaterRefreshTest,
                               public testing::WithParamInterface<RefreshCase> {};

TEST_P(RefreshAfterUpdateTest, CopiesTheNewUpdater) {
  ScriptedShell shell({EndsWith(0), GetParam().answer});

  const int result = RefreshUpdater();

  EXPECT_EQ(result, 1);
  EXPECT_EQ(InstalledUpdater(), "new");
  EXPECT_EQ(product_.Transcript(),
            Join({UpdateLines(GetParam().lines), CopyLines(), CopiedLines()}));
}

INSTANTIATE_TEST_SUITE_P(AllUpdates, RefreshAfterUpdateTest, testing::ValuesIn(kUpdateCases),
                         [](const auto& row) { return std::string(row.param.name); });

// Updates of the updater after which nothing is copied.
const RefreshCase kFailedUpdateCases[] = {
    {"Failed",
     EndsWith(1),
     {L"2|Launch updater success for update.", L"2|Updater exit = 1", L"2|Update fail."}},
    {"SmallestCode",
     EndsWith(0x80000000),
     {L"2|Launch updater success for update.", L"2|Updater exit = -2147483648", L"2|Update fail."}},
    {"NotLaunched", FailsWith(ERROR_ACCESS_DENIED), {L"4|Fail to launch updater for update : 5"}},
};

class RefreshAfterFailedUpdateTest : public UpdaterRefreshTest,
                                     public testing::WithParamInterface<RefreshCase> {};

TEST_P(RefreshAfterFailedUpdateTest, CopiesNothing) {
  ScriptedShell shell({EndsWith(0), GetParam().answer});

  const int result = RefreshUpdater();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(InstalledUpdater(), "old");
  EXPECT_EQ(product_.Transcript(), UpdateLines(GetParam().lines));
}

INSTANTIATE_TEST_SUITE_P(AllUpdates, RefreshAfterFailedUpdateTest,
                         testing::ValuesIn(kFailedUpdateCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(UpdaterRefreshTest, EndsWhenTheUpdaterIsGoneBeforeItsUpdate) {
  ScriptedShell shell({EndsWith(0, [this] { RemoveUpdater(); })});

  const int result = RefreshUpdater();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(),
            UpdateLines({L"4|Update.exe not found : {base}\\Updater\\Updater.exe"}));
}

}  // namespace
}  // namespace nhupdate_test
