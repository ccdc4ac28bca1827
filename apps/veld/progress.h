// How far a long run has come, on standard error.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace veld {

class Progress {
 public:
  enum class When {
    longInput,  // on a terminal that shows nothing else, when a run has taken a second
    always,
    never,
  };

  // The files tell how much there is to do, unless one isn't a plain file. `writesToTerminal` is true when the run's
  // own output may be on the terminal.
  Progress(When when, const std::vector<std::string>& files, bool writesToTerminal);

  // So many more bytes are done.
  void add(uint64_t bytes);
  // Takes the line off the terminal, so that something else can be written.
  void clear();
  // Leaves the last state to be read, where progress was asked for.
  void finish();

 private:
  using Clock = std::chrono::steady_clock;
  void show(Clock::time_point now);

  bool terminal_;
  bool asked_;
  bool on_;
  std::optional<uint64_t> total_;
  uint64_t done_ = 0;
  Clock::time_point start_;
  Clock::time_point next_;
  bool shown_ = false;
};

// The state of a run as text: "42 %, 1.2 GB of 2.9 GB, 310.0 MB/s, 0:05 left". Without a total only what is done and
// the rate.
std::string progressText(uint64_t done, std::optional<uint64_t> total, double seconds);

}  // namespace veld
