#include "log/log_center.h"

#include <atomic>
#include <chrono>
#include <thread>

#include "tests/support/captured_console.h"
#include "tests/support/fake_log_library.h"
#include "tests/support/log_journal.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

// What is done with a log centre.
using Step = void (*)(CNSWLogCenter&);

const Step kStart = [](CNSWLogCenter& center) {
  std::ignore = center.StartLog(L"again", L"c2", L"f2");
};
const Step kWrite = [](CNSWLogCenter& center) { center.WriteRecord(4, L"tag", L"text"); };
const Step kStop = [](CNSWLogCenter& center) { center.StopLog(); };
const Step kUnload = [](CNSWLogCenter& center) { center.UnloadLogLibrary(); };

// Everything that happens between a log centre, Windows and the library until the centre is gone,
// in its order; what was printed stands where it was first seen.
class LogCenterTest : public testing::Test {
 protected:
  LogCenterTest() {
    library_.on_event = [this](const std::string& event, const std::wstring& details) {
      LookAtConsole();
      events_ += std::wstring(event.begin(), event.end()) +
                 (details.empty() ? L"" : L"(" + details + L")") + L"; ";
    };
  }

  std::wstring EventsOf(const std::function<void(CNSWLogCenter&)>& use) {
    events_.clear();
    {
      CNSWLogCenter center;
      use(center);
    }
    LookAtConsole();
    return events_;
  }

  void LookAtConsole() {
    const std::wstring all = console_.Text();
    events_ += all == printed_ ? L"" : L"[" + all.substr(printed_.size()) + L"] ";
    printed_ = all;
  }

  const std::wstring resolved_ = L"Resolve Start; Resolve Stop; Resolve Flush; Resolve WriteLog; ";
  const std::wstring started_ = L"Load(a); " + resolved_ + L"Start(1.0.0|c|f); ";
  const CapturedConsole console_;
  std::wstring printed_;
  std::wstring events_;
  FakeLogLibrary library_;
};

TEST_F(LogCenterTest, UsesTheLibraryFromLoadToFree) {
  const struct {
    const char* name;
    std::vector<Step> steps;
    std::wstring events;
  } cases[] = {
      {"destruction alone", {}, L"Stop; Free; "},
      {"stopping", {kStop}, L"Stop; Stop; Free; "},
      {"stopping twice", {kStop, kStop}, L"Stop; Stop; Stop; Free; "},
      {"unloading", {kUnload}, L"Stop; Free; "},
      {"unloading twice", {kUnload, kUnload}, L"Stop; Free; "},
      {"stopping after unloading", {kUnload, kStop}, L"Stop; Free; "},
      {"the program's normal end", {kStop, kUnload}, L"Stop; Stop; Free; "},
      {"a record", {kWrite}, L"WriteLog(4|tag|text); Stop; Free; "},
      {"a late record", {kStop, kWrite}, L"Stop; WriteLog(4|tag|text); Stop; Free; "},
      {"a record that comes too late", {kUnload, kWrite}, L"Stop; Free; "},
      {"starting again", {kStart}, L"Stop; Free; "},
      {"starting again after unloading",
       {kUnload, kStart, kWrite},
       L"Stop; Free; Load(again); " + resolved_ +
           L"Start(1.0.0|c2|f2); WriteLog(4|tag|text); Stop; Free; "},
  };
  for (const auto& c : cases) {
    const std::wstring events = EventsOf([&](CNSWLogCenter& center) {
      EXPECT_EQ(center.StartLog(L"a", L"c", L"f"), 1) << c.name;
      for (const Step step : c.steps) {
        step(center);
      }
    });

    EXPECT_EQ(events, started_ + c.events) << c.name;
  }
}

TEST_F(LogCenterTest, KeepsALibraryThatRefusesToStart) {
  library_.start_result = 7;

  const std::wstring events = EventsOf([](CNSWLogCenter& center) {
    EXPECT_EQ(center.StartLog(L"a", L"c", L"f"), 0);
    kWrite(center);
    // It counts as running after the first attempt.
    EXPECT_EQ(center.StartLog(L"a", L"c", L"f"), 1);
  });

  EXPECT_EQ(events, started_ + L"[Log start fail : 7\n] WriteLog(4|tag|text); Stop; Free; ");
}

// The library is stopped although it was never started, if its "Stop" has been found.
TEST_F(LogCenterTest, DropsALibraryAtItsFirstMissingEntry) {
  const struct {
    const char* missing_entry;
    const wchar_t* events;
  } cases[] = {
      {"Start", L"Load(a); Resolve Start; [Fail to load Start from library\n] Free; "},
      {"Stop", L"Load(a); Resolve Start; Resolve Stop; [Fail to load Stop from library\n] Free; "},
      {"Flush",
       L"Load(a); Resolve Start; Resolve Stop; Resolve Flush; "
       L"[Fail to load Flush from library\n] Stop; Free; "},
      {"WriteLog",
       L"Load(a); Resolve Start; Resolve Stop; Resolve Flush; Resolve WriteLog; "
       L"[Fail to load WriteLog from library\n] Stop; Free; "},
  };
  for (const auto& c : cases) {
    library_.missing_entry = c.missing_entry;

    const std::wstring events = EventsOf([](CNSWLogCenter& center) {
      EXPECT_EQ(center.StartLog(L"a", L"c", L"f"), 0);
      kWrite(center);
      kStop(center);
    });

    EXPECT_EQ(events, c.events);
  }
}

