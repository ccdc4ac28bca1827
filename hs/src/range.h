// Ranges: stretches of reserved address space, tens of MiB each, from which chunk memory is handed out in granules.
//
// The lowest room that fits is taken, so that chunks which follow each other are neighbours, and any run of neighbours
// can be given back in one call. Address space doesn't grow as long as what is given back is taken again.
#pragma once

#include <cstddef>
#include <cstdint>

#include "veldnls/host.h"

// Stands at the head of its own memory, before the map of its granules.
struct XmRange {
  XmRange* next;
  uint8_t* memory;     // the first granule
  uint8_t* fresh;      // nothing from here on was ever handed out, so it is zero
  uint8_t* committed;  // no access from here on
  size_t granules;
  size_t freeGranules;
  size_t firstFree;   // none below this one is free
  size_t mappedSize;  // bytes of the whole range, this record included
  size_t idle;        // at most so many bytes below `fresh` were given back and still hold pages of the system
};

namespace veldnls::hs {

// Memory of `size` bytes, aligned to the granule, or null; on request zeroed. REQUIRES: the context's lock.
uint8_t* takeFromRanges(XmRange** ranges, uint32_t size, bool zeroed);

// Gives back memory, or a run of neighbouring pieces. False when it isn't all handed out. REQUIRES: the context's lock.
bool giveToRanges(XmRange** ranges, uint8_t* address, uint32_t size);

// Ends all ranges, whatever is in use.
void endRanges(XmRange** ranges);

}  // namespace veldnls::hs
