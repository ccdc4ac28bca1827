// The file that must not outlive this program.
#pragma once

#include <signal.h>

namespace veld {

// From now on a signal that ends the program and comes from outside or from a limit (interrupt, termination, a closed
// pipe, file size and their like) removes this file first; null forgets it. The text must stay. Signals that are
// ignored stay ignored.
void removeAtSignals(const char* path);

// Removes it now, ahead of an end without destructors.
void removeDoomedFile();

// Holds such signals back while it lives, so that none comes between making the file and naming it.
class EndingSignalsHeld {
 public:
  EndingSignalsHeld();
  ~EndingSignalsHeld();
  EndingSignalsHeld(const EndingSignalsHeld&) = delete;
  EndingSignalsHeld& operator=(const EndingSignalsHeld&) = delete;

 private:
  sigset_t before_;
};

}  // namespace veld
