// Single characters through a peer's converter of a multi-byte encoding.
#pragma once

#include <memory>
#include <string>

#include "differential/peers.h"

namespace differential_test {

// A converter in both directions. Peers differ in what they do with characters that have no exact partner: ICU takes
// its best fit, as the sets here do.
class PeerConverter {
 public:
  PeerConverter(const std::string& peer, const std::string& converter);
  ~PeerConverter();
  PeerConverter(const PeerConverter&) = delete;
  PeerConverter& operator=(const PeerConverter&) = delete;

  // The text in UTF-16LE, or nothing if the peer finds a fault in it.
  std::optional<Bytes> decode(Span text);
  // The bytes of a text in UTF-16LE, or nothing.
  std::optional<Bytes> encode(Span units);

 private:
  struct Handles;
  std::unique_ptr<Handles> handles_;
};

}  // namespace differential_test
