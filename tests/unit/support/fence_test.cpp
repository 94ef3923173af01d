// The fence ends the process that reaches outside, so the calls are made by processes that are
// started for it (fence_trespasser.cpp).

#include "tests/support/fence.h"

#include "tests/support/child_process.h"
#include "tests/support/unused_name.h"
#include "tests/support/utf8_text.h"
#include "tests/support/windows_basics.h"
#include "tests/unit/support/fence_trespasses.h"

namespace nhupdate_test {
namespace {

// Stands for the trespasser's own process id.
constexpr DWORD kItself = 0;

// A folder with a file in it, a registry key and a program, at which trespassers aim.
class Target {
 public:
  Target(const std::wstring& folder, const std::wstring& key, const std::wstring& program)
      : folder_(folder), key_(L"Software\\" + key), program_(program) {
    const AllowOutside open("what is outside has to be made", Machine::kAnybodys);
    WriteFileBytes(folder_ + L"\\file", "untouched");
    CreateKey(HKEY_CURRENT_USER, key_.c_str());
  }

  ~Target() {
    const AllowOutside open("and unmade", Machine::kAnybodys);
    RemoveTree(folder_);
    ::RegDeleteTreeW(HKEY_CURRENT_USER, key_.c_str());
  }

  Target(const Target&) = delete;
  Target& operator=(const Target&) = delete;

  [[nodiscard]] std::wstring Arguments(const std::wstring& scratch, DWORD process) const {
    return L" \"" + folder_ + L"\" \"" + scratch + L"\" \"" + key_ + L"\" \"" + program_ + L"\" " +
           std::to_wstring(process);
  }

  void ExpectUntouched() const {
    EXPECT_THAT(ListTree(folder_), ElementsAre(L"file"));
    EXPECT_EQ(ReadFileBytes(folder_ + L"\\file"), "untouched");
    EXPECT_EQ(::GetFileAttributesW((folder_ + L"\\file").c_str()) & FILE_ATTRIBUTE_HIDDEN, 0U);
    const UniqueRegistryKey key = OpenKey(key_.c_str(), KEY_QUERY_VALUE);
    EXPECT_TRUE(key.IsValid());
    DWORD keys = 0;
    DWORD values = 0;
    ::RegQueryInfoKeyW(key.Get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values,
                       nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(keys + values, 0U);
  }

 private:
  std::wstring folder_;
  std::wstring key_;
  std::wstring program_;
};

class FenceTest : public testing::Test {
 protected:
  [[nodiscard]] ChildEnd Run(const std::wstring& reach, const std::wstring& call,
                             const Target& target, DWORD process) const {
    const ScratchFolder scratch;
    return RunChild(L"\"" + TestProgramFolder() + L"\\fence_trespasser.exe\" " + reach + L" \"" +
                        call + L"\"" + target.Arguments(scratch.Path(), process),
                    scratch_.Path() + L"\\messages " + UnusedName());
  }

  // Beside the scratch folders, but without the beginning of their names.
  [[nodiscard]] std::wstring OutsideFolder() const {
    const std::wstring& scratch = scratch_.Path();
    return scratch.substr(0, scratch.rfind(L'\\') + 1) + L"beyond the fence " + unused_name_;
  }

  // Should the fence let it start after all, it does no harm and ends at once.
  [[nodiscard]] static std::wstring OutsideProgram() {
    return L"C:\\windows\\system32\\hostname.exe";
  }

