#include "log/log_center.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "tests/support/captured_console.h"
#include "tests/support/fake_log_library.h"
#include "tests/support/files.h"
#include "tests/unit/log/log_library_files.h"

namespace nhupdate_test {
namespace {

using nhupdate::CNSWLogCenter;
using testing::ElementsAre;
using testing::IsEmpty;

void Stop(CNSWLogCenter& center) {
  center.StopLog();
}

void Unload(CNSWLogCenter& center) {
  center.UnloadLogLibrary();
}

void Write(CNSWLogCenter& center) {
  center.WriteRecord(4, L"tag", L"text");
}

void Start(CNSWLogCenter& center) {
  std::ignore = center.StartLog(L"again", L"c2", L"f2");
}

// Everything that happens between the log centre, Windows and the library, in its order; what was
// printed stands where it was first seen.
std::wstring Events(const std::string& missing_entry, int start_result,
                    const std::function<void(CNSWLogCenter&)>& use) {
  const CapturedConsole console;
  std::wstring events;
  std::wstring printed;
  const auto look_at_console = [&] {
    const std::wstring all = console.Text();
    events += all == printed ? L"" : L"[" + all.substr(printed.size()) + L"] ";
    printed = all;
  };
  FakeLogLibrary library;
  library.missing_entry = missing_entry;
  library.start_result = start_result;
  library.on_event = [&](const std::string& event, const std::wstring& details) {
    look_at_console();
    events += std::wstring(event.begin(), event.end()) +
              (details.empty() ? L"" : L"(" + details + L")") + L"; ";
  };
  {
    CNSWLogCenter center;
    use(center);
  }
  look_at_console();
  return events;
}

const std::wstring kResolved = L"Resolve Start; Resolve Stop; Resolve Flush; Resolve WriteLog; ";
const std::wstring kStarted = L"Load(a); " + kResolved + L"Start(1.0.0|c|f); ";

TEST(LogCenterTest, UsesTheLibraryFromLoadToFree) {
  struct Case {
    const char* name;
    std::vector<void (*)(CNSWLogCenter&)> steps;
    std::wstring events;
  };
  const Case cases[] = {
      {"destruction alone", {}, L"Stop; Free; "},
      {"stopping", {Stop}, L"Stop; Stop; Free; "},
      {"stopping twice", {Stop, Stop}, L"Stop; Stop; Stop; Free; "},
      {"unloading", {Unload}, L"Stop; Free; "},
      {"unloading twice", {Unload, Unload}, L"Stop; Free; "},
      {"stopping after unloading", {Unload, Stop}, L"Stop; Free; "},
      {"the program's normal end", {Stop, Unload}, L"Stop; Stop; Free; "},
      {"a record", {Write}, L"WriteLog(4|tag|text); Stop; Free; "},
      {"a late record", {Stop, Write}, L"Stop; WriteLog(4|tag|text); Stop; Free; "},
      {"a record that comes too late", {Unload, Write}, L"Stop; Free; "},
      {"starting again", {Start}, L"Stop; Free; "},
      {"starting again after unloading",
       {Unload, Start, Write},
       L"Stop; Free; Load(again); " + kResolved +
           L"Start(1.0.0|c2|f2); WriteLog(4|tag|text); Stop; Free; "},
  };

  for (const Case& c : cases) {
    EXPECT_EQ(Events("", 0,
                     [&](CNSWLogCenter& center) {
                       EXPECT_EQ(center.StartLog(L"a", L"c", L"f"), 1) << c.name;
                       for (const auto& step : c.steps) {
                         step(center);
                       }
                     }),
              kStarted + c.events)
        << c.name;
  }
}

TEST(LogCenterTest, KeepsALibraryThatRefusesToStart) {
  EXPECT_EQ(Events("", 7,
                   [](CNSWLogCenter& center) {
                     EXPECT_EQ(center.StartLog(L"a", L"c", L"f"), 0);
                     Write(center);
                     // It counts as running from then on.
                     EXPECT_EQ(center.StartLog(L"a", L"c", L"f"), 1);
                   }),
            kStarted + L"[Log start fail : 7\n] WriteLog(4|tag|text); Stop; Free; ");
}

// It is stopped, though never started, if it can be.
TEST(LogCenterTest, DropsALibraryAtItsFirstMissingEntry) {
  struct Case {
    const char* missing_entry;
    const wchar_t* events;
  };
  const Case cases[] = {
      {"Start", L"Load(a); Resolve Start; [Fail to load Start from library\n] Free; "},
      {"Stop", L"Load(a); Resolve Start; Resolve Stop; [Fail to load Stop from library\n] Free; "},
      {"Flush",
       L"Load(a); Resolve Start; Resolve Stop; Resolve Flush; "
       L"[Fail to load Flush from library\n] Stop; Free; "},
      {"WriteLog",
       L"Load(a); Resolve Start; Resolve Stop; Resolve Flush; Resolve WriteLog; "
       L"[Fail to load WriteLog from library\n] Stop; Free; "},
  };

  for (const Case& c : cases) {
    EXPECT_EQ(Events(c.missing_entry, 0,
                     [](CNSWLogCenter& center) {
                       EXPECT_EQ(center.StartLog(L"a", L"c", L"f"), 0);
                       Write(center);
                       Stop(center);
                     }),
              c.events);
  }
}

TEST(LogCenterTest, DoesNothingWithoutALibrary) {
  EXPECT_EQ(Events("", 0,
                   [](CNSWLogCenter& center) {
                     Write(center);
                     Stop(center);
                     Unload(center);
                   }),
            L"");
}

TEST(LogCenterTest, LetsTheLibraryCallBack) {
  std::vector<std::string> events;
  CNSWLogCenter center;
  FakeLogLibrary library;
  library.on_event = [&](const std::string& event, const std::wstring& details) {
    events.push_back(event);
    if (event == "Start" || event == "Stop" || details == L"4|tag|text") {
      center.WriteRecord(2, L"tag", L"from within");
    }
  };

  ASSERT_EQ(center.StartLog(L"a", L"c", L"f"), 1);
  events.clear();
  Write(center);
  Unload(center);

  EXPECT_THAT(events, ElementsAre("WriteLog", "WriteLog", "Stop", "WriteLog", "Free"));
}

// While one thread is within the library, or loads or frees it, another one waits.
TEST(LogCenterTest, LetsOneThreadAtATimeIntoTheLibrary) {
  constexpr auto kPatience = std::chrono::milliseconds(50);
  struct Case {
    const char* inside;
    void (*other)(CNSWLogCenter&);
  };
  const Case cases[] = {{"Load", Write},    {"Start", Write},     {"WriteLog", Write},
                        {"WriteLog", Stop}, {"WriteLog", Unload}, {"WriteLog", Start},
                        {"Stop", Write},    {"Free", Write}};

  for (const Case& c : cases) {
    CNSWLogCenter center;
    std::atomic<bool> is_begun = false;
    std::atomic<bool> is_done = false;
    std::jthread other;
    FakeLogLibrary library;
    library.on_event = [&](const std::string& event, const std::wstring&) {
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

    Start(center);
    Write(center);
    Unload(center);
    other.join();
    EXPECT_TRUE(is_done) << c.inside;
    Unload(center);
  }
}

// With libraries that are files.
class LogLibraryTest : public testing::Test {
 protected:
  LogLibraryFiles files_;
  CapturedConsole console_;
  CNSWLogCenter center_;
};

TEST_F(LogLibraryTest, GetsPathsAndRecordsAsTheyAre) {
  const std::wstring library = files_.Add(L"recording_log");
  const std::wstring long_message(200'000, L'\u00FC');
  ASSERT_EQ(center_.StartLog(library, L"C:\\100%s\\LogConfig.ini", L""), 1);
  EXPECT_TRUE(IsLoaded(library));

  center_.WriteRecord(3, L"tag \u00FC", L"100%s %d \u7E41");
  center_.WriteRecord(-1, L"tag", L"two\nlines");
  center_.WriteRecord(2, L"tag", long_message);
  center_.UnloadLogLibrary();

  EXPECT_FALSE(IsLoaded(library));
  EXPECT_THAT(files_.Calls(), ElementsAre(L"Start|1.0.0|C:\\100%s\\LogConfig.ini|",
                                          L"WriteLog|3|tag \u00FC|100%s %d \u7E41",
                                          L"WriteLog|-1|tag|two\u240Alines",
                                          L"WriteLog|2|tag|" + long_message, L"Stop"));
  EXPECT_EQ(console_.Bytes(), "");
}

TEST_F(LogLibraryTest, IsNamedWhenItCannotBeLoaded) {
  const std::wstring missing = files_.Folder() + L"\\missing.dll";
  const std::wstring folder = files_.Folder() + L"\\folder.dll";
  const std::wstring text_file = files_.Folder() + L"\\text \u00FC.dll";
  const std::wstring empty_file = files_.Folder() + L"\\empty.dll";
  CreateFolders(folder);
  WriteFileBytes(text_file, "This is no library.");
  WriteFileBytes(empty_file, "");

  std::wstring expected;
  for (const std::wstring& library : {missing, folder, text_file, empty_file}) {
    EXPECT_EQ(center_.StartLog(library, L"c", L"f"), 0) << testing::PrintToString(library);
    expected += L"Fail to load library : " + library + L"\n";
    EXPECT_EQ(console_.Text(), expected);
  }
  EXPECT_THAT(files_.Calls(), IsEmpty());
}

TEST_F(LogLibraryTest, MayBeAGoodOneAfterBadOnes) {
  const std::wstring incomplete = files_.Add(L"recording_log_without_flush");
  ASSERT_EQ(center_.StartLog(files_.Folder() + L"\\missing.dll", L"c", L"f"), 0);
  ASSERT_EQ(center_.StartLog(incomplete, L"c", L"f"), 0);
  EXPECT_FALSE(IsLoaded(incomplete));

  EXPECT_EQ(center_.StartLog(files_.Add(L"recording_log"), L"c", L"f"), 1);

  EXPECT_THAT(files_.Calls(), ElementsAre(L"Stop", L"Start|1.0.0|c|f"));
}

}  // namespace
}  // namespace nhupdate_test
