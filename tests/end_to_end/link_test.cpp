#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/support/files.h"
#include "tests/support/folder_link.h"
#include "tests/support/log_journal.h"

namespace nhupdate_test {
namespace {

// Everybody may write to some of the product's folders, and the program is elevated: a link in one
// of them must not lead it elsewhere. All that lies elsewhere is in the scratch folder, so a golden
// file shows whether it was touched.
class LinkEndToEndTest : public EndToEndTest {
 protected:
  LinkEndToEndTest() {
    WriteFileBytes(Outside() + L"\\other.dll", "not ours");
    WriteFileBytes(Outside() + L"\\Deep\\file.dll", "not ours either");
    CreateFolders(Outside() + L"\\Empty");
  }

  // Folders that links are left in can't be removed under Wine.
  ~LinkEndToEndTest() override {
    for (const std::wstring& link : links_) {
      RemoveFolderLink(link);
    }
  }

  [[nodiscard]] std::wstring Outside() const { return hub_.Scratch() + L"\\Outside"; }

  // Puts the link in the place of what is there.
  void PutLink(const std::wstring& link, const std::wstring& target) {
    RemoveTree(link);
    CreateLink(link, target);
    links_.push_back(link);
  }

  // The program removes the link itself, but can't under Wine. So it is removed while it waits.
  ProgramRun RunWithoutLinkAtTheSecondAttempt(const std::wstring& link) {
    return RunAs(
        {.executable = hub_.Manager(), .arguments = L"-final_update", .while_running = [&, link] {
           if (LogHolds(hub_, "Copy fail, sleep 3 seconds")) {
             RemoveFolderLink(link);
           }
         }});
  }

 private:
  std::vector<std::wstring> links_;
};

TEST_F(LinkEndToEndTest, NothingArrivesBehindALinkInThePlaceOfAFolder) {
  hub_.StageRelease();
  const std::wstring link = hub_.Base() + L"\\Plugins";
  PutLink(link, Outside());

  ExpectGoldenRun(0, RunWithoutLinkAtTheSecondAttempt(link));
}

TEST_F(LinkEndToEndTest, NothingArrivesBehindALinkBelowAReplacedFolder) {
  hub_.StageRelease();
  const std::wstring link = hub_.Base() + L"\\Plugins\\Cameras";
  PutLink(link, Outside());

  ExpectGoldenRun(0, RunWithoutLinkAtTheSecondAttempt(link));
}

// It is followed neither to copy nor to delete, nor removed as if it were an empty folder.
TEST_F(LinkEndToEndTest, ALinkElsewhereInTheProductStays) {
  PutLink(hub_.Base() + L"\\Link", Outside() + L"\\Empty");

  ExpectGoldenRun(0, Run(L"-final_update"));
}

TEST_F(LinkEndToEndTest, NothingBehindALinkIsCopiedForTheSibling) {
  hub_.Script(L"NIMBACS", {.exit_code = 4});
  CreateFolders(hub_.Updater() + L"\\Temp");
  PutLink(hub_.Updater() + L"\\Temp\\evil", Outside());
  PutLink(hub_.Updater() + L"\\Temp\\round and round", hub_.Root());

  ExpectGoldenRun(0, Run(L"-install"));
}

TEST_F(LinkEndToEndTest, NoAccessIsGrantedToWhatTheConfigurationLeadsTo) {
  PutLink(hub_.Updater() + L"\\Config", Outside());

  ExpectGoldenRun(0, Run(L"-final_update"));
}

TEST_F(LinkEndToEndTest, NoAccessIsGrantedToWhatTheTemporaryFolderLeadsTo) {
  PutLink(hub_.Updater() + L"\\Temp", Outside());

  ExpectGoldenRun(0, Run(L"-final_update"));
}

// No folder for the log is made there either, so the log library is started without one.
TEST_F(LinkEndToEndTest, NoAccessIsGrantedToWhatTheDataFolderLeadsTo) {
  hub_.UseLogLibrary(L"recording_log");
  PutLink(hub_.DataFolder() + L"\\Corvane", Outside());

  ExpectGoldenRun(0, Run(L"-final_update"));

  const std::vector<LogCall> calls = ReadLogJournal(hub_.LogJournal());
  ASSERT_FALSE(calls.empty());
  EXPECT_EQ(calls.front().arguments,
            (std::vector<std::wstring>{L"1.0.0", hub_.Module() + L"\\LogConfig.ini", L""}));
}

TEST_F(LinkEndToEndTest, AnotherFoldersConfigurationFileStays) {
  hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 1});
  hub_.Script(L"NIMBAHUB", {.exit_code = 1});
  WriteFileBytes(Outside() + L"\\ut.ini", "not ours");
  PutLink(hub_.Updater() + L"\\Config", Outside());

  ExpectGoldenRun(13, Run(L"-update"));
}

}  // namespace
}  // namespace nhupdate_test
