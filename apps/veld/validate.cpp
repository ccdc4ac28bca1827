#include "validate.h"

#include <iostream>

#include "failure.h"
#include "fault_finder.h"
#include "input.h"
#include "source_encoding.h"
#include "validate_report.h"

namespace veld {

namespace {

class Validation {
 public:
  Validation(QZNLS& nls, const ValidateArguments& arguments, const std::vector<std::string>& files)
      : nls_(nls),
        all_(arguments.all),
        source_(nls, arguments.encoding),
        progress_(arguments.progress, files, false),
        report_(nls, arguments.report, progress_) {
    const FaultFinder probe(nls,
                            source_.cei());  // an encoding that can't be validated shows before any file is touched
  }

  int run(const std::vector<std::string>& files);

 private:
  bool look(const std::string& path);

  QZNLS& nls_;
  bool all_;
  SourceEncoding source_;
  Progress progress_;
  ValidateReport report_;
};

// Returns false where there is a fault.
bool Validation::look(const std::string& path) {
  Input input(path);
  const CEI encoding = source_.begin(input);
  report_.begin(input.name(), encoding);
  FaultFinder finder(nls_, encoding);
  bool valid = true;
  const FaultFinder::Tell tell = [&](const TextFault& fault) {
    valid = false;
    report_.addFault(fault);
    return all_;
  };
  for (bool more = true; more && (valid || all_);) {
    more = input.fill();
    const size_t done = finder.look(input.bytes(), input.offset(), more, tell);
    progress_.add(done);
    input.take(done);
  }
  report_.end(input.offset(), valid || all_);
  return valid;
}

int Validation::run(const std::vector<std::string>& files) {
  int result = exitWhole;
  for (const std::string& file : files) {
    try {
      if (!look(file) && result == exitWhole) result = exitLoss;
    } catch (const Failure& failure) {
      if (!std::cout) throw;
      report_.fail(inputName(file), failure.what());
      result = exitNotDone;
    }
  }
  progress_.finish();
  return result;
}

}  // namespace

int validate(QZNLS& nls, const ValidateArguments& arguments) {
  const std::vector<std::string> files = arguments.files.empty() ? std::vector<std::string>{"-"} : arguments.files;
  return Validation(nls, arguments, files).run(files);
}

}  // namespace veld
