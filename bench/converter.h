// What is timed in conversions: one way of turning bytes into bytes, whoever provides it.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <utility>

#include "bench/pieces.h"

namespace bench {

struct Converter {
  std::string name;
  // Converts a whole text and answers the bytes written; 0 when any of it can't be converted.
  std::function<size_t(Bytes, Room)> convert;
  // Converts each piece for itself, all into the same room. The call of the conversion stands in the loop itself, so
  // that short pieces are not charged for this record.
  std::function<void(const Pieces&, Room)> convertAll;
};

template <class Convert>
Converter makeConverter(std::string name, Convert convert) {
  return {std::move(name), convert, [convert](const Pieces& pieces, Room room) {
            pieces.forEach([&](Bytes piece) { benchmark::DoNotOptimize(convert(piece, room)); });
          }};
}

}  // namespace bench
