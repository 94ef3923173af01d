// The host of examples/host, as the product's program, updates itself.

#include <algorithm>
#include <atomic>
#include <functional>
#include <iterator>
#include <optional>

#include "base/unique_handle.h"
#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/other_copy.h"
#include "tests/end_to_end/support/program_end.h"
#include "tests/end_to_end/support/texts.h"
#include "tests/support/child_process.h"
#include "tests/support/files.h"
#include "tests/support/held_file.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr wchar_t kProductWindow[] = L"Corvane.NimbaHub.Product";
constexpr wchar_t kHelperWindow[] = L"Corvane.NimbaHub.Update";
constexpr DWORD kLimitMs = 60'000;
constexpr DWORD kAlreadyRunning = 2;

constexpr char kOffer[] = "Install it now?";
constexpr char kHalfDone[] = "The update is not finished";

// Closes a window, once.
class CClosing {
 public:
  explicit CClosing(const wchar_t* window_class, const wchar_t* title = nullptr)
      : class_(window_class), title_(title) {}

  void operator()() {
    const HWND window = is_done_ ? nullptr : ::FindWindowW(class_, title_);
    is_done_ = is_done_ || (window != nullptr && ::PostMessageW(window, WM_CLOSE, 0, 0));
  }

  [[nodiscard]] bool IsDone() const { return is_done_; }

 private:
  const wchar_t* class_;
  const wchar_t* title_;
  bool is_done_ = false;
};

DWORD OwnerOf(HWND window) {
  DWORD id = 0;
  ::GetWindowThreadProcessId(window, &id);
  return id;
}

// The helper lies in the folder for temporary files, which is the test's own as long as this lives.
class CTemporaryFolder {
 public:
  explicit CTemporaryFolder(const std::wstring& folder) {
    before_.resize(::GetEnvironmentVariableW(kName, before_.data(), MAX_PATH));
    ::SetEnvironmentVariableW(kName, folder.c_str());
  }
  ~CTemporaryFolder() {
    ::SetEnvironmentVariableW(kName, before_.empty() ? nullptr : before_.c_str());
  }
  CTemporaryFolder(const CTemporaryFolder&) = delete;
  CTemporaryFolder& operator=(const CTemporaryFolder&) = delete;

 private:
  static constexpr wchar_t kName[] = L"TMP";
  std::wstring before_ = std::wstring(MAX_PATH, L'\0');
};

class HostExampleTest : public EndToEndTest {
 protected:
  HostExampleTest() {
    hub_.PutStandIn(L"nimba_hub_host", Host());
    hub_.PutStandIn(L"nimba_hub_host", hub_.Release() + L"\\NHHub.exe");
    AppendFileBytes(hub_.Release() + L"\\NHHub.exe", "2.0.0");
    hub_.Script(L"check NIMBAHUB", {.exit_code = 0});
    hub_.Script(L"download NIMBAHUB", {.exit_code = 0});
    hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 1});
    hub_.Script(L"NIMBAHUB", {.exit_code = 0, .stage = hub_.Release()});
  }

  [[nodiscard]] std::wstring Host() const { return hub_.Base() + L"\\NHHub.exe"; }

  // Runs the host until it and all that it has started have ended. Elevated, since Wine doesn't
  // know of consent: "runas" gives no rights there that weren't there before.
  [[nodiscard]] ProgramRun RunHost(const std::function<void()>& while_running,
                                   const BoxAnswer& answer = {},
                                   const std::wstring& more = {}) const {
    return RunToTheEnd({.executable = Host(),
                        .arguments = L"--first-check 0 --check-every 1" + more,
                        .time_limit_ms = kLimitMs,
                        .while_running = while_running,
                        .answer = answer});
  }

  // The exit code of one more host.
  [[nodiscard]] DWORD RunSecondHost() const {
    const ChildProcess second = StartChild(L"\"" + Host() + L"\"");
    EXPECT_EQ(::WaitForSingleObject(second.handle.Get(), kLimitMs / 4), DWORD{WAIT_OBJECT_0});
    DWORD code = 0;
    ::GetExitCodeProcess(second.handle.Get(), &code);
    return code;
  }

  // The process of a stage that has begun; 0 when it hasn't.
  [[nodiscard]] DWORD StageNamed(const std::wstring& name) const {
    for (const HubLogRecord& record : ReadLog(hub_)) {
      if (record.text == L"2|Function : " + name) {
        return record.process_id;
      }
    }
    return 0;
  }

  [[nodiscard]] static std::vector<DWORD> CodesOf(const ProgramRun& run) {
    std::vector<DWORD> codes;
    std::ranges::transform(run.managers, std::back_inserter(codes), &ManagerProcess::exit_code);
    return codes;
  }

  [[nodiscard]] static std::vector<std::string> TextsOf(const ProgramRun& run) {
    std::vector<std::string> texts;
    std::ranges::transform(run.boxes, std::back_inserter(texts), &WatchedBox::text);
    return texts;
  }

  CClosing close_product_{kProductWindow};
  CClosing close_new_product_{kProductWindow, L"Nimba Hub 2.0.0"};

 private:
  CTemporaryFolder temporary_folder_{hub_.Scratch()};
};

