// The converters of ICU and of the system's iconv.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace differential_test {

using Bytes = std::vector<uint8_t>;
using Span = std::span<const uint8_t>;

struct Peer {
  const char* name;
  // Converts a whole text, or nothing if the peer finds a fault in it or has no place for one of its characters.
  // Encodings go by the peer's names. Throws for a name that the peer doesn't know.
  std::optional<Bytes> (*convert)(const std::string& source, const std::string& target, Span text);
};

extern const Peer icu;
extern const Peer systemIconv;

}  // namespace differential_test
