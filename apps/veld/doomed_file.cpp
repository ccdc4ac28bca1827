#include "doomed_file.h"

#include <unistd.h>

#include <atomic>

namespace veld {

namespace {

constexpr int endingSignals[] = {SIGINT,  SIGTERM, SIGHUP,  SIGQUIT, SIGPIPE,
                                 SIGALRM, SIGUSR1, SIGUSR2, SIGXCPU, SIGXFSZ};

std::atomic<const char*> doomed{nullptr};
static_assert(std::atomic<const char*>::is_always_lock_free);

extern "C" void removeAndEnd(int number) {
  removeDoomedFile();
  raise(number);  // held back until this returns, and then taken as without a handler
}

}  // namespace

void removeAtSignals(const char* path) {
  doomed.store(path);
  if (path == nullptr) return;
  for (const int number : endingSignals) {
    struct sigaction present;
    if (sigaction(number, nullptr, &present) != 0 || present.sa_handler != SIG_DFL) continue;
    struct sigaction action {};
    action.sa_handler = removeAndEnd;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(number, &action, nullptr);
  }
}

void removeDoomedFile() {
  if (const char* path = doomed.load()) unlink(path);
}

EndingSignalsHeld::EndingSignalsHeld() {
  sigset_t held;
  sigemptyset(&held);
  for (const int number : endingSignals) sigaddset(&held, number);
  sigprocmask(SIG_BLOCK, &held, &before_);
}

EndingSignalsHeld::~EndingSignalsHeld() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

}  // namespace veld
