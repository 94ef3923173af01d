// The manager's start-up.

#include "base/paths.h"
#include "base/strings.h"
#include "base/windows_path.h"
#include "tests/support/captured_console.h"
#include "tests/support/fake_log_library.h"
#include "tests/support/folder_link.h"
#include "tests/support/installed_product.h"
#include "tests/support/placeholders.h"
#include "tests/support/quiet_system.h"
#include "tests/support/told_test.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

constexpr wchar_t kTexts[] = L"\\Config\\NHUpdateManager.Default.json";

class ManagerStartTest : public ToldTest {
 protected:
  // Tells what the log library is called with, what is said on the console, and what is in the
  // ProgramData folder afterwards.
  void TellStart(const std::string& heading, InstalledProduct& product) {
    const std::size_t said_before = console_.Text().size();
    product.Start();
    TellHeading(heading);
    for (const LogCall& call : product.LogCalls()) {
      TellLine(WithPlaceholders(DescribeCall(call), product.Root(), product.ProgramData()));
    }
    std::wstring said = console_.Text().substr(said_before);
    if (said.ends_with(L'\n')) {
      said.pop_back();
      TellLine(L"> " + WithPlaceholders(said, product.Root(), L""));
    }
    TellLines(ListTree(product.ProgramData()));
  }

  CapturedConsole console_;
  QuietSystem system_;
};

TEST_F(ManagerStartTest, TellsWhatItFindsAndWhatItMisses) {
  InstalledProduct product;
  WriteFileBytes(product.Module() + L"\\Config\\NHUpdateManager.en-US.json", R"({"K": "text"})");
  TellStart("Elevated, with texts", product);
  EXPECT_TRUE(product.Manager().IsElevated());
  EXPECT_EQ(product.Manager().GetString(L"K"), L"text");

  InstalledProduct other({.elevated = false});
  TellStart("Neither", other);
  EXPECT_FALSE(other.Manager().IsElevated());
  EXPECT_EQ(other.Manager().GetString(L"K"), L"K");
}

TEST_F(ManagerStartTest, TakesTheTextsOfTheGeneralLanguage) {
  InstalledProduct product;
  WriteFileBytes(product.Module() + L"\\Config\\NHUpdateManager.en.json", R"({"K": "general"})");
  WriteFileBytes(product.Module() + kTexts, R"({"K": "default"})");

  product.Start();

  EXPECT_EQ(product.Manager().GetString(L"K"), L"general");
}

TEST_F(ManagerStartTest, LeavesDataFoldersThatAreThereAlone) {
  InstalledProduct product;
  const std::wstring old_log =
      product.ProgramData() + L"\\Corvane\\NimbaSoftware\\NimbaHub\\Log\\old.log";
  WriteFileBytes(old_log, "old");

  product.Start();

  EXPECT_EQ(ReadFileBytes(old_log), "old");
}

// Every user may write to ProgramData.
TEST_F(ManagerStartTest, CreatesNothingWithoutProgramDataOrBelowALinkThere) {
  {
    InstalledProduct product({.has_program_data = false});
    const INTERPOSER(CreateDirectoryW) create(Answers(FALSE));
    TellStart("No ProgramData", product);
    EXPECT_EQ(create.Calls(), 0);
  }
  for (const std::wstring name :
       {L"\\Corvane", L"\\Corvane\\NimbaSoftware", L"\\Corvane\\NimbaSoftware\\NimbaHub"}) {
    InstalledProduct product;
    const std::wstring link = product.ProgramData() + name;
    const std::wstring elsewhere = product.Root() + L"\\Elsewhere";
    CreateFolders(elsewhere);
    CreateFolders(ParentFolder(link));
    CreateLink(link, elsewhere);

    TellStart("A link", product);

    EXPECT_THAT(ListTree(elsewhere), IsEmpty()) << PrintToString(name);
    product.DestroyManager();
    RemoveFolderLink(link);
  }
}

TEST_F(ManagerStartTest, GoesOnWithoutWhatCannotBeHad) {
  {
    InstalledProduct product;
    const INTERPOSER(CreateDirectoryW) create(Answers(FALSE, ERROR_ACCESS_DENIED));
    TellStart("No folders", product);
    EXPECT_EQ(create.Calls(), 4);
  }
  InstalledProduct silent({.log_library = L""});
  WriteFileBytes(silent.Module() + kTexts, R"({"K": "text"})");
  TellStart("No log library", silent);
  EXPECT_TRUE(silent.Manager().IsElevated());
  EXPECT_EQ(silent.Manager().GetString(L"K"), L"text");

  InstalledProduct refused({.log_library = L"recording_log_start_fails"});
  TellStart("A log library that refuses to start", refused);
}

// With all that is opened or made, and all that the log library is called for, in this order.
class ManagerStartOrderTest : public ManagerStartTest {
 protected:
  std::vector<std::wstring> EffectsOf(const std::wstring& executable) {
    const std::wstring module = ParentFolder(executable.substr(0, 259));
    InstalledProduct product({.log_library = L"", .executable = executable});
    std::vector<std::wstring> effects;
    const auto note = [&](const std::wstring& effect, const std::wstring& details = L"") {
      std::wstring line = effect + WithoutExtendedPrefix(details);
      ReplaceAll(line, module, L"{module}");
      effects.push_back(WithPlaceholders(line, product.Root(), product.ProgramData()));
    };
    FakeLogLibrary library;
    library.on_event = [&](const std::string& event, const std::wstring& details) {
      note(std::wstring(event.begin(), event.end()) + (details.empty() ? L"" : L" "), details);
    };
    const INTERPOSER(CreateDirectoryW) create([&](const wchar_t* path, auto* security) {
      EXPECT_EQ(security, nullptr);
      note(L"create ", path);
    });
    const INTERPOSER(CreateFileW) open([&](const wchar_t* path, auto...) { note(L"open ", path); });
    const INTERPOSER(OpenProcessToken) ask([&](auto...) { note(L"ask for the elevation"); });

    product.Start();

    const std::vector<std::wstring> effects_of_start = effects;
    product.DestroyManager();
    return effects_of_start;
  }
};

TEST_F(ManagerStartOrderTest, IsTheSameForEveryPathAndFollowsItsFirst259Characters) {
  const std::wstring start = L"Q:\\A\\B\\M";
  const std::wstring name = L"\\NHUpdateManager.exe";
  const std::vector<std::wstring> effects = EffectsOf(start + name);
  TellLines(effects);
  for (const std::size_t length : {258U, 259U, 260U, 261U, 275U, 280U, 400U, 5000U}) {
    const std::wstring middle(length - start.size() - name.size(), L'x');

    EXPECT_EQ(EffectsOf(start + middle + name), effects) << length;
  }
  TellHeading("Without a path");
  TellLines(EffectsOf(L""));
}

}  // namespace
}  // namespace nhupdate_test