  ScratchFolder scratch_;
  std::wstring unused_name_ = UnusedName();
  Target outside_{OutsideFolder(), L"beyond the fence " + unused_name_, OutsideProgram()};
  Target inside_{scratch_.Path() + L"\\target", L"nhupdate fence " + unused_name_,
                 TestProgramFolder() + L"\\idle.exe"};
};

TEST_F(FenceTest, EndsTheRunAtEveryCallThatReachesOutside) {
  for (const auto& [call, make] : kPlacedCalls) {
    const ChildEnd end = Run(L"scratch", call, outside_, ::GetCurrentProcessId());

    EXPECT_EQ(end.exit_code, kEndedAtTheFence) << PrintToString(call);
    std::string function = ToUtf8(call);
    function = function.substr(0, function.find(','));
    function = function.substr(function.rfind(' ') + 1);
    EXPECT_THAT(end.output, HasSubstr("The fence: " + function + " reaches outside with \""));
  }
  outside_.ExpectUntouched();
}

TEST_F(FenceTest, NamesThePlaceThatIsOutside) {
  EXPECT_THAT(Run(L"scratch", L"DeleteFileW", outside_, kItself).output,
              HasSubstr("with \"" + ToUtf8(OutsideFolder()) + "\\file\""));
  EXPECT_THAT(Run(L"scratch", L"RegDeleteTreeW", outside_, kItself).output,
              HasSubstr("\\Software\\beyond the fence " + ToUtf8(unused_name_) + "\""));
}

TEST_F(FenceTest, EndsTheRunAtWhatIsAlwaysOutside) {
  for (const auto& [call, make] : kOutsideCalls) {
    EXPECT_EQ(Run(L"scratch", call, inside_, kItself).exit_code, kEndedAtTheFence)
        << PrintToString(call);
  }
}

TEST_F(FenceTest, LetsTheSameCallsThroughInside) {
  for (const auto& [call, make] : kPlacedCalls) {
    const std::wstring name = L"nhupdate fence " + UnusedName();
    const Target target(scratch_.Path() + L"\\" + name, name, TestProgramFolder() + L"\\idle.exe");
    const ChildEnd end = Run(L"scratch", call, target, kItself);

    EXPECT_EQ(end.exit_code, 0U) << PrintToString(call) << end.output;
  }
}

TEST_F(FenceTest, LetsWhateverOnlyReadsThrough) {
  for (const auto& [call, make] : kReadingCalls) {
    EXPECT_EQ(Run(L"scratch", call, outside_, ::GetCurrentProcessId()).exit_code, 0U)
        << PrintToString(call);
  }
}

TEST_F(FenceTest, OpensForATestThatSaysSo) {
  const ChildEnd end = Run(L"opened", L"DeleteFileW", outside_, kItself);

  EXPECT_EQ(end.exit_code, 0U);
  EXPECT_EQ(end.output, "");
  EXPECT_FALSE(Exists(OutsideFolder() + L"\\file"));
}

TEST_F(FenceTest, StaysClosedOnAMachineThatIsKept) {
  const ChildEnd end = Run(L"kept", L"DeleteFileW", outside_, kItself);

  EXPECT_EQ(end.exit_code, kEndedAtTheFence);
  EXPECT_THAT(end.output, HasSubstr("The fence stays closed (that is what is tried)."));
  EXPECT_THAT(end.output, HasSubstr("NHUPDATE_THROWAWAY_MACHINE=1"));
  outside_.ExpectUntouched();
}

TEST_F(FenceTest, GoesAroundThePrefixWhereThatIsTheScratchFolder) {
  EXPECT_EQ(Run(L"prefix", L"DeleteFileW", outside_, kItself).exit_code, 0U);
  EXPECT_FALSE(Exists(OutsideFolder() + L"\\file"));
  EXPECT_EQ(Run(L"prefix", L"RegDeleteTreeW", outside_, kItself).exit_code, 0U);
  EXPECT_EQ(Run(L"prefix", L"OpenProcess", outside_, ::GetCurrentProcessId()).exit_code, 0U);

  // Another drive is not in the prefix.
  const Target none(scratch_.Path() + L"\\none", L"nhupdate none", L"Z:\\no\\such\\program.exe");
  EXPECT_EQ(Run(L"prefix", L"CreateProcessW", none, kItself).exit_code, kEndedAtTheFence);
}

TEST_F(FenceTest, LeavesTheLastErrorAsItWas) {
  ::SetLastError(4711);
  ::RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\nhupdate no such key");
  EXPECT_EQ(::GetLastError(), 4711U);

  EXPECT_FALSE(::DeleteFileW((scratch_.Path() + L"\\nothing").c_str()));
  EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

}  // namespace
}  // namespace nhupdate_test
