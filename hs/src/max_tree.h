// Numbers in a row with the maxima of their groups over them, so that the first that is large enough is found without a
// walk. The numbers stand in memory of the owner, behind the record.
#pragma once

#include <cstddef>
#include <cstdint>

namespace veldnls::hs {

class MaxTree {
 public:
  static constexpr uint32_t nowhere = UINT32_MAX;
  // Numbers that one of the level above stands for.
  static constexpr uint32_t width = 16;

  // Bytes for the numbers of a row of `count`.
  static size_t bytesFor(uint32_t count);

  // A row of zeroes. `numbers` are bytesFor(count) zero bytes.
  void open(uint32_t* numbers, uint32_t count);

  uint32_t at(uint32_t place) const { return numbers_[place]; }
  void set(uint32_t place, uint32_t number);

  uint32_t largest() const;
  // The first place whose number isn't below `least`, which mustn't be 0; or `nowhere`.
  uint32_t firstFrom(uint32_t least) const;
  // The last place below `place` whose number isn't 0, or `nowhere`.
  uint32_t lastBefore(uint32_t place) const;
  // The last place whose number isn't 0, or `nowhere`.
  uint32_t last() const { return lastBefore(places_); }

 private:
  // Enough for 2^24 places.
  static constexpr uint32_t mostLevels = 6;

  static uint32_t padded(uint32_t count) { return (count + width - 1) / width * width; }

  const uint32_t* node(uint32_t level, uint32_t index) const { return numbers_ + starts_[level] + index * width; }

  uint32_t* numbers_;
  uint32_t places_;
  uint32_t levels_;
  uint32_t starts_[mostLevels];  // of each level among the numbers; the last one is a single node
};

}  // namespace veldnls::hs
