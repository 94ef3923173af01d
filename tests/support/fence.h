#pragma once

// The fence around a test executable: every call that changes a file, a folder, a registry value or
// a process is looked at before Windows gets it, and ends the run with a message when it reaches
// outside. A fault in the program may then fail a test, but not delete the files of whoever runs
// it.
//
// The fence lies in the import tables, below the fakes of the tests: a fake that passes a call on
// passes it to the fence. It also goes around each library that is loaded from inside.
//
// Not looked at: what only reads, what changes nothing but this process, and what goes by a handle
// that was opened for changes, since its opening was looked at. Links are not followed; a test can
// make none that leads outside. The C runtime's own files (reports, coverage) are its own matter.

namespace nhupdate_test {

// What is inside, for all tests of an executable (see tests/cmake/test_executable.cmake).
enum class FenceReach {
  // Below the folder for temporary files whatever begins with "nhupdate", in the registry what does
  // so below HKEY_CURRENT_USER\Software, or a hive that is redirected there; the processes that the
  // test itself has started, from there or from the folder of the test executables. No boxes.
  kScratch,
  // The whole drive of the system, all of the registry, all processes: for tests that have a Wine
  // prefix of their own as their scratch folder. The machine's other drives are still outside. Such
  // an executable runs no test elsewhere, unless the machine may be thrown away.
  kPrefix,
};

// Of this executable: comes from fence_around_scratch.cpp or fence_around_prefix.cpp.
[[nodiscard]] FenceReach ReachOfThisExecutable();

// Raises the fence for the rest of the run. To be called once, before the first test.
void RaiseFence(FenceReach reach);

// Whose machine a test may run on (throwaway_machine.h).
enum class Machine {
  kThrowaway,
  // What is done is harmless wherever it lies.
  kAnybodys,
};

// Opens the fence as long as the object lives, for what a test has to do outside and undoes again.
// The reason is for who reads the test. Ends the run on a machine that is not for that.
class AllowOutside {
 public:
  explicit AllowOutside(const char* reason, Machine machine = Machine::kThrowaway);
  ~AllowOutside();
  AllowOutside(const AllowOutside&) = delete;
  AllowOutside& operator=(const AllowOutside&) = delete;
};

// With this exit code a run ends at the fence.
inline constexpr unsigned kEndedAtTheFence = 97;

}  // namespace nhupdate_test
