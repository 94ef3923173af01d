#include "base/held_folder.h"

#include "tests/support/current_folder.h"
#include "tests/support/fake_listing.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

constexpr DWORD kJunction = 0xA0000003;

class HeldFolderTest : public testing::Test {
 protected:
  HeldFolderTest() { CreateFolders(inner_); }

  ScratchFolder scratch_;
  std::wstring outer_ = scratch_.Path() + L"\\Outer";
  std::wstring inner_ = outer_ + L"\\Middle\\Inner";
};

TEST_F(HeldFolderTest, TellsWhyItCouldNotBeOpened) {
  constexpr std::pair<DWORD, bool> cases[] = {
      {ERROR_FILE_NOT_FOUND, true},     {ERROR_PATH_NOT_FOUND, true}, {ERROR_ACCESS_DENIED, false},
      {ERROR_SHARING_VIOLATION, false}, {ERROR_INVALID_NAME, false},  {ERROR_DIRECTORY, false}};

  for (const auto& [error, is_missing] : cases) {
    INTERPOSER(CreateFileW) open(Answers(INVALID_HANDLE_VALUE, error));
    const CHeldFolder held(inner_);

    EXPECT_EQ(held.Error(), error);
    EXPECT_EQ(held.IsMissing(), is_missing) << error;
    EXPECT_FALSE(held.IsLink()) << error;
    EXPECT_FALSE(held.IsPlain()) << error;
    EXPECT_FALSE(held.IsPlainAt(CPlace())) << error;
    EXPECT_FALSE(held.LiesExactlyAt(CPlace())) << error;
    EXPECT_FALSE(held.LeadsElsewhere(CPlace())) << error;
    EXPECT_EQ(held.MayHold(inner_), !is_missing) << error;
  }
}

TEST_F(HeldFolderTest, HasNoErrorWhenItIsOpen) {
  ::SetLastError(ERROR_FILE_NOT_FOUND);

  const CHeldFolder held(inner_);

  EXPECT_EQ(held.Error(), std::nullopt);
  EXPECT_FALSE(held.IsMissing());
}

TEST_F(HeldFolderTest, CannotBeRemovedOrRenamedButWorkedIn) {
  const std::wstring file = inner_ + L"\\file";
  {
    const CHeldFolder held(inner_);
    EXPECT_FALSE(::RemoveDirectoryW(inner_.c_str()));
    EXPECT_FALSE(::MoveFileW(inner_.c_str(), (inner_ + L" moved").c_str()));
    WriteFileBytes(file, "x");
    EXPECT_TRUE(::DeleteFileW(file.c_str()));
  }

  EXPECT_TRUE(::RemoveDirectoryW(inner_.c_str()));
}

// A folder whose place is unknown is neither plain nor said to lead elsewhere: only a link, or what
// is known to lie elsewhere, does that.
TEST_F(HeldFolderTest, IsJudgedByWhatItIsAndWhereItLies) {
  struct Case {
    const char* name;
    DWORD attributes;       // besides those that it has
    const wchar_t* outer;   // where the folder above really is
    const wchar_t* middle;  // where the one between really is; nothing special if null
    bool is_plain;
    bool leads_elsewhere;
  };
  constexpr DWORD kLink = FILE_ATTRIBUTE_REPARSE_POINT;
  const Case cases[] = {
      {"a folder at its place", 0, L"\\Device\\V1\\O", nullptr, true, false},
      {"a link at its place", kLink, L"\\Device\\V1\\O", nullptr, false, true},
      {"below a link", 0, L"\\Device\\V1\\O", L"\\Device\\V1\\Windows", false, true},
      {"below a link to its own folder", 0, L"\\Device\\V1\\O", L"\\Device\\V1\\O", false, true},
      {"a folder whose place is unknown", 0, L"\\Device\\V1\\O", L"", false, false},
      {"a link whose place is unknown", kLink, L"\\Device\\V1\\O", L"", false, true},
      {"a folder below an unknown place", 0, L"", L"\\Device\\V1\\O\\Middle", false, false},
      {"a folder where no place is known", 0, L"", L"", false, false},
  };

  for (const Case& c : cases) {
    FakeListing windows;
    windows.LeadElsewhere(outer_, c.outer);
    if (c.middle != nullptr) {
      windows.LeadElsewhere(outer_ + L"\\Middle", c.middle);
    }
    windows.Disguise(inner_, c.attributes, kJunction);
    const CHeldFolder held(inner_);
    const CPlace place = PlaceSeenFrom(outer_, inner_);

    EXPECT_EQ(held.IsLink(), c.attributes == kLink) << c.name;
    EXPECT_EQ(held.IsPlain(), c.attributes != kLink) << c.name;
    EXPECT_EQ(held.IsPlainAt(place), c.is_plain) << c.name;
    EXPECT_EQ(held.LeadsElsewhere(place), c.leads_elsewhere) << c.name;
  }
}

