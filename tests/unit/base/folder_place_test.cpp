#include "base/folder_place.h"

#include "tests/support/current_folder.h"
#include "tests/support/fake_listing.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

class PlaceTest : public testing::Test {
 protected:
  PlaceTest() { CreateFolders(inner_); }

  ScratchFolder scratch_;
  std::wstring outer_ = scratch_.Path() + L"\\Outer";
  std::wstring inner_ = outer_ + L"\\Middle\\Inner";
};

// What Windows says of the two folders decides.
TEST_F(PlaceTest, IsComparedWithAnother) {
  struct Case {
    std::wstring one;
    std::wstring other;
    bool is_same;
    bool is_within;
  };
  const std::wstring long_name = L"\\" + std::wstring(400, L'n');
  const std::wstring long_path = L"\\Device\\V1" + long_name;
  const std::wstring longest_in_one_go = L"\\Device\\V1\\" + std::wstring(248, L'n');
  const std::wstring longer_by_one = longest_in_one_go + L"n";
  const Case cases[] = {
      {L"\\Device\\V1\\Hub", L"\\Device\\V1\\Hub", true, true},
      {L"\\Device\\V1\\Hub\\App", L"\\Device\\V1\\Hub", false, true},
      {L"\\Device\\V1\\Hub", L"\\Device\\V1\\Hub\\App", false, false},
      {L"\\Device\\V1\\Hub 2", L"\\Device\\V1\\Hub", false, false},
      {L"\\Device\\V1\\Hub2\\App", L"\\Device\\V1\\Hub", false, false},
      {L"\\Device\\V2\\Hub", L"\\Device\\V1\\Hub", false, false},
      {L"\\Device\\V2\\Hub\\App", L"\\Device\\V1\\Hub", false, false},
      {L"\\Device\\V1\\HUB", L"\\Device\\V1\\Hub", true, true},
      {L"\\Device\\V1\\GR\u00DCN\\App", L"\\Device\\V1\\Gr\u00FCn", false, true},
      // A drive's root.
      {L"\\Device\\V1\\", L"\\Device\\V1\\", true, true},
      {L"\\Device\\V1\\Hub", L"\\Device\\V1\\", false, true},
      {L"\\Device\\V10\\Hub", L"\\Device\\V1\\", false, false},
      {long_path, long_path, true, true},
      {long_path + long_name, long_path, false, true},
      {longest_in_one_go, longest_in_one_go, true, true},
      {longer_by_one, longer_by_one, true, true},
      {longer_by_one, longest_in_one_go, false, false},
      // Unknown ones.
      {L"\\Device\\V1\\Hub", L"", false, false},
      {L"", L"\\Device\\V1\\Hub", false, false},
      {L"", L"", false, false},
  };

  for (const Case& c : cases) {
    SCOPED_TRACE(PrintToString(c.one) + " and " + PrintToString(c.other));
    FakeListing windows;
    windows.LeadElsewhere(outer_, c.one);
    windows.LeadElsewhere(inner_, c.other);
    const CPlace one(HoldFolder(outer_));
    const CPlace other(HoldFolder(inner_));

    EXPECT_EQ(one.IsSameAs(other), c.is_same);
    EXPECT_EQ(one.IsWithin(other), c.is_within);
    EXPECT_EQ(one.IsKnown(), !c.one.empty());
  }
}

// A folder can be told to take "Hub" and "HUB" for two names.
TEST_F(PlaceTest, IsExactlyAnotherOnlyInTheSameLetterCase) {
  const CPlace place = PlaceOfFolder(outer_);

  EXPECT_TRUE(place.Below(L"\\Middle").IsExactly(place.Below(L"\\Middle")));
  EXPECT_FALSE(place.Below(L"\\MIDDLE").IsExactly(place.Below(L"\\Middle")));
  EXPECT_FALSE(place.Below(L"\\Middle").IsExactly(place));
}

TEST_F(PlaceTest, IsNotEvenTheSameAsItselfWhenItIsUnknown) {
  const CPlace unknown;

  EXPECT_FALSE(unknown.IsKnown());
  EXPECT_FALSE(unknown.IsSameAs(unknown));
  EXPECT_FALSE(unknown.IsExactly(unknown));
  EXPECT_FALSE(unknown.IsWithin(unknown));
  EXPECT_FALSE(unknown.Below(L"\\a").IsKnown());
}

// Without links and short names, and in the form that every volume has, also one without a letter.
TEST_F(PlaceTest, IsAskedForInTheKernelsNormalForm) {
  std::vector<DWORD> forms;
  INTERPOSER(GetFinalPathNameByHandleW) final_path([&](HANDLE, wchar_t*, DWORD, DWORD form) {
    forms.push_back(form);
    return DWORD{300};
  });

  std::ignore = CPlace(HoldFolder(outer_));

  EXPECT_EQ(forms, (std::vector<DWORD>{0x2, 0x2}));
}

TEST_F(PlaceTest, IsUnknownWhenItGetsLongerWhileItIsAskedFor) {
  INTERPOSER(GetFinalPathNameByHandleW) final_path(
      [&](HANDLE, wchar_t*, DWORD units, DWORD) { return units + 50; });

  EXPECT_FALSE(CPlace(HoldFolder(outer_)).IsKnown());
  EXPECT_EQ(final_path.Calls(), 4);  // in both forms
}