TEST_F(HostExampleTest, AsksAgainAndAgainWhileThereIsNothingNew) {
  hub_.Script(L"check NIMBAHUB", {.exit_code = 1});
  WriteFileBytes(hub_.App() + L"\\Version.txt", "[ProductVersion]\r\nVersion=1.0.0\r\n");
  const auto close_after_two = [&] {
    if (std::ranges::count(ReadLog(hub_), L"2|Return 11", &HubLogRecord::text) >= 2) {
      close_product_();
    }
  };

  const ProgramRun run = RunHost(close_after_two);

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_THAT(CodesOf(run), testing::AllOf(SizeIs(testing::Ge(2U)), testing::Each(11U)));
  EXPECT_THAT(run.boxes, IsEmpty());
}

TEST_F(HostExampleTest, InstallsTheUpdateThatTheUserAccepts) {
  const ProgramRun run = RunHost(std::ref(close_new_product_));

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, 0, 0));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer)));
  EXPECT_THAT(ReadFileBytes(Host()), testing::EndsWith("2.0.0"));
  EXPECT_TRUE(close_new_product_.IsDone());
}

TEST_F(HostExampleTest, LeavesTheUserAloneWhoDeclines) {
  constexpr ULONGLONG kThreeChecksMs = 3'000;
  std::atomic<ULONGLONG> declined_at = 0;
  const auto close_later = [&] {
    if (declined_at > 0 && ::GetTickCount64() > declined_at + kThreeChecksMs) {
      close_product_();
    }
  };

  const ProgramRun run = RunHost(close_later, [&](const WatchedBox&) {
    declined_at = ::GetTickCount64();
    return IDCANCEL;
  });

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_THAT(CodesOf(run), ElementsAre(12));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer)));
}

TEST_F(HostExampleTest, TellsTheUserThatTheUpdateHasFailed) {
  hub_.Script(L"NIMBAHUB", {.exit_code = -5});
  DWORD first = 0;
  const auto close_restarted = [&] {
    const DWORD owner = OwnerOf(::FindWindowW(kProductWindow, L"Nimba Hub 1.0.0"));
    first = first == 0 ? owner : first;
    if (owner != 0 && owner != first) {
      close_product_();
    }
  };

  const ProgramRun run = RunHost(close_restarted);

  EXPECT_THAT(CodesOf(run), ElementsAre(12, 13));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer), HasSubstr(kCommonError),
                                        HasSubstr("Nimba Hub has not been updated.")));
  EXPECT_TRUE(close_product_.IsDone());
}

TEST_F(HostExampleTest, FinishesAnUpdateThatWasHindered) {
  HeldFile held(hub_.Base() + L"\\Version.txt", FILE_SHARE_READ);
  const auto release_and_retry = [&](const WatchedBox& box) {
    if (box.text.find(kHalfDone) == std::string::npos) {
      return IDOK;
    }
    held.Release();
    return IDRETRY;
  };

  const ProgramRun run = RunHost(std::ref(close_new_product_), release_and_retry);

  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, 0, 2, 0));
  EXPECT_THAT(TextsOf(run),
              ElementsAre(HasSubstr(kOffer), HasSubstr("Version.txt"), HasSubstr(kHalfDone)));
  EXPECT_TRUE(close_new_product_.IsDone());
}

TEST_F(HostExampleTest, DoesNotStartAProductThatIsHalfReplaced) {
  // The first in the folder, so that the product could still be started.
  const std::wstring file = hub_.Base() + L"\\1.txt";
  WriteFileBytes(file, "held");
  const HeldFile held(file, FILE_SHARE_READ);

  const ProgramRun run = RunHost({}, [&](const WatchedBox& box) {
    return box.text.find(kHalfDone) == std::string::npos ? IDOK : IDCANCEL;
  });

  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, 0, 2));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer), HasSubstr("1.txt"), HasSubstr(kHalfDone),
                                        HasSubstr("Please install it again.")));
}

