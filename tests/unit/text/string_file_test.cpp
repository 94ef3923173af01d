#include "text/string_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {
namespace {

struct FileChoice {
  std::vector<std::wstring> languages;  // those that there are files for
  std::wstring language;
  std::wstring chosen;
};

TEST(ChooseStringFileTest, FallsBackToTheGeneralLanguageAndThenToDefault) {
  const FileChoice choices[] = {
      {{L"pt-BR", L"pt", L"Default"}, L"pt-BR", L"pt-BR"},
      {{L"pt", L"Default"}, L"pt-BR", L"pt"},
      {{L"Default"}, L"pt-BR", L"Default"},
      {{}, L"pt-BR", L"Default"},
      {{L"en", L"Default"}, L"pt-BR", L"Default"},
      {{L"pt-BR", L"Default"}, L"pt", L"Default"},
      {{L"pt-BR", L"Default"}, L"pt-PT", L"Default"},
      {{L"pt", L"Default"}, L"pt", L"pt"},
      // Up to the first hyphen, not the last.
      {{L"zh-Hant", L"zh", L"Default"}, L"zh-Hant-TW", L"zh"},
      {{L"zh-Hant", L"Default"}, L"zh-Hant-TW", L"Default"},
      {{L"zh", L"Default"}, L"zh_TW", L"Default"},
      {{L"zh", L"Default"}, L"zh-", L"zh"},
      {{L"Default"}, L"Default", L"Default"},
      {{}, L"Default", L"Default"},
      // A hyphen at the beginning has nothing before it.
      {{L"", L"x", L"Default"}, L"-x", L"Default"},
      {{L"-x", L"Default"}, L"-x", L"-x"},
      {{L"", L"Default"}, L"", L""},
      {{L"Default"}, L"", L"Default"},
  };
  for (const FileChoice& choice : choices) {
    const ScratchFolder scratch;
    for (const std::wstring& language : choice.languages) {
      WriteFileBytes(scratch.Path() + L"\\NHUpdateManager." + language + L".json", "{}");
    }

    EXPECT_EQ(nhupdate::ChooseStringFile(scratch.Path(), choice.language),
              scratch.Path() + L"\\NHUpdateManager." + choice.chosen + L".json")
        << testing::PrintToString(choice.language);
  }
}

TEST(ChooseStringFileTest, TakesWhateverHasTheName) {
  const ScratchFolder scratch;
  const std::wstring folder = scratch.Path() + L"\\NHUpdateManager.de.json";
  CreateFolders(folder);

  EXPECT_EQ(nhupdate::ChooseStringFile(scratch.Path(), L"de"), folder);
}

}  // namespace
}  // namespace nhupdate_test
