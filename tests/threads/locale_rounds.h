// Threads that share locales.
#pragma once

namespace threads_test {

// Threads that format and parse with the same locales, and make and end others of the same object meanwhile. Every
// text and value is compared with that of one thread alone.
void hammerSharedLocales(int rounds);

}  // namespace threads_test
