// The library in several processes that write one log at the same time.

#include <memory>

#include "log_library/rotated_files.h"
#include "tests/log_library/test_log.h"
#include "tests/log_library/writer_process.h"

namespace nhupdate_test {
namespace {

using testing::Ge;

// Enough files that nothing is deleted.
constexpr char kKeepAll[] = "MaxFileSizeKB=64\nMaxFiles=1000\n";

// All files one after the other: the rotated ones by their number, then the current one.
std::vector<std::wstring> FilesInOrder(const LogPlace& place) {
  std::map<unsigned, std::wstring> rotated;
  for (const RotatedFile& file : ListRotatedFiles(place.Folder())) {
    rotated[file.number] = place.Folder() + L"\\" + file.name;
  }
  std::vector<std::wstring> files;
  for (const auto& [number, file] : rotated) {
    files.push_back(file);
  }
  files.push_back(place.CurrentFile());
  return files;
}

// The numbers that each writer's records carry, in the order of the log.
std::map<std::string, std::vector<int>> NumbersByWriter(const LogPlace& place) {
  std::map<std::string, std::vector<int>> numbers;
  for (const std::wstring& file : FilesInOrder(place)) {
    for (const std::string& text : ReadTexts(file)) {
      const std::size_t blank = text.find(' ');
      numbers[text.substr(0, blank)].push_back(std::stoi(text.substr(blank)));
    }
  }
  return numbers;
}

std::uint64_t SizeOf(const std::wstring& file) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  ::GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data);
  return (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
}

// Whether they count from 0 on without a gap.
bool AreInOrder(const std::vector<int>& numbers) {
  int expected = 0;
  return std::all_of(numbers.begin(), numbers.end(),
                     [&](int number) { return number == expected++; });
}

// Fails the test when that takes longer than even a busy machine needs.
void WaitUntil(const std::function<bool()>& has_come) {
  constexpr ULONGLONG kLimitMs = 100 * 1000;
  const ULONGLONG begin = ::GetTickCount64();
  while (!has_come()) {
    ASSERT_LT(::GetTickCount64() - begin, kLimitMs);
    ::Sleep(1);
  }
}

TEST(SeveralProcessesTest, WriteEveryRecordOnceWholeAndInOrderWhileTheFilesRotate) {
  constexpr int kRecords = 5'000;
  const LogPlace place(kKeepAll);
  const WriterGate gate;
  std::vector<std::unique_ptr<WriterProcess>> writers;
  for (const wchar_t* name : {L"a", L"b", L"c", L"d"}) {
    writers.push_back(std::make_unique<WriterProcess>(place, gate, name, kRecords));
  }

  gate.Open();
  for (const auto& writer : writers) {
    EXPECT_EQ(writer->Wait(), 0);
  }

  const auto numbers = NumbersByWriter(place);
  EXPECT_EQ(numbers.size(), 4u);
  for (const auto& [name, of_writer] : numbers) {
    EXPECT_EQ(of_writer.size(), static_cast<std::size_t>(kRecords)) << name;
    EXPECT_TRUE(AreInOrder(of_writer)) << name;
  }
  EXPECT_GT(FilesInOrder(place).size(), 20u) << "not enough rotations";
}

TEST(SeveralProcessesTest, RotatedFilesAreFullAndHardlyMore) {
  constexpr std::uint64_t kLimit = 64 * 1024;
  constexpr std::uint64_t kRecordSize = 200;
  const LogPlace place(kKeepAll);
  const WriterGate gate;
  WriterProcess first(place, gate, L"a", 2500);
  WriterProcess second(place, gate, L"b", 2500);

  gate.Open();
  EXPECT_EQ(first.Wait(), 0);
  EXPECT_EQ(second.Wait(), 0);

  std::vector<std::wstring> files = FilesInOrder(place);
  files.pop_back();
  EXPECT_FALSE(files.empty());
  for (const std::wstring& file : files) {
    EXPECT_GE(SizeOf(file), kLimit) << PrintToString(file);
    EXPECT_LT(SizeOf(file), kLimit + kRecordSize) << PrintToString(file);
  }
}

TEST(SeveralProcessesTest, AKilledWriterLosesNothingThatWasWritten) {
  const LogPlace place(kKeepAll);
  const WriterGate first_gate;
  const WriterGate second_gate;
  WriterProcess victim(place, first_gate, L"victim", 100'000'000);
  WriterProcess survivor(place, second_gate, L"survivor", 10'000);
  first_gate.Open();
  WaitUntil([&] { return Exists(place.RotatedFile(1)); });
  second_gate.Open();
  WaitUntil([&] { return Exists(place.RotatedFile(3)); });

  victim.Kill();
  const int result = survivor.Wait();

  // Parsing them shows that no record is torn, the victim's last one included.
  const auto numbers = NumbersByWriter(place);
  EXPECT_EQ(result, 0);
  EXPECT_TRUE(AreInOrder(numbers.at("victim")));
  EXPECT_EQ(numbers.at("survivor").size(), 10'000u);
  EXPECT_TRUE(AreInOrder(numbers.at("survivor")));
}

// Writers are killed somewhere, mostly in their turns, since they do nothing but write.
class KilledWritersTest : public testing::Test {
 protected:
  // At least 20 writers are killed, and more until two of them were in the middle of a record: when
  // that happens is chance.
  template <typename CountOfUnfinished>
  void WriteBehindKilledWriters(CountOfUnfinished count_of_unfinished) {
    constexpr std::uint64_t kBytesOfAVictim = 20'000;
    constexpr int kFewest = 20;
    constexpr int kMost = 100;
    for (; victims_ < kFewest || (count_of_unfinished() < 2 && victims_ < kMost); ++victims_) {
      const int number = victims_;
      const WriterGate gate;
      WriterProcess victim(log_, gate, L"victim" + std::to_wstring(number), 100'000'000);
      const std::uint64_t size_before = SizeOf(log_.CurrentFile());
      gate.Open();
      WaitUntil([&] { return SizeOf(log_.CurrentFile()) > size_before + kBytesOfAVictim; });
      victim.Kill();
      const INTERPOSER(Sleep) sleep(log_.Module(), [](DWORD) {});
      INTERPOSER(WaitForSingleObject) wait(log_.Module(), [&](auto... all) {
        turns_.push_back(wait.Original()(all...));
        return turns_.back();
      });
      const INTERPOSER(OpenMutexW) look(log_.Module(), [&](auto...) { ++looks_at_victims_; });
      log_.Write(L"survivor " + std::to_wstring(number));
      EXPECT_EQ(sleep.Calls(), 0);
    }
  }

  void ExpectThatNothingIsLost() const {
    const auto numbers = NumbersByWriter(log_);
    EXPECT_EQ(numbers.size(), static_cast<std::size_t>(victims_) + 1);
    for (const auto& [name, of_writer] : numbers) {
      EXPECT_TRUE(AreInOrder(of_writer)) << name;
    }
    EXPECT_THAT(turns_, SizeIs(victims_));
    EXPECT_THAT(turns_, Each(AnyOf(DWORD{WAIT_OBJECT_0}, DWORD{WAIT_ABANDONED})));
  }

  StartedLog log_{"MaxFileSizeKB=5120\n"};
  int victims_ = 0;
  std::vector<DWORD> turns_;
  int looks_at_victims_ = 0;
};

TEST_F(KilledWritersTest, KeepNobodyWaitingWhoWantsTheirStandingTurn) {
  WriteBehindKilledWriters([&] { return looks_at_victims_; });

  ExpectThatNothingIsLost();
  EXPECT_GE(looks_at_victims_, 2);
}

// Nobody has a standing turn while there is such a mutex.
TEST_F(KilledWritersTest, KeepNobodyWaitingWhoWantsTheMutex) {
  const UniqueKernelHandle unshared(
      ::CreateMutexW(nullptr, FALSE, L"Global\\NHUpdateManager.log.unshared"));

  WriteBehindKilledWriters(
      [&] { return std::count(turns_.begin(), turns_.end(), DWORD{WAIT_ABANDONED}); });

  ExpectThatNothingIsLost();
  // If a turn that was taken over weren't given back, no later victim could leave one behind.
  EXPECT_THAT(turns_, Contains(DWORD{WAIT_ABANDONED}).Times(Ge(2)));
  EXPECT_EQ(looks_at_victims_, 0);
}

}  // namespace
}  // namespace nhupdate_test
