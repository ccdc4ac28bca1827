// Differences from a peer, gathered into ranges and looked up in a reviewed file.
#pragma once

#include <string>

#include "exceptions.h"

namespace differential_test {

// Takes the cases of one comparison in ascending order and joins neighbours that differ in the same way. Each range
// must stand in the file: subject, first and last case in hexadecimal, ours, theirs, and a reason.
class Differences {
 public:
  Differences(test::Exceptions& listed, test::Fields subject) : listed_(listed), subject_(std::move(subject)) {}
  ~Differences() { close(); }
  Differences(const Differences&) = delete;
  Differences& operator=(const Differences&) = delete;

  // A case, or a block of them, on which both agree.
  void addSame() { close(); }
  // One on which they don't. Neighbours belong together if they are of one kind; the line shows the first.
  void add(uint32_t first, uint32_t last, const std::string& ours, const std::string& theirs, const std::string& kind);

 private:
  void close();

  test::Exceptions& listed_;
  test::Fields subject_;
  bool open_ = false;
  uint32_t first_ = 0;
  uint32_t last_ = 0;
  std::string ours_;
  std::string theirs_;
  std::string kind_;
};

// A path in this folder.
std::string listPath(const std::string& name);

}  // namespace differential_test
