#include "tests/support/fake_log_library.h"

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

class FakeLogLibraryTest : public testing::Test {
 protected:
  FakeLogLibraryTest() {
    library_.on_event = [this](const std::string& event, const std::wstring& details) {
      events_.push_back(std::wstring(event.begin(), event.end()) + L": " + details);
    };
  }

  template <typename Function>
  Function* Find(const char* name) {
    return reinterpret_cast<Function*>(
        reinterpret_cast<void (*)()>(::GetProcAddress(loaded_, name)));
  }

  FakeLogLibrary library_;
  std::vector<std::wstring> events_;
  HMODULE loaded_ = ::LoadLibraryW(L"C:\\any.dll");
};

TEST_F(FakeLogLibraryTest, TellsEveryCallOfItsEntries) {
  auto* start = Find<int(const char*, const wchar_t*, const wchar_t*)>("Start");
  auto* stop = Find<void()>("Stop");
  auto* flush = Find<void()>("Flush");
  auto* write_log = Find<void(int, const wchar_t*, const wchar_t*)>("WriteLog");
  events_.clear();

  EXPECT_EQ(start("1.0.0", L"C:\\c.ini", L"C:\\log"), 0);
  write_log(2, L"tag", L"text");
  flush();
  stop();

  EXPECT_THAT(events_, ElementsAre(L"Start: 1.0.0|C:\\c.ini|C:\\log", L"WriteLog: 2|tag|text",
                                   L"Flush: ", L"Stop: "));
}

TEST_F(FakeLogLibraryTest, TellsHowItIsLoadedResolvedAndFreedAndLacksOnlyTheMissingEntry) {
  library_.missing_entry = "Flush";

  EXPECT_NE(Find<void()>("Stop"), nullptr);
  EXPECT_EQ(Find<void()>("Flush"), nullptr);
  EXPECT_TRUE(::FreeLibrary(loaded_));

  EXPECT_THAT(events_, ElementsAre(L"Resolve Stop: ", L"Resolve Flush: ", L"Free: "));
}

TEST_F(FakeLogLibraryTest, LeavesOtherLibrariesAlone) {
  EXPECT_NE(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "CreateFileW"), nullptr);

  EXPECT_THAT(events_, IsEmpty());
}

}  // namespace
}  // namespace nhupdate_test
