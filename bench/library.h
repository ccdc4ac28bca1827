// The library as a host holds it: the loaded module, the support records, and the object made with them.
#pragma once

#include <string>

#include "bench/converter.h"
#include "bench/encodings.h"
#include "veldnls/host.h"
#include "veldnls/nls.h"

namespace bench {

class Library {
 public:
  // Throws std::runtime_error, as all functions of this program do when they can't do their work.
  explicit Library(const std::string& modulePath);
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  QZNLS& nls() const { return *nls_; }
  const VeldInputVector& host() const { return vector_; }

  // A further object; the caller destroys it.
  QZNLS* makeObject();

  // A run of a pipeline made here, once. Converts nothing, and answers 0, when the pipeline answers any status but 0.
  Converter converter(const Encoding& from, const Encoding& to) const;

  // The same, but takes a text with faults, in place of which the pipeline writes its substitute.
  Converter substitutingConverter(const Encoding& from, const Encoding& to) const;

  // The test of encoded text: answers the length of a valid text, otherwise 0.
  Converter validator(const Encoding& encoding) const;

 private:
  CEI cei(const Encoding& encoding) const;
  Converter converterThatTakes(NlsStatus besidesZero, const Encoding& from, const Encoding& to) const;

  void* module_ = nullptr;
  NlsLibraryEntry entry_ = nullptr;
  VeldMemoryRecord memory_{};
  VeldThreadBlock threadBlock_{};
  VeldThreadRecord threads_{};
  VeldFileRecord files_{};
  VeldInputVector vector_{};
  QZNLS* nls_ = nullptr;
};

}  // namespace bench
