// What veld validate tells on standard output.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "fault_finder.h"
#include "narrow_rules.h"
#include "report.h"

namespace veld {

// A file's part of the report, in the order of the calls. Faults are told as they come, in objects too, so that there
// may be any number of them.
class ValidateReport {
 public:
  ValidateReport(QZNLS& nls, ReportFormat format, Progress& progress)
      : nls_(nls), format_(format), progress_(progress) {}

  void begin(const std::string& file, CEI encoding);
  // Throws Failure when standard output fails.
  void addFault(const TextFault& fault);
  // The file's end, or the place where the look ended.
  void end(uint64_t bytes, bool wholeFile);
  void fail(const std::string& file, const std::string& sentence);

 private:
  std::vector<std::string> notes() const;

  QZNLS& nls_;
  ReportFormat format_;
  Progress& progress_;
  std::string file_;
  CEI encoding_ = 0;
  uint64_t faults_ = 0;
  bool mayBeSound_ = false;            // what the library takes for a fault
  std::map<CEI, NarrowRules> narrow_;  // of the encodings that had faults
};

}  // namespace veld