TEST_F(LogCenterTest, DoesNothingWithoutALibrary) {
  const std::wstring events = EventsOf([](CNSWLogCenter& center) {
    kWrite(center);
    kStop(center);
    kUnload(center);
  });

  EXPECT_EQ(events, L"");
}

TEST_F(LogCenterTest, LetsTheLibraryCallBack) {
  std::vector<std::string> events;
  CNSWLogCenter center;
  library_.on_event = [&](const std::string& event, const std::wstring& details) {
    events.push_back(event);
    if (event == "Start" || event == "Stop" || details == L"4|tag|text") {
      center.WriteRecord(2, L"tag", L"from within");
    }
  };

  ASSERT_EQ(center.StartLog(L"a", L"c", L"f"), 1);
  events.clear();
  kWrite(center);
  kUnload(center);

  EXPECT_THAT(events, ElementsAre("WriteLog", "WriteLog", "Stop", "WriteLog", "Free"));
}

// While one thread is within the library, or loads or frees it, another one waits.
TEST_F(LogCenterTest, LetsOneThreadAtATimeIntoTheLibrary) {
  constexpr auto kPatience = std::chrono::milliseconds(50);
  const struct {
    const char* inside;
    Step other;
  } cases[] = {{"Load", kWrite},    {"Start", kWrite},     {"WriteLog", kWrite},
               {"WriteLog", kStop}, {"WriteLog", kUnload}, {"WriteLog", kStart},
               {"Stop", kWrite},    {"Free", kWrite}};
  for (const auto& c : cases) {
    CNSWLogCenter center;
    std::atomic<bool> is_begun = false;
    std::atomic<bool> is_done = false;
    std::jthread other;
    library_.on_event = [&](const std::string& event, const std::wstring&) {
      if (event != c.inside || is_begun.exchange(true)) {
        return;
      }
      other = std::jthread([&] {
        c.other(center);
        is_done = true;
      });
      const auto end = std::chrono::steady_clock::now() + kPatience;
      while (!is_done && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
      }
      EXPECT_FALSE(is_done) << c.inside;
    };

    kStart(center);
    kWrite(center);
    kUnload(center);
    other.join();
    EXPECT_TRUE(is_done) << c.inside;
    kUnload(center);
  }
}

// With real libraries instead of the fake one.
class LogLibraryTest : public testing::Test {
 protected:
  LogLibraryTest() { ::SetEnvironmentVariableW(kLogJournalVariable, Path(L"journal").c_str()); }
  ~LogLibraryTest() override { ::SetEnvironmentVariableW(kLogJournalVariable, nullptr); }

  [[nodiscard]] std::wstring Path(const std::wstring& name) const {
    return scratch_.Path() + L"\\" + name;
  }

  [[nodiscard]] static bool IsLoaded(const std::wstring& library) {
    return ::GetModuleHandleW(library.c_str()) != nullptr;
  }

  [[nodiscard]] std::vector<std::wstring> Calls() const {
    std::vector<std::wstring> calls;
    for (const LogCall& call : ReadLogJournal(Path(L"journal"))) {
      calls.push_back(DescribeCall(call));
    }
    return calls;
  }

  ScratchFolder scratch_;
  const std::wstring recording_ = TestProgramFolder() + L"\\recording_log.dll";
  const std::wstring incomplete_ = TestProgramFolder() + L"\\recording_log_without_flush.dll";
  CapturedConsole console_;
  CNSWLogCenter center_;
};

TEST_F(LogLibraryTest, GetsPathsAndRecordsAsTheyAre) {
  const std::wstring long_message(200'000, L'\u00FC');
  ASSERT_EQ(center_.StartLog(recording_, L"C:\\100%s\\LogConfig.ini", L""), 1);
  EXPECT_TRUE(IsLoaded(recording_));

  center_.WriteRecord(3, L"tag \u00FC", L"100%s %d \u7E41");
  center_.WriteRecord(-1, L"tag", L"two\nlines");
  center_.WriteRecord(2, L"tag", long_message);
  center_.UnloadLogLibrary();

  EXPECT_FALSE(IsLoaded(recording_));
  EXPECT_THAT(Calls(), ElementsAre(L"Start|1.0.0|C:\\100%s\\LogConfig.ini|",
                                   L"WriteLog|3|tag \u00FC|100%s %d \u7E41",
                                   L"WriteLog|-1|tag|two\u240Alines",
                                   L"WriteLog|2|tag|" + long_message, L"Stop"));
  EXPECT_EQ(console_.Bytes(), "");
}

TEST_F(LogLibraryTest, IsNamedWhenItCannotBeLoadedAndMayBeAGoodOneAfterwards) {
  CreateFolders(Path(L"folder.dll"));
  WriteFileBytes(Path(L"text \u00FC.dll"), "This is no library.");
  WriteFileBytes(Path(L"empty.dll"), "");
  std::wstring expected;
  for (const wchar_t* name : {L"missing.dll", L"folder.dll", L"text \u00FC.dll", L"empty.dll"}) {
    EXPECT_EQ(center_.StartLog(Path(name), L"c", L"f"), 0) << PrintToString(name);
    expected += L"Fail to load library : " + Path(name) + L"\n";
    EXPECT_EQ(console_.Text(), expected);
  }
  EXPECT_EQ(center_.StartLog(incomplete_, L"c", L"f"), 0);
  EXPECT_FALSE(IsLoaded(incomplete_));

  EXPECT_EQ(center_.StartLog(recording_, L"c", L"f"), 1);

  EXPECT_THAT(Calls(), ElementsAre(L"Stop", L"Start|1.0.0|c|f"));
}

}  // namespace
}  // namespace nhupdate_test
