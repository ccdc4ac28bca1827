// What a parser of numbers gave.
#pragma once

#include <cstdint>
#include <cstring>
#include <ostream>

#include "veldnls/types.h"

namespace test {

template <class Value>
struct Parsed {
  NlsStatus status;
  Value value;
  int32_t consumed;

  // By bits, so that missing values and signs of zeros count.
  bool operator==(const Parsed& other) const {
    return status == other.status && consumed == other.consumed && std::memcmp(&value, &other.value, sizeof value) == 0;
  }
};

template <class Value>
std::ostream& operator<<(std::ostream& out, const Parsed<Value>& parsed) {
  return out << "{" << std::hex << parsed.status << std::dec << ", " << parsed.value << ", " << parsed.consumed << "}";
}

}  // namespace test
