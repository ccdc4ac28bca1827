// One or two pipelines run as one, block after block.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "pipeline.h"

namespace veld {

// The most bytes of a block.
inline constexpr size_t blockSize = 64 * 1024;

// Where a text stands between two blocks; copy it to come back to that place.
using ChainState = std::array<TranscodeProgress, 2>;

// What a block became.
struct ChainStep {
  size_t taken = 0;          // bytes of the block that are converted or held; the rest begins the next block
  bool substituted = false;  // a character was replaced
  Bytes output;              // valid until the next run
};

class Chain {
 public:
  // Makes the pipelines of a route. Throws Failure when the library refuses one.
  Chain(QZNLS& nls, const std::vector<CEI>& route);

  // Converts a block of at most blockSize bytes from `state` on, and moves `state` behind it. Bytes of the source that
  // are only part of a character are held in the state, or left over. Throws Failure when memory fails.
  ChainStep run(Bytes block, ChainState& state);

  // How many bytes of the source the state holds of a character that isn't complete.
  size_t heldBytes(const ChainState& state) const;

 private:
  struct Hop {
    Pipeline pipeline;
    bool fromMultiByte;
    size_t room;
    std::unique_ptr<uint8_t[]> output;
  };
  ChainStep runHop(const Hop& hop, Bytes input, TranscodeProgress& progress);

  std::vector<Hop> hops_;
  size_t middleBytesPerSourceByte_ = 1;
};

// The bytes at the source that the state holds: the start of a character that isn't complete.
Bytes heldSource(const ChainState& state);

}  // namespace veld
