#include "tests/support/installed_product.h"

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(InstalledProductTest, GivesAManagerThatLogsIntoTheJournal) {
  InstalledProduct product;

  product.Manager().Records().WriteText(LogLevel::kWarning, L"in " + product.Base());

  EXPECT_THAT(product.Transcript(), ElementsAre(L"3|in {base}"));
}

TEST(InstalledProductTest, TellsTheManagerWhetherItIsElevated) {
  InstalledProduct product({.elevated = false});

  EXPECT_FALSE(product.Manager().IsElevated());
}

TEST(InstalledProductTest, PutsTheDataFolderIntoTheScratchFolder) {
  InstalledProduct product;

  product.Start();

  EXPECT_TRUE(Exists(product.ProgramData() + L"\\Corvane\\NimbaSoftware\\NimbaHub\\Log"));
}

TEST(InstalledProductTest, RunsTheWholeProgramInTheScratchFolder) {
  InstalledProduct product({.elevated = false});

  EXPECT_EQ(product.RunProgram(L"-install"), 10);

  EXPECT_THAT(product.Transcript(), Contains(L"2|Return 10"));
}

TEST(InstalledProductTest, RunsTheProgramWithoutArguments) {
  InstalledProduct product;

  EXPECT_EQ(product.RunProgram(L""), 0);

  EXPECT_THAT(product.LogCalls(), IsEmpty());
}

}  // namespace
}  // namespace nhupdate_test