TEST_F(HostExampleTest, GoesOnWithAnUpdateThatWasBrokenOff) {
  bool is_ended = false;
  const auto break_off = [&] {
    const DWORD id = is_ended ? 0 : StageNamed(L"Self Update");
    if (id != 0) {
      const nhupdate::UniqueKernelHandle process(::OpenProcess(PROCESS_TERMINATE, FALSE, id));
      is_ended = ::TerminateProcess(process.Get(), kEndedByTest);
    }
    close_new_product_();
  };

  const ProgramRun run = RunHost(break_off, [&](const WatchedBox& box) {
    return box.text.find("The update was stopped.") == std::string::npos ? IDOK : IDRETRY;
  });

  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, kEndedByTest, 0, 0));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer), HasSubstr("The update was stopped.")));
  EXPECT_TRUE(close_new_product_.IsDone());
}

TEST_F(HostExampleTest, NeedsNoLog) {
  hub_.UseLogLibrary(L"");
  ::DeleteFileW((hub_.Release() + L"\\NHUpdateManager\\NSWLogDynamic64U.dll").c_str());

  const ProgramRun run = RunHost(std::ref(close_new_product_));

  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, 0, 0));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer)));
  EXPECT_TRUE(close_new_product_.IsDone());
}

TEST_F(HostExampleTest, IsNotStartedTwice) {
  std::optional<DWORD> code;
  const auto start_second = [&] {
    if (!code && ::FindWindowW(kProductWindow, nullptr) != nullptr) {
      code = RunSecondHost();
      close_product_();
    }
  };

  const ProgramRun run = RunHost(start_second, {}, L" --first-check 3600");

  EXPECT_EQ(code, kAlreadyRunning);
  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_THAT(CodesOf(run), IsEmpty());
  EXPECT_THAT(run.boxes, IsEmpty());
}

TEST_F(HostExampleTest, IsNotStartedDuringAnUpdate) {
  hub_.Script(L"NIMBAHUB", {.exit_code = 0, .delay_ms = 2'500, .stage = hub_.Release()});
  std::optional<DWORD> code;
  const auto start_second = [&] {
    if (!code && LogHolds(hub_, "] Launch updater success for update.") &&
        ::FindWindowW(kProductWindow, nullptr) == nullptr) {
      code = RunSecondHost();
    }
    close_new_product_();
  };

  const ProgramRun run = RunHost(start_second);

  EXPECT_EQ(code, kAlreadyRunning);
  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, 0, 0));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer)));
  EXPECT_TRUE(close_new_product_.IsDone());
}

TEST_F(HostExampleTest, DoesNotUpdateUnderSomebodyElsesHands) {
  const COtherCopy other_session(hub_.Scratch() + L"\\NHHub.exe");
  std::atomic<bool> is_told = false;
  const auto close_when_told = [&] {
    if (is_told) {
      close_product_();
    }
  };

  const ProgramRun run = RunHost(close_when_told, [&](const WatchedBox& box) {
    is_told = box.text.find("another user") != std::string::npos;
    return IDOK;
  });

  EXPECT_THAT(CodesOf(run), ElementsAre(12));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer), HasSubstr("another user")));
}

TEST_F(HostExampleTest, StopsWaitingWhenTheUserClosesTheWindow) {
  hub_.Script(L"NIMBAHUB", {.exit_code = 0, .delay_ms = 2'500, .stage = hub_.Release()});
  CClosing close_helper(kHelperWindow);
  const auto close_in_update = [&] {
    if (LogHolds(hub_, "] Launch updater success for update.")) {
      close_helper();
    }
  };

  const ProgramRun run = RunHost(close_in_update);

  EXPECT_TRUE(close_helper.IsDone());
  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, 0, 0));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer), HasSubstr("still going on")));
}

TEST_F(HostExampleTest, StopsWaitingAfterTheLongestTime) {
  hub_.Script(L"NIMBAHUB", {.exit_code = 0, .delay_ms = 2'500, .stage = hub_.Release()});

  const ProgramRun run = RunHost({}, {}, L" --longest-wait 1");

  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, 0, 0));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer), HasSubstr("still going on")));
}

TEST_F(HostExampleTest, TellsTheUserThatTheUpdaterIsMissing) {
  ::DeleteFileW((hub_.Updater() + L"\\Updater.exe").c_str());
  std::atomic<bool> is_told = false;
  const auto close_when_told = [&] {
    if (is_told) {
      close_product_();
    }
  };

  const ProgramRun run = RunHost(close_when_told, [&](const WatchedBox&) {
    is_told = true;
    return IDOK;
  });

  EXPECT_THAT(CodesOf(run), ElementsAre(14));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr("Please install it again.")));
}

}  // namespace
}  // namespace nhupdate_test
