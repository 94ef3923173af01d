// The library in several processes that write one log at the same time.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/existence.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/log_library/writer_process.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::Ge;
using testing::SizeIs;

// Enough files that nothing is deleted.
constexpr char kKeepAll[] = "MaxFileSizeKB=128\nMaxFiles=1000\n";

// The numbers that each writer's records carry, in the order of the log.
std::map<std::string, std::vector<int>> NumbersByWriter(const LogPlace& place) {
  std::map<std::string, std::vector<int>> numbers;
  for (const std::wstring& file : LogFilesInOrder(place.Folder())) {
    for (const std::string& text : ReadTexts(file)) {
      const std::size_t blank = text.find(' ');
      numbers[text.substr(0, blank)].push_back(std::stoi(text.substr(blank)));
    }
  }
  return numbers;
}

std::vector<int> NumbersBelow(int count) {
  std::vector<int> numbers;
  for (int number = 0; number < count; ++number) {
    numbers.push_back(number);
  }
  return numbers;
}

std::uint64_t SizeOf(const std::wstring& file) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  ::GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data);
  return (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
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

void WaitForFile(const std::wstring& path) {
  WaitUntil([&] { return nhupdate::Exists(path); });
}

TEST(SeveralProcessesTest, WriteEveryRecordOnceWholeAndInOrderWhileTheFilesRotate) {
  constexpr int kRecords = 10'000;
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
    EXPECT_TRUE(of_writer == NumbersBelow(kRecords)) << "out of order: " << name;
  }
  EXPECT_GT(LogFilesInOrder(place.Folder()).size(), 20u) << "not enough rotations";
}

TEST(SeveralProcessesTest, RotatedFilesAreFullAndHardlyMore) {
  constexpr std::uint64_t kLimit = 128 * 1024;
  constexpr std::uint64_t kRecordSize = 200;
  const LogPlace place(kKeepAll);
  const WriterGate gate;
  WriterProcess first(place, gate, L"a", 5000);
  WriterProcess second(place, gate, L"b", 5000);

  gate.Open();
  EXPECT_EQ(first.Wait(), 0);
  EXPECT_EQ(second.Wait(), 0);

  std::vector<std::wstring> files = LogFilesInOrder(place.Folder());
  files.pop_back();
  ASSERT_FALSE(files.empty());
  for (const std::wstring& file : files) {
    EXPECT_GE(SizeOf(file), kLimit) << testing::PrintToString(file);
    EXPECT_LT(SizeOf(file), kLimit + kRecordSize) << testing::PrintToString(file);
  }
}

TEST(SeveralProcessesTest, AKilledWriterLosesNothingThatWasWritten) {
  const LogPlace place(kKeepAll);
  const WriterGate first_gate;
  const WriterGate second_gate;
  WriterProcess victim(place, first_gate, L"victim", 100'000'000);
  WriterProcess survivor(place, second_gate, L"survivor", 10'000);
  first_gate.Open();
  WaitForFile(place.RotatedFile(1));
  second_gate.Open();
  WaitForFile(place.RotatedFile(3));

  victim.Kill();
  const int result = survivor.Wait();

  // Parsing them shows that no record is torn, the victim's last one included.
  const auto numbers = NumbersByWriter(place);
  const std::vector<int>& of_victim = numbers.at("victim");
  EXPECT_EQ(result, 0);
  EXPECT_TRUE(of_victim == NumbersBelow(static_cast<int>(of_victim.size())));
  EXPECT_TRUE(numbers.at("survivor") == NumbersBelow(10'000));
}

// A writer is killed somewhere, mostly in its turn, since it does nothing but write.
TEST(SeveralProcessesTest, WritersThatAreKilledInTheirTurnKeepNobodyWaiting) {
  constexpr int kVictims = 20;
  constexpr std::uint64_t kBytesOfAVictim = 20'000;
  StartedLog log("MaxFileSizeKB=5120\n");
  std::vector<DWORD> turns;

  for (int number = 0; number < kVictims; ++number) {
    const WriterGate gate;
    WriterProcess victim(log.place, gate, L"victim" + std::to_wstring(number), 100'000'000);
    const std::uint64_t size_before = SizeOf(log.place.CurrentFile());
    gate.Open();
    WaitUntil([&] { return SizeOf(log.place.CurrentFile()) > size_before + kBytesOfAVictim; });
    victim.Kill();
    Interposer<decltype(::WaitForSingleObject)> wait(
        log.library.Module(), "WaitForSingleObject", [&](HANDLE mutex, DWORD limit_ms) {
          turns.push_back(wait.Original()(mutex, limit_ms));
          return turns.back();
        });
    log.library.Write(L"survivor " + std::to_wstring(number));
  }

  const auto numbers = NumbersByWriter(log.place);
  EXPECT_THAT(turns, SizeIs(kVictims));
  EXPECT_THAT(turns, Each(AnyOf(DWORD{WAIT_OBJECT_0}, DWORD{WAIT_ABANDONED})));
  // After a turn that was taken over and not given back, no other victim would have one.
  EXPECT_THAT(turns, Contains(DWORD{WAIT_ABANDONED}).Times(Ge(2)));
  EXPECT_EQ(numbers.size(), kVictims + 1u);
  for (const auto& [name, of_writer] : numbers) {
    EXPECT_TRUE(of_writer == NumbersBelow(static_cast<int>(of_writer.size()))) << name;
  }
}

}  // namespace
}  // namespace nhupdate_test
