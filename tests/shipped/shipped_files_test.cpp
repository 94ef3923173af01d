#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>

#include "tests/shipped/pe_image.h"
#include "tests/support/files.h"
#include "tests/support/packaged_folder.h"

namespace nhupdate_test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr WORD kHardening = IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA |
                            IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE |
                            IMAGE_DLLCHARACTERISTICS_NX_COMPAT;

// In bytes.
#ifdef _MSC_VER
// It brings another run-time library along, whose size nobody has measured here.
constexpr std::size_t kLargestProgram = 700'000;
constexpr std::size_t kLargestLogLibrary = 500'000;
#else
constexpr std::size_t kLargestProgram = 220'000;
constexpr std::size_t kLargestLogLibrary = 180'000;
#endif

class ShippedBinaryTest : public testing::TestWithParam<const wchar_t*> {
 protected:
  const CPeImage image_{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(, ShippedBinaryTest,
                         testing::Values(L"NHUpdateManager.exe", L"NSWLogDynamic64U.dll"),
                         [](const auto& test) {
                           return std::wstring(test.param) == L"NHUpdateManager.exe" ? "Program"
                                                                                     : "LogLibrary";
                         });

// So that nothing large comes in unseen. Who needs more raises the limit, and says what for.
TEST_P(ShippedBinaryTest, IsNoLargerThanItNeedsToBe) {
  const bool is_program = std::wstring(GetParam()) == L"NHUpdateManager.exe";

  EXPECT_LE(ReadFileBytes(PackagedFolder() + L"\\" + GetParam()).size(),
            is_program ? kLargestProgram : kLargestLogLibrary);
}

TEST_P(ShippedBinaryTest, CarriesNoSymbols) {
  EXPECT_EQ(image_.FileHeader().NumberOfSymbols, 0U);
}

TEST_P(ShippedBinaryTest, IsA64BitImageWithAllHardeningThatTheLinkerKnows) {
  EXPECT_EQ(image_.FileHeader().Machine, IMAGE_FILE_MACHINE_AMD64);
  EXPECT_EQ(image_.Header().DllCharacteristics & kHardening, kHardening);
  EXPECT_NE(image_.Header().DataDirectory[IMAGE_DIRECTORY_ENTRY_BASERELOC].Size, 0U);
}

// The stack protector that comes with the compiler loads the system's cryptographic DLLs, before
// the program has restricted where DLLs may come from.
TEST_P(ShippedBinaryTest, LoadsNothingCryptographicBeforeItBegins) {
  const std::vector<std::string> functions = image_.ImportedFunctions();

  EXPECT_THAT(functions, Contains("WaitForSingleObject"));
  EXPECT_THAT(functions, Not(Contains(StartsWith("Crypt"))));
  EXPECT_THAT(functions, Not(Contains("SystemFunction036")));  // which hands out random numbers
}

// The same sources give the same bytes: where the time would stand, some linkers leave nothing and
// others write a hash of the content, and say so.
TEST_P(ShippedBinaryTest, CarriesNoBuildTime) {
  EXPECT_TRUE(image_.FileHeader().TimeDateStamp == 0U || image_.SaysThatItsTimeIsAHash());
}

TEST_P(ShippedBinaryTest, SaysWhatItIsInItsVersionResource) {
  EXPECT_EQ(image_.VersionText(L"ProductName"), L"Nimba Hub");
  EXPECT_EQ(image_.VersionText(L"CompanyName"), L"Corvane");
  EXPECT_EQ(image_.VersionText(L"OriginalFilename"), GetParam());
  EXPECT_EQ(image_.VersionText(L"FileVersion"), NHUPDATE_VERSION);
  EXPECT_EQ(image_.VersionText(L"ProductVersion"), NHUPDATE_VERSION);
  const VS_FIXEDFILEINFO fixed = image_.FixedVersion();
  EXPECT_EQ(std::to_wstring(HIWORD(fixed.dwFileVersionMS)) + L"." +
                std::to_wstring(LOWORD(fixed.dwFileVersionMS)) + L"." +
                std::to_wstring(HIWORD(fixed.dwFileVersionLS)),
            NHUPDATE_VERSION);
  EXPECT_EQ(fixed.dwProductVersionMS, fixed.dwFileVersionMS);
  EXPECT_EQ(fixed.dwProductVersionLS, fixed.dwFileVersionLS);
}

TEST(ShippedProgramTest, IsAConsoleProgramThatExportsNothing) {
  const CPeImage image(L"NHUpdateManager.exe");

  EXPECT_EQ(image.Header().Subsystem, IMAGE_SUBSYSTEM_WINDOWS_CUI);
  EXPECT_TRUE(image.ExportedNames().empty());
}

// The program walks folders recursively, so deep ones need a large stack.
TEST(ShippedProgramTest, ReservesAStackOf64Mebibytes) {
  EXPECT_EQ(CPeImage(L"NHUpdateManager.exe").Header().SizeOfStackReserve, 64U * 1024U * 1024U);
}

TEST(ShippedProgramTest, HasAManifestThatSaysWhatItNeedsAndKnows) {
  const std::string manifest = CPeImage(L"NHUpdateManager.exe").Manifest();

  // It asks for no rights.
  EXPECT_THAT(manifest, HasSubstr("level=\"asInvoker\""));
  // It knows long paths and the current Windows.
  EXPECT_THAT(manifest, HasSubstr(">true</longPathAware>"));
  EXPECT_THAT(manifest, HasSubstr("{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"));
  // Its boxes are sharp and look like those of the system.
  EXPECT_THAT(manifest, HasSubstr(">true/pm</dpiAware>"));
  EXPECT_THAT(manifest, HasSubstr(">PerMonitorV2, PerMonitor</dpiAwareness>"));
  EXPECT_THAT(manifest,
              HasSubstr("name=\"Microsoft.Windows.Common-Controls\" version=\"6.0.0.0\""));
}

// Not all of them are needed: a compiler that brings its own runtime does without msvcrt.dll.
TEST(ShippedProgramTest, ImportsFromSystemDllsOnly) {
  EXPECT_THAT(CPeImage(L"NHUpdateManager.exe").ImportedDlls(),
              testing::IsSubsetOf({"advapi32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll",
                                   "shell32.dll", "user32.dll"}));
}

TEST(ShippedLogLibraryTest, ImportsFromSystemDllsAndExportsItsFourEntriesOnly) {
  const CPeImage image(L"NSWLogDynamic64U.dll");

  EXPECT_THAT(image.ImportedDlls(),
              testing::IsSubsetOf({"advapi32.dll", "kernel32.dll", "msvcrt.dll"}));
  EXPECT_THAT(image.ExportedNames(), testing::ElementsAre("Flush", "Start", "Stop", "WriteLog"));
}

}  // namespace
}  // namespace nhupdate_test
