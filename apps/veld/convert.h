// veld convert: text from one encoding to another.
#pragma once

#include <string>
#include <vector>

#include "report.h"
#include "veldnls/nls.h"

namespace veld {

// What to do when a character doesn't come over.
enum class OnLoss {
  substitute,  // what the library makes of it stands in its place, and the exit status tells
  fail,        // stop ahead of it
};

struct ConvertArguments {
  std::string from;
  std::string to;
  std::string output;              // empty: standard output
  std::vector<std::string> files;  // empty: standard input
  OnLoss onLoss = OnLoss::substitute;
  ReportFormat report = ReportFormat::text;
  Progress::When progress = Progress::When::longInput;
};

// Converts the files one after the other, each as a text of its own, and returns exitWhole or exitLoss. A first loss
// of each file, and an end inside a character, are told on standard error with the file, the place, the bytes and the
// reason. Under OnLoss::fail nothing behind the loss is converted, and a named output stays as it was. Throws Failure;
// in a report of objects a failure over a file is told by its object, and exitNotDone returned.
int convert(QZNLS& nls, const ConvertArguments& arguments);

}  // namespace veld
