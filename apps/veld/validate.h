// veld validate: whether texts are well-formed, and where they aren't.
#pragma once

#include <string>
#include <vector>

#include "report.h"
#include "veldnls/nls.h"

namespace veld {

struct ValidateArguments {
  std::string encoding = "utf-8";
  bool all = false;                // go on behind the first fault of a file
  std::vector<std::string> files;  // empty: standard input
  ReportFormat report = ReportFormat::text;
  Progress::When progress = Progress::When::longInput;
};

// Looks through the files one after the other, each as a text of its own, and tells on standard output of each fault,
// and at the end of each file what came out. Returns exitWhole, exitLoss where there is a fault, or exitNotDone when a
// file couldn't be read; the others are looked through all the same. Throws Failure for an encoding that can't be
// validated.
int validate(QZNLS& nls, const ValidateArguments& arguments);

}  // namespace veld
