// Reviewed exceptions: a text file of which every line must be needed.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/tsv.h"

namespace test {

class Exceptions {
 public:
  // The last field of a line says why and isn't compared.
  explicit Exceptions(const std::string& path);

  // True if a line has exactly these fields ahead of its reason; the line then counts as used.
  bool allow(const Fields& fields);

  // The lines that nothing has used.
  std::vector<std::string> unused() const;

 private:
  std::map<Fields, bool> used_;
};

}  // namespace test
