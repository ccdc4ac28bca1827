// What became of values, one by one.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "json_report.h"
#include "report.h"
#include "value_kinds.h"
#include "veldnls/nls.h"

namespace veld {

// One text of the command line or of standard input.
struct Text {
  std::u16string units;
  uint64_t line = 0;  // of standard input, from 1; 0 for one of the command line
};

// Calls `take` with each of the texts, or with each line of standard input where there are none. Throws Failure.
void forEachText(QZNLS& nls, const std::vector<std::string>& texts, const std::function<void(const Text& text)>& take);

class ValueReport {
 public:
  ValueReport(QZNLS& nls, ReportFormat format) : nls_(nls), format_(format) {}

  // What a text has come to. The result is a line of standard output. A fault gets, on standard error, a sentence and
  // the text, with a mark under the character at which it shows. In JSON all is in one object on a line.
  struct Outcome {
    std::optional<std::u16string> result = {};
    std::optional<std::string> count = {};  // told in JSON alone
    std::optional<Fault> fault = {};
    std::string warning = {};
  };
  // Throws Failure when standard output fails.
  void add(const Text& text, const Outcome& outcome);

  // exitWhole, or exitLoss after a fault.
  int result() const { return result_; }

 private:
  void addSentences(const Text& text, const Outcome& outcome);
  void addObject(const Text& text, const Outcome& outcome);

  QZNLS& nls_;
  ReportFormat format_;
  int result_ = 0;
};

}  // namespace veld
