// Times groups of candidates that do the same work.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <vector>

namespace bench {

// What a group times. `kind` gathers groups that are judged alike: page, unicode, bytes, multi, multi-multi, utf-e,
// validate, damage, doubling, names, numbers, pool, pool-growth, construction.
struct Subject {
  std::string kind;
  std::string op;
  std::string text;
  std::string form;
};

struct Candidate {
  std::string name;
  std::function<void()> pass;  // does the whole work once
};

struct Group {
  Subject subject;
  size_t bytes = 0;  // input of a pass; 0 where the work isn't a conversion
  size_t calls = 1;  // calls in a pass
  std::vector<Candidate> candidates;
};

struct Settings {
  int samples = 11;
  double sampleSeconds = 0.01;
  std::string filter;  // regular expression, searched in "kind/op/text/form"; empty: everything
};

class Runner {
 public:
  explicit Runner(const Settings& settings);

  bool wants(const Subject& subject) const;

  // Takes the samples: a first round finds how many passes make one, then each round times every candidate in turn, so
  // that whatever else the machine does meets all alike.
  void run(const Group& group);

  // Everything timed so far: per group its subject, bytes and calls of a pass, and for each candidate the CPU
  // nanoseconds of a pass in every round.
  nlohmann::ordered_json results() const { return results_; }

 private:
  Settings settings_;
  std::regex filter_;
  nlohmann::ordered_json results_ = nlohmann::ordered_json::array();
};

}  // namespace bench