TEST_F(HeldFolderTest, IsAtItsPlaceByWhateverNames) {
  const CHeldFolder held(outer_ + L"\\MIDDLE\\inner");

  EXPECT_TRUE(held.IsPlainAt(PlaceOfFolder(inner_)));
  EXPECT_FALSE(held.LeadsElsewhere(PlaceOfFolder(inner_)));
  EXPECT_TRUE(held.IsPlainAt(PlaceSeenFrom(inner_.substr(0, 2), inner_)));
  EXPECT_TRUE(held.LiesExactlyAt(PlaceOfFolder(inner_)));
  EXPECT_TRUE(held.IsPlainAt(PlaceOfFolder(outer_).Below(L"\\MIDDLE\\inner")));
  EXPECT_FALSE(held.LiesExactlyAt(PlaceOfFolder(outer_).Below(L"\\MIDDLE\\inner")));
  EXPECT_FALSE(held.IsPlainAt(PlaceOfFolder(outer_)));
  EXPECT_TRUE(held.LeadsElsewhere(PlaceOfFolder(outer_)));
}

// It stays there as long as it is held.
TEST_F(HeldFolderTest, IsAskedForItsPlaceOnce) {
  const CPlace place = PlaceOfFolder(inner_);
  const CPlace other = PlaceOfFolder(outer_);
  const CHeldFolder held(inner_);
  INTERPOSER(GetFinalPathNameByHandleW) final_path([](auto...) {});

  EXPECT_TRUE(held.LiesExactlyAt(place));
  EXPECT_FALSE(held.LiesExactlyAt(other));
  EXPECT_FALSE(held.LiesExactlyAt(CPlace()));
  EXPECT_TRUE(held.IsPlainAt(place));
  EXPECT_TRUE(held.LeadsElsewhere(other));

  EXPECT_EQ(final_path.Calls(), 1);
}

TEST_F(HeldFolderTest, MayHoldItselfAndWhatIsBelowByWhateverName) {
  const CurrentFolder drive(outer_.substr(0, 3));
  for (const std::wstring& name :
       {outer_, outer_.substr(2), scratch_.Path() + L"\\OUTER", outer_ + L"\\Middle\\..\\."}) {
    const CHeldFolder held(name);

    EXPECT_TRUE(held.MayHold(outer_)) << PrintToString(name);
    EXPECT_TRUE(held.MayHold(inner_)) << PrintToString(name);
  }
}

TEST_F(HeldFolderTest, HoldsNothingAboveOrBesideItNorWithoutBeingThere) {
  CreateFolders(outer_ + L"\\Mid");
  CreateFolders(outer_ + L" too");
  const CHeldFolder held(outer_ + L"\\Middle");

  EXPECT_FALSE(held.MayHold(outer_));
  EXPECT_FALSE(held.MayHold(outer_ + L"\\Mid"));
  EXPECT_FALSE(CHeldFolder(outer_).MayHold(outer_ + L" too"));
  EXPECT_FALSE(CHeldFolder(outer_ + L"\\Missing").MayHold(inner_));
  EXPECT_FALSE(CHeldFolder(outer_ + L"\\Missing\\Too").MayHold(inner_));
}

// A link on its way can lead the folder or the path elsewhere.
TEST_F(HeldFolderTest, HoldsAPathByWhereTheTwoReallyAre) {
  const struct {
    const wchar_t* folder;
    const wchar_t* path;
    bool expected;
  } cases[] = {
      {L"\\Device\\V1\\Hub", L"\\Device\\V1\\HUB\\App", true},
      {L"\\Device\\V1\\Hub", L"\\Device\\V1\\Hub 2", false},
      {L"", L"\\Device\\V1\\Hub", true},
      {L"\\Device\\V1\\Hub", L"", true},
  };

  for (const auto& c : cases) {
    FakeListing windows;
    windows.LeadElsewhere(outer_, c.folder);
    windows.LeadElsewhere(scratch_.Path(), c.path);

    EXPECT_EQ(CHeldFolder(outer_).MayHold(scratch_.Path()), c.expected)
        << PrintToString(c.path) << " in " << PrintToString(c.folder);
  }
}

TEST_F(HeldFolderTest, MayHoldAPathThatCannotBeOpened) {
  const std::wstring beside = scratch_.Path() + L"\\Beside";
  CreateFolders(beside);
  EXPECT_FALSE(CHeldFolder(outer_).MayHold(beside));

  const INTERPOSER(CreateFileW) open(AnswersFor(beside, INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));

  EXPECT_TRUE(CHeldFolder(outer_).MayHold(beside));
}

// A link in the place of the folder is opened itself, one in the place of the path is followed.
TEST_F(HeldFolderTest, LooksBehindLinksOnlyForWhatItMayHold) {
  using Opening = std::pair<std::wstring, DWORD>;
  std::vector<Opening> openings;
  const INTERPOSER(CreateFileW) open(
      [&](const wchar_t* path, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD flags, auto...) {
        openings.emplace_back(path, flags & FILE_FLAG_OPEN_REPARSE_POINT);
      });

  EXPECT_TRUE(CHeldFolder(outer_).MayHold(inner_));

  EXPECT_THAT(openings,
              ElementsAre(Opening(outer_, FILE_FLAG_OPEN_REPARSE_POINT), Opening(inner_, 0)));
}

}  // namespace
}  // namespace nhupdate_test
