#include "bench/runner.h"

#include <benchmark/benchmark.h>

#include <iostream>
#include <stdexcept>

namespace bench {

namespace {

class Collector : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& report) override { runs.insert(runs.end(), report.begin(), report.end()); }

  std::vector<Run> runs;
};

// Times every candidate once, in order. `prepare` sets how long a registered candidate runs.
template <class Prepare>
std::vector<benchmark::BenchmarkReporter::Run> runRound(const Group& group, Prepare prepare) {
  for (size_t i = 0; i < group.candidates.size(); ++i) {
    const Candidate& candidate = group.candidates[i];
    auto* registered = benchmark::RegisterBenchmark(candidate.name.c_str(), [&candidate](benchmark::State& state) {
      for ([[maybe_unused]] auto _ : state) candidate.pass();
    });
    registered->Unit(benchmark::kNanosecond);
    prepare(i, registered);
  }
  Collector collector;
  benchmark::RunSpecifiedBenchmarks(&collector, ".");
  benchmark::ClearRegisteredBenchmarks();
  if (collector.runs.size() != group.candidates.size()) throw std::runtime_error("a candidate didn't run");
  return collector.runs;
}

}  // namespace

Runner::Runner(const Settings& settings) : settings_(settings), filter_(settings.filter) {}

bool Runner::wants(const Subject& subject) const {
  return std::regex_search(subject.kind + "/" + subject.op + "/" + subject.text + "/" + subject.form, filter_);
}

void Runner::run(const Group& group) {
  const auto sizing = runRound(group, [&](size_t, auto* registered) { registered->MinTime(settings_.sampleSeconds); });
  std::vector<std::vector<double>> times(group.candidates.size());
  for (int round = 0; round < settings_.samples; ++round) {
    const auto runs =
        runRound(group, [&](size_t i, auto* registered) { registered->Iterations(sizing[i].iterations); });
    for (size_t i = 0; i < runs.size(); ++i) times[i].push_back(runs[i].GetAdjustedCPUTime());
  }

  nlohmann::ordered_json candidates = nlohmann::ordered_json::array();
  for (size_t i = 0; i < times.size(); ++i) {
    candidates.push_back({{"name", group.candidates[i].name}, {"ns", times[i]}});
  }
  const Subject& subject = group.subject;
  if (results_.empty() || results_.back()["op"] != subject.op) std::cerr << subject.op << '\n';
  results_.push_back({{"kind", subject.kind},
                      {"op", subject.op},
                      {"text", subject.text},
                      {"form", subject.form},
                      {"bytes", group.bytes},
                      {"calls", group.calls},
                      {"candidates", candidates}});
}

}  // namespace bench