// Some network drives don't tell long names.
TEST_F(PlaceTest, IsKnownWhereTheLongNamesAreNotToBeHad) {
  const CPlace normalized = PlaceOfFolder(inner_);
  INTERPOSER(GetFinalPathNameByHandleW) final_path(
      [&](HANDLE file, wchar_t* buffer, DWORD units, DWORD form) {
        return (form & FILE_NAME_OPENED) != 0 ? final_path.Original()(file, buffer, units, form)
                                              : Answers(DWORD{0}, ERROR_NOT_SUPPORTED)();
      });

  EXPECT_TRUE(PlaceOfFolder(inner_).IsSameAs(normalized));
}

// Others who have the folder open may keep it from being held, but not from being looked at.
TEST_F(PlaceTest, IsKnownOfAFolderThatSomebodyKeepsToHimself) {
  const HeldFile exclusive(inner_, 0, DELETE | FILE_LIST_DIRECTORY);

  EXPECT_FALSE(HoldFolderItself(inner_).IsValid());
  EXPECT_TRUE(PlaceOfFolder(inner_).IsKnown());
  EXPECT_TRUE(IsPlainFolder(LookAtItself(inner_)));
}

TEST_F(PlaceTest, IsTheSameByEveryName) {
  const CPlace place = PlaceOfFolder(inner_);
  const CurrentFolder drive(inner_.substr(0, 3));

  EXPECT_TRUE(PlaceOfFolder(scratch_.Path() + L"\\OUTER\\middle\\inner").IsSameAs(place));
  EXPECT_TRUE(PlaceOfFolder(outer_ + L"\\.\\Middle\\..\\Middle\\Inner").IsSameAs(place));
  EXPECT_TRUE(PlaceOfFolder(inner_.substr(2)).IsSameAs(place));
  EXPECT_FALSE(PlaceOfFolder(outer_).IsSameAs(place));
  EXPECT_FALSE(PlaceOfFolder(outer_ + L"\\Missing").IsKnown());
}

// The letter alone would mean the drive's current folder.
TEST_F(PlaceTest, IsTheRootOfABareDrive) {
  const CurrentFolder somewhere_on_it(outer_);
  const CPlace drive = PlaceOfFolder(outer_.substr(0, 2));

  EXPECT_TRUE(drive.IsSameAs(PlaceOfFolder(outer_.substr(0, 3))));
  EXPECT_FALSE(drive.IsSameAs(PlaceOfFolder(outer_)));
  EXPECT_TRUE(PlaceOfFolder(outer_).IsWithin(drive));
}

TEST_F(PlaceTest, IsSeenFromAFolderAboveItWithoutALookAtTheWay) {
  const CPlace inner = PlaceOfFolder(inner_);

  EXPECT_TRUE(PlaceSeenFrom(inner_, inner_).IsSameAs(inner));
  EXPECT_TRUE(PlaceSeenFrom(outer_, inner_).IsSameAs(inner));
  EXPECT_TRUE(PlaceSeenFrom(inner_.substr(0, 2), inner_).IsSameAs(inner));
  EXPECT_TRUE(PlaceSeenFrom(scratch_.Path() + L"\\OUTER", inner_).IsSameAs(inner));
  EXPECT_TRUE(PlaceSeenFrom(outer_, outer_ + L"\\Missing").IsKnown());
}

TEST_F(PlaceTest, IsNotSeenFromAnywhereElse) {
  CreateFolders(outer_ + L"\\Mid");

  for (const std::wstring& anchor :
       {outer_ + L"\\Mid", inner_ + L"\\Below", outer_ + L"\\Missing", std::wstring()}) {
    EXPECT_FALSE(PlaceSeenFrom(anchor, inner_).IsKnown()) << PrintToString(anchor);
  }
  EXPECT_FALSE(PlaceSeenFrom(outer_ + L"\\Missing", outer_ + L"\\Missing").IsKnown());
}

// The anchor may be reached by a link, what is below it may not.
TEST_F(PlaceTest, IsSeenBelowWhereTheAnchorReallyIs) {
  const struct {
    const wchar_t* anchor;
    const wchar_t* folder;
    bool is_there;
  } cases[] = {
      {L"\\Device\\V1\\Outer", L"\\Device\\V1\\Outer\\Middle\\Inner", true},
      {L"\\Device\\V9\\Real", L"\\Device\\V9\\Real\\Middle\\Inner", true},
      {L"\\Device\\V9\\", L"\\Device\\V9\\Middle\\Inner", true},
      {L"\\Device\\V1\\Outer", L"\\Device\\V1\\Windows", false},
      {L"\\Device\\V1\\Outer", L"\\Device\\V1\\Outer\\Inner", false},
      {L"\\Device\\V1\\Outer", L"\\Device\\V2\\Outer\\Middle\\Inner", false},
      {L"\\Device\\V1\\Outer", L"", false},
      {L"", L"\\Device\\V1\\Outer\\Middle\\Inner", false},
      {L"", L"", false},
  };

  for (const auto& c : cases) {
    FakeListing windows;
    windows.LeadElsewhere(outer_, c.anchor);
    windows.LeadElsewhere(inner_, c.folder);

    EXPECT_EQ(PlaceOfFolder(inner_).IsSameAs(PlaceSeenFrom(outer_, inner_)), c.is_there)
        << PrintToString(c.folder) << " below " << PrintToString(c.anchor);
  }
}

}  // namespace
}  // namespace nhupdate_test
