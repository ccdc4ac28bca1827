#include "hs/touched_pages.h"

#include <signal.h>
#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>

#include "hs/src/pool.h"
#include "hs/src/range.h"

namespace {

constexpr size_t page = 4096;

struct Watched {
  uint8_t* start;
  uint8_t* end;
};

std::array<Watched, 64> watched;
size_t watchedCount = 0;
volatile size_t touched = 0;
struct sigaction before;

void noteTouch(int signal, siginfo_t* info, void* /*context*/) {
  auto* address = static_cast<uint8_t*>(info->si_addr);
  const Watched* begin = watched.data();
  const Watched* end = begin + watchedCount;
  const auto* found = std::find_if(
      begin, end, [address](const Watched& memory) { return address >= memory.start && address < memory.end; });
  if (found == end) {
    // It comes again, and ends the process.
    sigaction(signal, &before, nullptr);
    return;
  }
  mprotect(address - reinterpret_cast<uintptr_t>(address) % page, page, PROT_READ | PROT_WRITE);
  touched = touched + 1;
}

void protect(int protection) {
  for (size_t i = 0; i < watchedCount; ++i) {
    const auto size = static_cast<size_t>(watched[i].end - watched[i].start);
    if (size != 0 && mprotect(watched[i].start, size, protection) != 0) std::abort();
  }
}

void watch(const XmRange* range) {
  for (; range != nullptr; range = range->next) {
    if (watchedCount == watched.size()) std::abort();
    watched[watchedCount++] = {range->memory, range->committed};
  }
}

}  // namespace

namespace test {

TouchedPages::TouchedPages(XmContext* context) {
  watchedCount = 0;
  watch(context->ranges);
  watch(veldnls::hs::blockOf(context)->indexRanges);
  struct sigaction action {};
  action.sa_sigaction = noteTouch;
  action.sa_flags = SA_SIGINFO;
  sigaction(SIGSEGV, &action, &before);
  touched = 0;
  protect(PROT_NONE);
}

TouchedPages::~TouchedPages() {
  protect(PROT_READ | PROT_WRITE);
  sigaction(SIGSEGV, &before, nullptr);
}

size_t TouchedPages::count() { return touched; }

}  // namespace test
