// Runs code or a program in a child process and tells how it ended and what it printed.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace test {

struct Ending {
  int signal = 0;      // the signal that ended the child, 0 if none
  int exitCode = 0;    // when it exited
  std::string output;  // its standard output
  std::string errors;  // its standard error
};

// Forks, runs `body` in the child with both streams caught, and waits. A child whose body returns exits with 0.
// Under sanitizers the child still dies of its own signal.
Ending runInChild(const std::function<void()>& body);

// The same for a program: its path and its arguments. One that can't be started exits with 127.
Ending runProgram(const std::vector<std::string>& command);

}  // namespace test
