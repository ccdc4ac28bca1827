// The file that must not outlive this program.
#pragma once

namespace veld {

// From now on a signal that ends the program (interrupt, termination, hang-up, file size) removes this file first; null
// forgets it. The text must stay. Signals that are ignored stay ignored.
void removeAtSignals(const char* path);

}  // namespace veld
