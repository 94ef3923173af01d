#include "base/existence.h"
#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/support/files.h"
#include "tests/support/folder_link.h"

namespace nhupdate_test {
namespace {

class LinkEndToEndTest : public EndToEndTest {
 protected:
  // Folders that links are left in can't be removed under Wine.
  ~LinkEndToEndTest() override {
    for (const wchar_t* link : {L"\\Plugins\\Cameras", L"\\Plugins", L"\\Link"}) {
      RemoveFolderLink(hub_.Base() + link);
    }
  }
};

// The base folder is writable for many, and a link in it must not lead the deletion elsewhere.
TEST_F(LinkEndToEndTest, NothingBehindALinkIsDeleted) {
  hub_.StageRelease();
  const std::wstring outside = hub_.Scratch() + L"\\Outside";
  WriteFileBytes(outside + L"\\other.dll", "not ours");
  WriteFileBytes(outside + L"\\Deep\\file.dll", "not ours either");
  CreateFolders(outside + L"\\Empty");
  RemoveTree(hub_.Base() + L"\\Plugins");
  CreateLink(hub_.Base() + L"\\Plugins", outside);

  const ProgramRun run = Run(L"-final_update");

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_EQ(Transcript(), FinalUpdateRecords());
  const std::string untouched = R"(Deep\
Deep\file.dll = not ours either
Empty\
other.dll = not ours
)";
  // Wine can't remove the link itself, so what is installed arrives behind it.
  EXPECT_EQ(DescribeTree(outside), IsUnderWine() ? "Cameras\\\nCameras\\cam.dll = cameras 2.0.0\n" +
                                                       untouched + "sound.dll = sound 2.0.0\n"
                                                 : untouched);
  EXPECT_EQ(ReadFileBytes(hub_.Base() + L"\\Plugins\\sound.dll"), "sound 2.0.0");
}

TEST_F(LinkEndToEndTest, WhatALinkLeadsToSurvivesAnUpdate) {
  hub_.StageRelease();
  const std::wstring outside = hub_.Scratch() + L"\\Outside";
  WriteFileBytes(outside + L"\\cam.dll", "not ours");
  WriteFileBytes(outside + L"\\Deep\\file.txt", "not ours either");
  RemoveTree(hub_.Base() + L"\\Plugins\\Cameras");
  CreateLink(hub_.Base() + L"\\Plugins\\Cameras", outside);
  CreateFolders(hub_.Scratch() + L"\\Outside and empty\\Emptier");
  CreateLink(hub_.Base() + L"\\Link", hub_.Scratch() + L"\\Outside and empty");

  const ProgramRun run = Run(L"-final_update");

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_EQ(Transcript(), FinalUpdateRecords());
  // As above.
  EXPECT_EQ(DescribeTree(outside),
            std::string("Deep\\\nDeep\\file.txt = not ours either\ncam.dll = ") +
                (IsUnderWine() ? "cameras 2.0.0\n" : "not ours\n"));
  EXPECT_EQ(ReadFileBytes(hub_.Base() + L"\\Plugins\\Cameras\\cam.dll"), "cameras 2.0.0");
  EXPECT_TRUE(nhupdate::Exists(hub_.Scratch() + L"\\Outside and empty\\Emptier"));
}

}  // namespace
}  // namespace nhupdate_test
