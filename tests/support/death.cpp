#include "support/death.h"

#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace test {

namespace {

void readAll(int first, std::string& firstText, int second, std::string& secondText) {
  std::array<pollfd, 2> files{{{first, POLLIN, 0}, {second, POLLIN, 0}}};
  int open = 2;
  while (open > 0) {
    poll(files.data(), files.size(), -1);
    for (size_t i = 0; i < files.size(); ++i) {
      if (files[i].fd < 0 || files[i].revents == 0) continue;
      std::array<char, 4096> buffer;
      const ssize_t count = read(files[i].fd, buffer.data(), buffer.size());
      if (count <= 0) {
        files[i].fd = -1;
        --open;
      } else {
        (i == 0 ? firstText : secondText).append(buffer.data(), static_cast<size_t>(count));
      }
    }
  }
}

}  // namespace

Ending runInChild(const std::function<void()>& body) {
  Ending ending;
  int out[2];
  int err[2];
  if (pipe(out) != 0 || pipe(err) != 0) std::abort();
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    // A sanitizer's own handler would turn the signal into an exit.
    for (const int number : {SIGSEGV, SIGBUS, SIGABRT, SIGILL, SIGTRAP}) signal(number, SIG_DFL);
    dup2(out[1], STDOUT_FILENO);
    dup2(err[1], STDERR_FILENO);
    close(out[0]);
    close(err[0]);
    body();
    std::fflush(nullptr);
    _exit(0);
  }
  close(out[1]);
  close(err[1]);
  readAll(out[0], ending.output, err[0], ending.errors);
  close(out[0]);
  close(err[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFSIGNALED(status)) ending.signal = WTERMSIG(status);
  if (WIFEXITED(status)) ending.exitCode = WEXITSTATUS(status);
  return ending;
}

Ending runProgram(const std::vector<std::string>& command) {
  constexpr int notStarted = 127;
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  return runInChild([&] {
    execv(arguments.front(), arguments.data());
    _exit(notStarted);
  });
}

}  // namespace test
