#include "examples/host/advice.h"

#include <gtest/gtest.h>

namespace nhupdate_test {
namespace {

using nimba_hub::Decision;
using nimba_hub::Mode;

struct Case {
  Mode stage;
  std::optional<DWORD> code;
  Decision decision;
  Mode again;
};

constexpr std::optional<DWORD> kBrokenOff;
constexpr DWORD kNoMemory = 0xC0000017;
constexpr DWORD kCrash = 0xC0000005;

TEST(AdviceTest, SaysWhatToDoAndWhatToTryAgain) {
  constexpr Case kCases[] = {
      {Mode::kDownload, 0, Decision::kAskLater, Mode::kUpdate},
      {Mode::kDownload, 11, Decision::kAskLater, Mode::kUpdate},
      {Mode::kDownload, 12, Decision::kOffer, Mode::kUpdate},
      {Mode::kDownload, 14, Decision::kReinstall, Mode::kUpdate},
      {Mode::kDownload, kNoMemory, Decision::kAskLater, Mode::kUpdate},
      {Mode::kUpdate, 0, Decision::kWaitForEnd, Mode::kUpdate},
      {Mode::kUpdate, 10, Decision::kAnotherDay, Mode::kUpdate},
      {Mode::kUpdate, 13, Decision::kAnotherDay, Mode::kUpdate},
      {Mode::kUpdate, 15, Decision::kAnotherDay, Mode::kUpdate},
      {Mode::kUpdate, 16, Decision::kTryAgain, Mode::kUpdate},
      {Mode::kUpdate, kNoMemory, Decision::kTryAgain, Mode::kUpdate},
      {Mode::kUpdate, kBrokenOff, Decision::kTryAgain, Mode::kUpdate},
      {Mode::kSelfUpdate, 15, Decision::kReinstall, Mode::kUpdate},
      {Mode::kSelfUpdate, 16, Decision::kTryAgain, Mode::kUpdate},
      // Only the staged copy is sure to be whole then.
      {Mode::kSelfUpdate, kBrokenOff, Decision::kTryAgain, Mode::kSelfUpdate},
      {Mode::kFinalUpdate, 0, Decision::kDone, Mode::kUpdate},
      {Mode::kFinalUpdate, 1, Decision::kTryAgain, Mode::kFinalUpdate},
      {Mode::kFinalUpdate, 2, Decision::kFinish, Mode::kFinalUpdate},
      {Mode::kFinalUpdate, kCrash, Decision::kFinish, Mode::kFinalUpdate},
      {Mode::kFinalUpdate, kBrokenOff, Decision::kFinish, Mode::kFinalUpdate},
  };
  for (const Case& example : kCases) {
    SCOPED_TRACE(testing::Message() << "stage " << static_cast<int>(example.stage) << ", code "
                                    << testing::PrintToString(example.code));

    const nimba_hub::Advice advice = nimba_hub::AdviceFor(example.stage, example.code);

    EXPECT_EQ(advice.decision, example.decision);
    EXPECT_EQ(advice.again, example.again);
  }
}

TEST(AdviceTest, HasATextWhereTheUserIsTold) {
  for (int stage = 0; stage <= static_cast<int>(Mode::kFinalUpdate); ++stage) {
    for (DWORD code = 0; code <= 17; ++code) {
      SCOPED_TRACE(testing::Message() << "stage " << stage << ", code " << code);
      const nimba_hub::Advice advice = nimba_hub::AdviceFor(static_cast<Mode>(stage), code);

      const bool is_told =
          advice.decision == Decision::kAnotherDay || advice.decision == Decision::kTryAgain ||
          advice.decision == Decision::kFinish || advice.decision == Decision::kReinstall;
      EXPECT_EQ(std::wstring(advice.text).empty(), !is_told);
    }
  }
}

}  // namespace
}  // namespace nhupdate_test
