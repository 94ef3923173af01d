#pragma once

// The fence around a test executable: every call that changes a file, a folder, a registry value or
// a process is looked at before Windows gets it, and ends the run with a message when it reaches
// outside. A fault in the program may then fail a test, but not delete the files of whoever runs
// it.
//
// The fence is put into the import tables before the tests' fakes, so a call that a fake passes on
// still meets the fence. Libraries that are loaded from a place inside get the same fence.
//
// Not looked at: calls that only read or that change nothing but this process, and changes through
// an open handle, since opening it for changes was looked at. Links are not followed; a test can
// make none that leads outside. What the C runtime writes (reports, coverage) isn't looked at.

namespace nhupdate_test {

// What is inside, for all tests of an executable (tests/cmake/test_executable.cmake chooses it).
enum class FenceReach {
  // Whatever begins with "nhupdate" in the folder for temporary files or in the registry's
  // HKEY_CURRENT_USER\Software, also by way of a hive that is redirected there; processes that the
  // test itself has started, from such a folder or from that of the test executables. No boxes.
  kScratch,
  // The whole drive of the system, the folder for temporary files wherever it is, all of the
  // registry, all processes: for tests that have a Wine prefix of their own. The machine's other
  // drives are still outside. Such an executable runs its tests only under Wine, or on a machine
  // that may be thrown away.
  kPrefix,
};

// The reach for this executable, which links fence_around_scratch.cpp or fence_around_prefix.cpp.
[[nodiscard]] FenceReach ReachOfThisExecutable();

// Raises the fence for the rest of the run. To be called once, before the first test.
void RaiseFence(FenceReach reach);

// On which machines the fence may be opened (throwaway_machine.h).
enum class Machine {
  kThrowaway,
  // What is done outside is harmless on any machine.
  kAnybodys,
};

// Opens the fence as long as the object lives, for what a test has to do outside and undoes again.
// On a machine that isn't meant for it the run ends with a message that gives the reason.
class AllowOutside {
 public:
  explicit AllowOutside(const char* reason, Machine machine = Machine::kThrowaway);
  ~AllowOutside();
  AllowOutside(const AllowOutside&) = delete;
  AllowOutside& operator=(const AllowOutside&) = delete;
};

// The exit code of a run that the fence has ended.
inline constexpr unsigned kEndedAtTheFence = 97;

}  // namespace nhupdate_test
