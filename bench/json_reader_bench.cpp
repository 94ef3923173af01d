// How the cost of reading and releasing JSON grows with the text, for texts that invite a reader to
// search ahead again and again, and how it compares with a widely used reader in the same run.
//
// own_ns and rival_ns are nanoseconds for each unit of the text; a linear cost shows as the same
// own_ns for every length. ratio is rival_ns / own_ns.

#include <benchmark/benchmark.h>

#include <ctime>
#include <nlohmann/json.hpp>
#include <string>

#include "bench/json_texts.h"
#include "text/json_reader.h"

namespace nhupdate_bench {

namespace {

constexpr int kShortest = 1 << 16;
constexpr int kLongest = 1 << 20;

// Processor time, so that what else the machine is doing counts for little.
template <typename Work>
double SecondsFor(Work work) {
  const std::clock_t start = std::clock();
  work();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

void ReadJson(benchmark::State& state, const JsonText& json) {
  const std::wstring text = json.make(static_cast<int>(state.range(0)));
  const std::string bytes(text.begin(), text.end());
  double own_seconds = 0.0;
  double rival_seconds = 0.0;

  for ([[maybe_unused]] auto iteration : state) {
    const double seconds = SecondsFor([&] {
      nhupdate::JsonValue value;
      benchmark::DoNotOptimize(
          nhupdate::ParseValue(value, text.c_str(), static_cast<int>(text.size())));
      nhupdate::FreeValue(value);
    });
    state.SetIterationTime(seconds);
    own_seconds += seconds;
    rival_seconds += SecondsFor([&] {
      constexpr bool kThrows = false;
      benchmark::DoNotOptimize(nlohmann::json::parse(bytes, nullptr, kThrows));
    });
  }

  const double units = static_cast<double>(text.size()) * static_cast<double>(state.iterations());
  state.counters["own_ns"] = own_seconds * 1e9 / units;
  state.counters["rival_ns"] = rival_seconds * 1e9 / units;
  state.counters["ratio"] = rival_seconds / own_seconds;
  state.SetComplexityN(static_cast<benchmark::IterationCount>(text.size()));
}

void RegisterAll() {
  for (const JsonText& json : kJsonTexts) {
    benchmark::RegisterBenchmark(json.name, ReadJson, json)
        ->RangeMultiplier(2)
        ->Range(kShortest, kLongest)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Complexity(benchmark::oN);
  }
}

}  // namespace

}  // namespace nhupdate_bench

int main(int argument_count, char** arguments) {
  nhupdate_bench::RegisterAll();
  benchmark::Initialize(&argument_count, arguments);
  if (benchmark::ReportUnrecognizedArguments(argument_count, arguments)) {
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
