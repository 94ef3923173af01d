#include "bench/support/pairs.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "bench/support/processor_time.h"

namespace nhupdate_bench {

namespace {

Cost Measure(const Work& work) {
  using Clock = std::chrono::steady_clock;
  work.prepare();
  const double processor_start = ProcessorMs();
  const Clock::time_point start = Clock::now();
  work.run();
  const std::chrono::duration<double, std::milli> wall = Clock::now() - start;
  return {wall.count(), ProcessorMs() - processor_start};
}

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char character : text) {
    if (character == '"' || character == '\\') {
      quoted += '\\';
    }
    quoted += character;
  }
  return quoted + "\"";
}

void Print(const char* name, const std::vector<Cost>& costs) {
  std::printf(", \"%s\": [", name);
  for (std::size_t index = 0; index < costs.size(); ++index) {
    std::printf("%s[%.4f, %.4f]", index > 0 ? ", " : "", costs[index].wall_ms,
                costs[index].processor_ms);
  }
  std::printf("]");
}

}  // namespace

CPairs::CPairs(int pairs, std::vector<std::string> wanted)
    : pairs_(pairs), wanted_(std::move(wanted)) {}

bool CPairs::IsWanted(const std::string& name) const {
  return wanted_.empty() ||
         std::any_of(wanted_.begin(), wanted_.end(),
                     [&](const std::string& part) { return name.find(part) != std::string::npos; });
}

void CPairs::Compare(const Row& row, const Work& own, const Work& rival) const {
  if (!IsWanted(row.name)) {
    return;
  }
  std::vector<Cost> own_costs;
  std::vector<Cost> rival_costs;
  for (int pair = 0; pair <= pairs_; ++pair) {
    Cost own_cost;
    Cost rival_cost;
    if (pair % 2 == 0) {
      own_cost = Measure(own);
      rival_cost = Measure(rival);
    } else {
      rival_cost = Measure(rival);
      own_cost = Measure(own);
    }
    // The first pair fills caches and heaps.
    if (pair > 0) {
      own_costs.push_back(own_cost);
      rival_costs.push_back(rival_cost);
    }
  }
  std::printf("{\"name\": %s, \"what\": %s, \"rival\": %s, \"target\": %g",
              Quoted(row.name).c_str(), Quoted(row.what).c_str(), Quoted(row.rival).c_str(),
              row.target);
  Print("own_costs", own_costs);
  Print("rival_costs", rival_costs);
  std::printf("}\n");
  std::fflush(stdout);
}

void GiveUp(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::exit(1);
}

}  // namespace nhupdate_bench

// The count of pairs, then parts of the names of wanted rows.
int main(int argument_count, char** arguments) {
  const int pairs = argument_count > 1 ? std::atoi(arguments[1]) : 0;
  if (pairs < 1) {
    nhupdate_bench::GiveUp("How many pairs?");
  }
  nhupdate_bench::MeasureAll(
      nhupdate_bench::CPairs(pairs, {arguments + 2, arguments + argument_count}));
  return 0;
}
