// A pipeline whose every run is compared with the reference of multi-byte conversion.
#pragma once

#include "reference/multi_byte.h"
#include "support/language.h"
#include "transcode/harness.h"

namespace transcode_test {

// All encodings with a multi-byte class, those that stand for a type of encoding too.
const std::vector<CEI>& multiByteCeis();

// The GB18030 module of the shared object: pipelines to GB18030 made while it isn't there never use it.
void loadGbModule();
void unloadMultiByteModules();
bool gbModuleIsLoaded();

class CheckedRoute {
 public:
  // REQUIRES: the route isn't refused. A type of encoding must stand for itself (test::DbcsLanguage).
  CheckedRoute(CEI source, CEI target);

  TranscodingPipeline* pipeline() const { return pipeline_; }
  std::string name() const;

  // One run with a record in a shift mode and, in single mode, one without. Fails the running test fatally when an
  // outcome is another than the reference's.
  void check(Span text, bool doubleMode = false) const { check(text, roomFor(text), doubleMode, false); }
  void check(Span text, size_t room, bool doubleMode, bool mayDropBlanks) const;
  // With a record only.
  void checkResumable(Span text, bool doubleMode = false) const {
    checkRun(text, roomFor(text), {.resumable = true, .doubleMode = doubleMode});
  }

  static size_t roomFor(Span text) { return 8 * text.size() + 32; }

  void checkRun(Span text, size_t room, const RunState& state) const;
  MultiByteOutcome run(Span text, size_t room, const RunState& state) const;
  MultiByteOutcome expected(Span text, size_t room, const RunState& state) const;

 private:
  CEI source_;
  CEI target_;
  bool gbLoaded_;
  Pipeline pipeline_;
};

}  // namespace transcode_test
