#pragma once

// Measuring by comparison: a piece of our own work and a rival that does the same job in the barest
// way, by turns and in one run, so that what else the machine does meets both.
//
// A benchmark program is a file with MeasureAll and a target of nhupdate_bench_support. It prints a
// line of JSON for each row, from which tools/bench makes its table.

#include <functional>
#include <string>
#include <vector>

namespace nhupdate_bench {

struct Row {
  std::string name;   // as given to tools/bench
  std::string what;   // what is measured, for the table
  std::string rival;  // what it is compared with
  // What own / rival should be at most; 0 where none was set.
  double target = 0.0;
};

struct Work {
  std::function<void()> run;
  // Brings about the state that each run begins with. Isn't measured.
  std::function<void()> prepare = [] {};
};

struct Cost {
  double wall_ms = 0.0;
  // Of this process and, under Wine, of its server, which does a good part of what a kernel does.
  double processor_ms = 0.0;
};

class CPairs {
 public:
  // Runs pairs of each row, or of those rows only whose names contain one of `wanted`.
  CPairs(int pairs, std::vector<std::string> wanted);

  [[nodiscard]] bool IsWanted(const std::string& name) const;

  // Runs both by turns, after one of each that doesn't count, and prints the row. Who begins
  // changes from pair to pair. Does nothing for a row that isn't wanted.
  void Compare(const Row& row, const Work& own, const Work& rival) const;

 private:
  int pairs_;
  std::vector<std::string> wanted_;
};

// Written by each benchmark program.
void MeasureAll(const CPairs& pairs);

// Ends the program with a message: a benchmark that fails in what it does measures nothing.
[[noreturn]] void GiveUp(const std::string& what);

}  // namespace nhupdate_bench
